#include "scripted_driver.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace scripted {
namespace {

using workbench::DriverAnswer;
using workbench::DriverRequest;

void AppendText(Bytes& bytes, const std::string& text) {
  AppendNumber(bytes, static_cast<std::uint32_t>(text.size()));
  bytes.insert(bytes.end(), text.begin(), text.end());
  bytes.push_back(0);
}

// Gives the output what fits; a driver that has more than that refuses.
DriverAnswer Reply(const DriverRequest& request, const Bytes& bytes) {
  if (request.output.size() < bytes.size()) return {.error = ERROR_INSUFFICIENT_BUFFER, .returned = 0};
  if (!bytes.empty()) std::memcpy(request.output.data(), bytes.data(), bytes.size());
  return {.error = ERROR_SUCCESS, .returned = static_cast<DWORD>(bytes.size())};
}

const char* NameOf(DWORD code) {
  switch (code) {
    case kSizeOfCurrent:
      return "size";
    case kCurrent:
      return "read";
    case kWrite:
      return "write";
    case kSizeOfDefault:
      return "default-size";
    case kDefault:
      return "default";
    default:
      return "unknown";
  }
}

}  // namespace

void AppendNumber(Bytes& bytes, std::uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

std::uint32_t NumberAt(const Bytes& bytes, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) value = value << 8 | (offset + i < bytes.size() ? bytes[offset + i] : 0U);
  return value;
}

Bytes PortStream(const std::vector<std::uint32_t>& numbers) {
  Bytes bytes;
  for (const std::uint32_t number : numbers) AppendNumber(bytes, number);
  return bytes;
}

Bytes BusStream(const std::vector<std::uint32_t>& numbers, const std::string& interfaceType,
                const std::string& model) {
  Bytes bytes;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (i == bus::kInterfaceType || i == bus::kModel) {
      AppendText(bytes, i == bus::kModel ? model : interfaceType);
    } else {
      AppendNumber(bytes, numbers[i]);
    }
  }
  return bytes;
}

std::vector<std::uint32_t> Numbers(std::size_t count, std::uint32_t first) {
  std::vector<std::uint32_t> numbers(count);
  std::iota(numbers.begin(), numbers.end(), first);
  return numbers;
}

Driver::Driver()
    : sets{{kPortSet, PortStream(Numbers(port::kCount, 0x10))},
           {kBusSet, BusStream(Numbers(bus::kCount, 0x100), "TCP", "QX-582")}} {}

DWORD Driver::Open(std::uint64_t session, const workbench::DriverOpen& open) {
  opens.push_back(open);
  if (openError == ERROR_SUCCESS) openSessions.push_back(session);
  return openError;
}

void Driver::Close(std::uint64_t session) {
  std::erase(openSessions, session);
}

DriverAnswer Driver::Control(std::uint64_t session, const DriverRequest& request) {
  Request& kept = requests.emplace_back();
  kept.session = session;
  kept.code = request.code;
  const auto* input = reinterpret_cast<const std::uint8_t*>(request.input.data());
  kept.input.assign(input, input + request.input.size());
  kept.hasOutput = request.output.data() != nullptr;
  kept.outputSize = request.output.size();
  kept.overlapped = request.overlapped;
  if (script) {
    if (const auto answer = script(request)) return *answer;
  }
  return Answer(request, kept.Selector());
}

DriverAnswer Driver::Answer(const DriverRequest& request, std::uint32_t selector) {
  const auto set = sets.find(selector);
  if (set == sets.end()) return {.error = ERROR_INVALID_PARAMETER, .returned = 0};
  if (request.code == kCurrent || request.code == kDefault) return Reply(request, set->second);
  if (request.code == kWrite) {
    set->second.assign(requests.back().input.begin() + 8, requests.back().input.end());
    return {};
  }
  if (request.code != kSizeOfCurrent && request.code != kSizeOfDefault) {
    return {.error = ERROR_INVALID_FUNCTION, .returned = 0};
  }
  Bytes size;
  AppendNumber(size, static_cast<std::uint32_t>(set->second.size()));
  return Reply(request, size);
}

std::string Driver::Story() const {
  std::string story;
  for (const Request& request : requests) {
    if (!story.empty()) story += ", ";
    story += NameOf(request.code);
    story += ' ';
    story += std::to_string(request.Selector());
  }
  return story;
}

std::function<std::optional<DriverAnswer>(const DriverRequest&)> RefuseNth(int n, DWORD error) {
  return [left = n, error](const DriverRequest&) mutable -> std::optional<DriverAnswer> {
    if (--left != 0) return std::nullopt;
    return DriverAnswer{.error = error, .returned = 0};
  };
}

}  // namespace scripted
