// A driver that answers as a test says, keeps what it was asked, and knows nothing of the product's own code:
// its streams are built here from numbers and texts.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "workbench/machine/machine.h"

namespace scripted {

using Bytes = std::vector<std::uint8_t>;

inline constexpr DWORD kSizeOfCurrent = 0x8001E000;
inline constexpr DWORD kCurrent = 0x8001E004;
inline constexpr DWORD kWrite = 0x8001E008;
inline constexpr DWORD kSizeOfDefault = 0x8001E010;
inline constexpr DWORD kDefault = 0x8001E014;

inline constexpr std::uint32_t kPortSet = 0;
inline constexpr std::uint32_t kBusSet = 1;

// Positions in the drivers' streams, from 0.
namespace port {
inline constexpr std::size_t kPortType = 0, kDuplexMode = 3, kBaudrate = 4, kDatabits = 5, kParity = 6,
                             kStopbits = 7, kFlowControl = 8, kCount = 33;
}
namespace bus {
inline constexpr std::size_t kPortType = 4, kInterfaceType = 6, kAddressToConnect = 7, kPortNumber = 8,
                             kMacAddress1 = 13, kMacAddress2 = 14, kServerConfigPort = 15,
                             kServerWebPort = 16, kModel = 34, kCount = 35;
}

void AppendNumber(Bytes& bytes, std::uint32_t value);
[[nodiscard]] std::uint32_t NumberAt(const Bytes& bytes, std::size_t offset);

// The port set's stream.
[[nodiscard]] Bytes PortStream(const std::vector<std::uint32_t>& numbers);
// The bus set's stream; the numbers at the positions of the two texts are not used.
[[nodiscard]] Bytes BusStream(const std::vector<std::uint32_t>& numbers, const std::string& interfaceType,
                              const std::string& model);
// `count` different numbers, from `first`.
[[nodiscard]] std::vector<std::uint32_t> Numbers(std::size_t count, std::uint32_t first);

// One DeviceIoControl as it arrived.
struct Request {
  std::uint64_t session = 0;
  DWORD code = 0;
  Bytes input;
  bool hasOutput = false;
  std::size_t outputSize = 0;
  bool overlapped = false;

  [[nodiscard]] std::uint32_t Selector() const { return NumberAt(input, 0); }
};

class Driver : public workbench::DriverEndpoint {
 public:
  // Both sets hold numbers that tell each parameter apart.
  Driver();

  DWORD Open(std::uint64_t session, const workbench::DriverOpen& open) override;
  workbench::DriverAnswer Control(std::uint64_t session, const workbench::DriverRequest& request) override;
  void Close(std::uint64_t session) override;

  std::map<std::uint32_t, Bytes> sets;  // by selector
  DWORD openError = ERROR_SUCCESS;
  // Answers in place of the driver, when it gives an answer.
  std::function<std::optional<workbench::DriverAnswer>(const workbench::DriverRequest&)> script{};

  std::vector<workbench::DriverOpen> opens;
  std::vector<Request> requests;
  std::vector<std::uint64_t> openSessions;

  // "size 0, read 0, write 1": what was asked, with the selectors.
  [[nodiscard]] std::string Story() const;

 private:
  workbench::DriverAnswer Answer(const workbench::DriverRequest& request, std::uint32_t selector);
};

// A script that refuses the n-th request, from 1.
[[nodiscard]] std::function<std::optional<workbench::DriverAnswer>(const workbench::DriverRequest&)>
RefuseNth(int n, DWORD error = ERROR_GEN_FAILURE);

}  // namespace scripted
