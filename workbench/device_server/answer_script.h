// The words in which a command line tells the device server what to serve and how to misbehave.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "workbench/device_server/http_message.h"
#include "workbench/device_server/port_state.h"

namespace workbench {

// "N tag=code ..." with the tags of the status document: "2 baud=19200 parity=3 dsrline=none"; "none" takes
// the tag out. Throws std::invalid_argument with a text for people.
[[nodiscard]] std::pair<unsigned, PortState> ParsePortScript(std::string_view text);

// "/path word ...": what is answered on a path. Throws std::invalid_argument with a text for people, also
// when a file cannot be read. AnswerScriptHelp says what the words are.
[[nodiscard]] std::pair<std::string, Answer> ParseAnswerScript(std::string_view text);
[[nodiscard]] std::string AnswerScriptHelp();

}  // namespace workbench
