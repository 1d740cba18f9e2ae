#include "workbench/device_server/answer_script.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace workbench {
namespace {

[[noreturn]] void Complain(std::string_view word, std::string_view why) {
  throw std::invalid_argument("\"" + std::string(word) + "\": " + std::string(why));
}

unsigned Number(std::string_view text, std::string_view word) {
  unsigned number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) Complain(word, "a decimal number is needed");
  return number;
}

std::string FileBytes(std::string_view name, std::string_view word) {
  std::ifstream file(std::string(name), std::ios::binary);
  if (!file) Complain(word, "the file cannot be read");
  return {std::istreambuf_iterator<char>(file), {}};
}

Framing FramingNamed(std::string_view value, std::string_view word) {
  if (value == "length") return Framing::ContentLength;
  if (value == "chunked") return Framing::Chunked;
  if (value == "close") return Framing::UntilClose;
  Complain(word, "length, chunked or close is needed");
}

std::chrono::milliseconds Milliseconds(std::string_view value, std::string_view word) {
  return std::chrono::milliseconds(Number(value, word));
}

using Apply = void (*)(Answer& answer, std::string_view value, std::string_view word);
struct AnswerWord {
  std::string_view name;
  std::string_view help;
  Apply apply;
};

constexpr std::array kWords = {
    AnswerWord{"status", "status=404           the status code; the body stays",
               [](Answer& a, auto v, auto w) { a.status = static_cast<int>(Number(v, w)); }},
    AnswerWord{"body", "body=TEXT            the body, without blanks",
               [](Answer& a, auto v, auto) { a.body = std::string(v); }},
    AnswerWord{"file", "file=NAME            the body from a file",
               [](Answer& a, auto v, auto w) { a.body = FileBytes(v, w); }},
    AnswerWord{"raw", "raw=NAME             the file's bytes in place of a response",
               [](Answer& a, auto v, auto w) { a.raw = FileBytes(v, w); }},
    AnswerWord{"framing", "framing=chunked      how the body ends: length, chunked, close",
               [](Answer& a, auto v, auto w) { a.framing = FramingNamed(v, w); }},
    AnswerWord{"capitals", "capitals             the body in capitals",
               [](Answer& a, auto, auto) { a.capitals = true; }},
    AnswerWord{"pad-before", "pad-before=4096      blanks in front of the body",
               [](Answer& a, auto v, auto w) { a.padBefore = Number(v, w); }},
    AnswerWord{"pad-after", "pad-after=4096       blanks behind the body",
               [](Answer& a, auto v, auto w) { a.padAfter = Number(v, w); }},
    AnswerWord{"zero-at", "zero-at=10           a zero byte at this offset of the body",
               [](Answer& a, auto v, auto w) { a.zeroAt = Number(v, w); }},
    AnswerWord{"delay", "delay=500            milliseconds before the first byte",
               [](Answer& a, auto v, auto w) { a.delay = Milliseconds(v, w); }},
    AnswerWord{"piece", "piece=10             bytes sent at once",
               [](Answer& a, auto v, auto w) { a.pieceSize = Number(v, w); }},
    AnswerWord{"pause", "pause=100            milliseconds between pieces",
               [](Answer& a, auto v, auto w) { a.pause = Milliseconds(v, w); }},
    AnswerWord{"close-after", "close-after=0        the connection is closed after that many bytes",
               [](Answer& a, auto v, auto w) { a.closeAfter = Number(v, w); }},
};

std::vector<std::string> Words(std::string_view text) {
  std::istringstream stream{std::string(text)};
  return {std::istream_iterator<std::string>(stream), {}};
}

std::pair<std::string_view, std::string_view> SplitAtEquals(std::string_view word) {
  const auto equals = word.find('=');
  if (equals == std::string_view::npos) return {word, {}};
  return {word.substr(0, equals), word.substr(equals + 1)};
}

}  // namespace

std::pair<unsigned, PortState> ParsePortScript(std::string_view text) {
  const std::vector<std::string> words = Words(text);
  if (words.empty()) Complain(text, "a port number is needed");
  std::pair<unsigned, PortState> port{Number(words.front(), words.front()), {}};
  for (std::size_t i = 1; i < words.size(); ++i) {
    const auto [name, value] = SplitAtEquals(words[i]);
    const auto tag = std::ranges::find(StateTags(), name, &StateTag::name);
    if (tag == StateTags().end()) Complain(words[i], "there is no such tag");
    if (value == "none") {
      (port.second.*(tag->value)).reset();
    } else {
      port.second.*(tag->value) = Number(value, words[i]);
    }
  }
  return port;
}

std::pair<std::string, Answer> ParseAnswerScript(std::string_view text) {
  const std::vector<std::string> words = Words(text);
  if (words.empty() || words.front().front() != '/')
    Complain(text, "a path is needed, beginning with a slash");
  std::pair<std::string, Answer> script{words.front(), {}};
  for (std::size_t i = 1; i < words.size(); ++i) {
    const auto [name, value] = SplitAtEquals(words[i]);
    const auto* word = std::ranges::find(kWords, name, &AnswerWord::name);
    if (word == kWords.end()) Complain(words[i], "there is no such word");
    word->apply(script.second, value, words[i]);
  }
  return script;
}

std::string AnswerScriptHelp() {
  std::string help = "Words of --answer \"/path word ...\":\n";
  for (const AnswerWord& word : kWords) help.append("  ").append(word.help).append("\n");
  return help;
}

}  // namespace workbench
