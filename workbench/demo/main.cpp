// workbench: shows the DLL that ships at work on a simulated computer.
#include <windows.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "workbench/demo/commands.h"
#include "workbench/rig/sample_rig.h"

namespace {

using workbench::SampleRig;

struct Options {
  workbench::PageOptions page;
  unsigned port = 1;
  unsigned ports = 8;
  bool interactive = false;
  bool neglected = false;
  std::string picture, folder;
  int status = 1;
};

void AddTree(CLI::App& app, Options& options) {
  CLI::App* tree =
      app.add_subcommand("tree", "Show the devices of the simulated host, as Device Manager does");
  tree->add_flag(
      "--interactive", options.interactive,
      "in a window: double-click a port to open its properties; what changed is printed when they are "
      "closed");
  tree->add_option("--png", options.picture, "write a picture of the window to this file");
  tree->callback([&] { options.status = workbench::ShowTree(options.interactive, options.picture); });
}

void AddShowPage(CLI::App& app, Options& options) {
  CLI::App* page =
      app.add_subcommand("show-page", "Show a port's page and compare it with what the device said");
  page->add_option("--port", options.page.port,
                   "number of the port on the device server; without it, all are shown")
      ->check(CLI::Range(1u, SampleRig::kPorts));
  page->add_flag("--tips", options.page.tips, "print what the tips of the page say");
  page->add_flag("--offline", options.page.offline, "the device server cannot be reached");
  page->add_option("--png", options.page.pictures,
                   "write a picture of this port's page to this file; may be given repeatedly")
      ->type_name("PORT FILE");
  page->callback([&] { options.status = workbench::ShowPages(options.page); });
}

void AddShowAdvanced(CLI::App& app, Options& options) {
  CLI::App* advanced = app.add_subcommand(
      "show-advanced",
      "Show a port's advanced settings and compare them with what the drivers and the host hold");
  advanced->add_option("--port", options.port, "number of the port on the device server")
      ->check(CLI::Range(1u, SampleRig::kPorts))
      ->capture_default_str();
  advanced->add_option("--pictures", options.folder, "write a picture of each page to this folder")
      ->check(CLI::ExistingDirectory);
  advanced->callback([&] { options.status = workbench::ShowAdvanced(options.port, options.folder); });
}

void AddStories(CLI::App& app, Options& options) {
  for (const workbench::Story& story : workbench::Stories()) {
    CLI::App* told = app.add_subcommand(story.name, story.summary);
    if (story.takesPorts) {
      told->add_option("--ports", options.ports, "How many ports the device server has")
          ->check(CLI::Range(1u, 200u))
          ->capture_default_str();
    }
    told->callback([&] { options.status = story.tell(options.ports); });
  }
}

void AddRun(CLI::App& app, Options& options) {
  CLI::App* run = app.add_subcommand(
      "run", "Run a program that uses KdUUI10.DLL on a simulated host: run PROGRAM [argument...]");
  run->prefix_command();
  run->add_flag("--neglected", options.neglected, "on a host where places disagree and numbers are lost");
  run->callback(
      [&options, run] { options.status = workbench::RunProgram(run->remaining(), options.neglected); });
}

}  // namespace

int main(int argc, char** argv) {
  SetConsoleOutputCP(CP_UTF8);
  CLI::App app(
      "Shows KdUUI10.DLL at work on a simulated Windows host: devices, drivers and a device server, "
      "nothing of them real.");
  app.require_subcommand(1);
  Options options;
  for (const auto add : {AddTree, AddShowPage, AddShowAdvanced, AddStories, AddRun}) add(app, options);
  try {
    app.parse(argc, argv);
    return options.status;
  } catch (const CLI::ParseError& error) {
    return app.exit(error);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "workbench: %s\n", error.what());
    return 1;
  }
}
