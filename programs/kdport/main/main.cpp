// kdport: names and settings of the ports of network device servers. docs/kdport.md is its manual.
#include <windows.h>

#include <io.h>

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "kdport/commands/kdport.h"
#include "kdport/model/exit_code.h"
#include "kdport/windows/text.h"
#include "kdport/windows/windows_surroundings.h"

int wmain(int argc, wchar_t** argv) {
  // The configuration channel reports a failure on the C run time's standard output, where the documents go.
  _dup2(_fileno(stderr), _fileno(stdout));
  KdPort::CWindowsSurroundings surroundings;
  try {
    std::vector<std::string> words;
    for (int i = 1; i < argc; ++i) words.push_back(KdPort::Utf8(std::wstring_view(argv[i])));
    return KdPort::RunKdPort(std::move(words), surroundings);
  } catch (const std::exception& error) {
    surroundings.PrintError("kdport: " + std::string(error.what()) + "\n");
    return static_cast<int>(KdPort::ExitCode::Failed);
  }
}
