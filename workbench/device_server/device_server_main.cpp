// device-server: serves the state of serial ports over HTTP until it is stopped.
#include "workbench/device_server/http_device_server.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "workbench/device_server/answer_script.h"

namespace {

struct Options {
  std::uint16_t port = 0;
  unsigned ports = 4;
  std::vector<std::string> states;
  std::vector<std::string> answers;
  unsigned seconds = 0;
  bool quiet = false;
};

void Describe(CLI::App& app, Options& options) {
  app.description(
      "A network serial device server without serial ports: serves \"/p1\", \"/serialport1.html\" and so "
      "on.");
  app.add_option("--port", options.port, "TCP port on 127.0.0.1; 0 takes a free one")->capture_default_str();
  app.add_option("--ports", options.ports, "how many serial ports")
      ->capture_default_str()
      ->check(CLI::Range(1, 255));
  app.add_option(
         "--state", options.states,
         "a serial port's state in the device's codes, for example \"2 baud=19200 parity=3 dsrline=none\"; "
         "may be given several times")
      ->allow_extra_args(false);
  app.add_option("--answer", options.answers,
                 "what a path answers, for example \"/p1 status=404 delay=500\"; "
                 "may be given several times")
      ->allow_extra_args(false);
  app.add_option("--seconds", options.seconds, "how long to serve; 0: until Enter or the end of the input")
      ->capture_default_str();
  app.add_flag("--quiet", options.quiet, "do not print the requests");
  app.footer(workbench::AnswerScriptHelp());
}

void Configure(workbench::HttpDeviceServer& server, const Options& options) {
  for (unsigned number = 1; number <= options.ports; ++number) server.SetPort(number, {});
  for (const std::string& text : options.states) {
    const auto [number, state] = workbench::ParsePortScript(text);
    server.SetPort(number, state);
  }
  for (const std::string& text : options.answers) {
    const auto [path, answer] = workbench::ParseAnswerScript(text);
    server.SetAnswer(path, answer);
  }
  server.Verbose(!options.quiet);
}

void WaitForTheEnd(unsigned seconds) {
  if (seconds > 0) {
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    return;
  }
  for (int c = 0; c != EOF && c != '\n';) c = std::getchar();
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app;
  Options options;
  Describe(app, options);
  CLI11_PARSE(app, argc, argv);
  try {
    workbench::HttpDeviceServer server;
    Configure(server, options);
    server.Start(options.port);
    std::printf("Serving on http://127.0.0.1:%u/\n", unsigned{server.Port()});
    std::fflush(stdout);
    WaitForTheEnd(options.seconds);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "device-server: %s\n", error.what());
    return 1;
  }
}
