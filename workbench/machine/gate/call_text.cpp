// Calls as text, for people.
#include <cstdio>

#include "workbench/machine/gate/gate.h"
#include "workbench/machine/gate/thunk.h"
#include "workbench/text/device_text.h"

namespace workbench {
namespace {

constexpr std::size_t kLongestText = 1024;

template <class Character>
std::wstring Logged(const Character* text) {
  if (text == nullptr) return {};
  const auto bits = reinterpret_cast<std::uint64_t>(text);
  if (bits < 0x10000) return std::wstring(1, L'#').append(std::to_wstring(bits));
  std::size_t length = 0;
  while (length < kLongestText && text[length] != 0) ++length;
  return {text, text + length};
}

std::string Hex(std::uint64_t value) {
  char text[24];
  std::snprintf(text, sizeof text, value < 10 ? "%llu" : "0x%llX", static_cast<unsigned long long>(value));
  return text;
}

}  // namespace

std::wstring LoggedText(const wchar_t* text) {
  return Logged(text);
}
std::wstring LoggedText(const char* text) {
  return Logged(text);
}

std::string ToLine(const Call& call) {
  std::string line = std::to_string(call.number) + " " + call.function + "(";
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    const CallArgument& argument = call.arguments[i];
    if (i != 0) line += ", ";
    if (argument.text.empty()) {
      line.append(Hex(argument.value));
    } else {
      line.append("\"").append(Narrow(argument.text)).append("\"");
    }
  }
  line += ")";
  if (!call.detail.empty()) line.append(" [").append(Narrow(call.detail)).append("]");
  if (!call.returned) return line + " ...";
  line += " -> " + Hex(call.result);
  if (!call.succeeded) line += " error " + std::to_string(call.lastError);
  if (call.injected) line += " INJECTED";
  return line;
}

}  // namespace workbench
