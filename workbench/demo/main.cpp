// workbench: shows the DLL that ships at work on a simulated host.
#include <windows.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "workbench/demo/command.h"

int main(int argc, char** argv) {
  SetConsoleOutputCP(CP_UTF8);
  CLI::App app(
      "Shows KdUUI10.DLL at work on a simulated Windows host: devices, drivers and a device server, "
      "nothing of them real.");
  app.require_subcommand(1);
  int status = 1;
  const auto commands = workbench::AllCommands();
  for (const auto& command : commands) {
    CLI::App* sub = app.add_subcommand(command->Name(), command->Summary());
    command->Describe(*sub);
    sub->callback([&status, &command] { status = command->Run(); });
  }
  try {
    app.parse(argc, argv);
    return status;
  } catch (const CLI::ParseError& error) {
    return app.exit(error);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "workbench: %s\n", error.what());
    return 1;
  }
}
