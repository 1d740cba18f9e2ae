// The example programs, as they are built for everybody, on the simulated host of `workbench run`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "workbench/machine/dll.h"

namespace {

using testing::HasSubstr;
using testing::Not;

struct Outcome {
  int status = -1;
  std::string output;  // both streams
};

// Runs a command line, whose program lies beside this one, to its end.
Outcome RunBeside(const std::wstring& commandLine) {
  Outcome outcome;
  std::filesystem::current_path(std::filesystem::path(workbench::Dll::DefaultPath()).parent_path());
  FILE* const output = _wpopen((commandLine + L" 2>&1").c_str(), L"rt");
  if (!output) return outcome;
  char piece[4096];
  while (std::fgets(piece, sizeof piece, output)) outcome.output += piece;
  outcome.status = _pclose(output);
  return outcome;
}

const std::wstring kPort = L"\"KDNBUS\\VELTRANETPORT\\1&2F8C1D3A&0&01\" ";

struct Row {
  std::wstring command;
  int status;
  std::vector<std::string> says;
  std::vector<std::string> lacks = {};  // beside misuse and what is left open
};

const Row kRows[] = {
    {L"push_settings.exe " + kPort + L"19200 7 even 2 xon/xoff",
     0,
     {"-> 19200", "-> 2", "-> 4", "port 1, set 0: Baudrate ", "port 1, set 0: Databits ",
      "port 1, set 0: Parity ", "port 1, set 0: Stopbits ", "port 1, set 0: FlowControl "},
     {"port 2, "}},
    // What is left out is kept.
    {L"push_settings.exe " + kPort + L"19200 - odd",
     0,
     {"Baudrate ", "Parity "},
     {"Databits ", "Stopbits ", "FlowControl "}},
    {L"rename_port.exe " + kPort + L"COM42",
     0,
     {"COM5 is now COM42", "(COM42)"},
     {"disagree", "Message box"}},
    {L"rename_port.exe " + kPort + L"COM6",
     1,
     {"): This COM name is being used by another device", "still COM5: declined"}},
    {L"push_settings.exe", 2, {"usage: push_settings"}},
    {L"push_settings.exe " + kPort + L"fast", 2, {"\"fast\" is not a baud rate"}},
    {L"push_settings.exe KDNBUS\\NOTHING\\1 9600", 1, {"did not take the settings"}},
    {L"rename_port.exe " + kPort + L"COM07", 2, {"usage: rename_port"}},
    {L"rename_port.exe KDNBUS\\NOTHING\\1 COM9", 1, {"there is no port"}},
};

TEST(Examples, DoAndSayWhatTheyAreToldTo) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::PrintToString(row.command));
    const Outcome outcome = RunBeside(L"workbench.exe run " + row.command);
    EXPECT_EQ(outcome.status, row.status) << outcome.output;
    for (const std::string& words : row.says) EXPECT_THAT(outcome.output, HasSubstr(words));
    for (const std::string& words : row.lacks) EXPECT_THAT(outcome.output, Not(HasSubstr(words)));
    EXPECT_THAT(outcome.output, Not(HasSubstr("VIOLATION")));
  }
}

// On a host where the DLL is not in the system directory.
TEST(Examples, PushSettingsSaysThatTheProductIsNotInstalled) {
  const Outcome outcome = RunBeside(L"push_settings.exe " + kPort + L"9600");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.output, HasSubstr("the product is not installed"));
}

}  // namespace
