#include "kdport/commands/kdport.h"

#include <algorithm>
#include <array>
#include <CLI/CLI.hpp>
#include <functional>

#include "kdport/commands/command_run.h"
#include "kdport/commands/options.h"

namespace KdPort {

namespace {

using CommandFunction = ExitCode (CCommandRun::*)();

constexpr const char* kPortHelp =
    "COM7, a device instance id, SERVER/INDEX, a wildcard over COM names (COM1*), or all";

// The options of one command, put where the command looks for them.
class CDescriber {
 public:
  CDescriber(CLI::App& command, Options& options) : command_(command), options_(options) {}

  void Ports(bool required) { command_.add_option("PORT", options_.ports, kPortHelp)->required(required); }
  void Word(const char* name, std::string& place, const char* help) {
    command_.add_option(name, place, help)->required();
  }
  void Flag(const char* name, bool& place, const char* help) { command_.add_flag(name, place, help); }
  void DryRun() { Flag("--dry-run", options_.dryRun, "show what would be done, and do nothing"); }
  void Force() {
    Flag("--force", options_.force, "also ports that a program has open: it loses the connection");
  }
  void Values(FieldGroup group) {
    for (const Field field : kFields) {
      if (GroupOf(field) != group) continue;
      command_.add_option("--" + std::string(ColumnOf(field)),
                          options_.values[static_cast<std::size_t>(field)], std::string(RangeOf(field)));
    }
  }
  [[nodiscard]] CLI::App& Command() { return command_; }
  [[nodiscard]] Options& Place() { return options_; }

 private:
  CLI::App& command_;
  Options& options_;
};

void DescribeList(CDescriber& to) {
  to.Ports(false);
  to.Flag("--live", to.Place().live, "ask the device servers, as the port's page does");
  to.Command()
      .add_option("--timeout", to.Place().timeout, "seconds that a device server has to answer (3)")
      ->check(CLI::Range(0.1, 600.0));
}
void DescribeCheck(CDescriber& to) {
  to.Ports(false);
}
void DescribeRepair(CDescriber& to) {
  to.Ports(false);
  to.Flag("--release-ghosts", to.Place().releaseGhosts, "release the numbers that nobody present has");
  to.DryRun();
}
void DescribeRename(CDescriber& to) {
  to.Word("PORT", to.Place().port, "one port: COM7, a device instance id, or SERVER/INDEX");
  to.Word("COMn", to.Place().newName, "the new name, COM1 to COM255");
  to.Force();
}
void DescribeSet(CDescriber& to) {
  to.Ports(true);
  to.Values(FieldGroup::Settings);
  to.Force();
}
void DescribeNetwork(CDescriber& to) {
  to.Ports(true);
  to.Values(FieldGroup::Network);
  to.Force();
}
void DescribeExport(CDescriber& to) {
  to.Command().add_option("FILE", to.Place().file, "where to; standard output without it");
}
void DescribeApply(CDescriber& to) {
  to.Word("FILE", to.Place().file, "a file as export writes it");
  to.DryRun();
  to.Force();
  to.Command().add_option("--undo", to.Place().undo,
                          "where to keep what apply takes back; FILE.undo.csv without it");
}
void DescribeUpdate(CDescriber& to) {
  to.Word("HARDWARE-ID", to.Place().hardwareId, "of the devices, as in Device Manager");
  to.Word("FILE.inf", to.Place().file, "the driver's INF file, with its whole path");
}

struct Row {
  const char* name;
  const char* summary;
  void (*describe)(CDescriber&);
  CommandFunction run;
};
constexpr Row kCommands[] = {
    {"list", "Show the ports", DescribeList, &CCommandRun::List},
    {"check", "Find places that disagree about a COM name", DescribeCheck, &CCommandRun::Check},
    {"repair", "Mend what check finds", DescribeRepair, &CCommandRun::Repair},
    {"rename", "Give a port another COM name", DescribeRename, &CCommandRun::Rename},
    {"set", "Change line settings", DescribeSet, &CCommandRun::Set},
    {"network", "Change where ports find their device server", DescribeNetwork, &CCommandRun::Network},
    {"export", "Write names and settings of all ports as CSV", DescribeExport, &CCommandRun::Export},
    {"apply", "Make the host as a CSV file says", DescribeApply, &CCommandRun::Apply},
    {"update-driver", "Install a driver", DescribeUpdate, &CCommandRun::UpdateDriver},
};

bool IsCommand(const std::string& word) {
  return std::ranges::any_of(kCommands, [&](const Row& row) { return word == row.name; });
}

constexpr const char* kFooter =
    "Exit status: 0 done, nothing found; 1 something failed or was found; 2 wrong usage or a bad file;\n"
    "5 administrator rights missing; 259 no such port.";

}  // namespace

int RunKdPort(std::vector<std::string> words, CSurroundings& surroundings) {
  Options options;
  options.json = std::ranges::find(words, "--json") != words.end();
  CCommandRun run(options, surroundings);
  CLI::App app("Names and settings of the ports of network device servers.", "kdport");
  app.allow_windows_style_options(false);
  app.require_subcommand(1);
  app.footer(kFooter);
  if (!words.empty() && !words.front().starts_with('-') && !IsCommand(words.front())) {
    return static_cast<int>(
        run.Fail(ExitCode::BadUse, {{Text::Usage, {"no command is called " + words.front(), ""}}}));
  }
  CommandFunction chosen = nullptr;
  for (const Row& row : kCommands) {
    CLI::App* command = app.add_subcommand(row.name, row.summary);
    CDescriber describer(*command, options);
    row.describe(describer);
    command->add_flag("--json", options.json, "print one JSON document");
    command->callback([&chosen, &row] { chosen = row.run; });
  }
  std::ranges::reverse(words);
  try {
    app.parse(words);
  } catch (const CLI::Success&) {
    const auto asked = app.get_subcommands();
    surroundings.Print(asked.empty() ? app.help() : asked.front()->help("kdport"));
    return static_cast<int>(ExitCode::Done);
  } catch (const CLI::ParseError& error) {
    const auto asked = app.get_subcommands();
    const std::string command = asked.empty() ? std::string() : asked.front()->get_name() + " ";
    return static_cast<int>(run.Fail(ExitCode::BadUse, {{Text::Usage, {error.what(), command}}}));
  }
  return static_cast<int>((run.*chosen)());
}

}  // namespace KdPort
