// The simulated drivers of one port, behind its configuration interface.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "workbench/machine/models/driver_endpoint.h"
#include "workbench/simulated_driver/set_layout.h"

namespace workbench {

// Control codes: device type 0x8001, METHOD_BUFFERED, read and write access.
inline constexpr DWORD kGetCurrentSize = 0x8001E000;
inline constexpr DWORD kGetCurrent = 0x8001E004;
inline constexpr DWORD kSetCurrent = 0x8001E008;
inline constexpr DWORD kGetDefaultSize = 0x8001E010;
inline constexpr DWORD kGetDefault = 0x8001E014;

// A way in which a driver misbehaves.
enum class Misbehaviour {
  Refuse,         // fails with `value` as error
  GrowAfterSize,  // read: the set is larger than its size said, which fails the read
  LieAboutCount,  // size, read: the right bytes, but the count of returned bytes is `value`
};

// Which requests misbehave, from now on.
struct DriverFault {
  enum class Operation { Open, Size, Read, Write };

  Operation operation = Operation::Read;
  Misbehaviour misbehaviour = Misbehaviour::Refuse;
  std::uint32_t value = ERROR_GEN_FAILURE;
  std::optional<std::uint32_t> selector{};  // nothing: either set; an open has none
};

// One request as it came and was answered; code 0 is an open.
struct DriverRecord {
  std::uint64_t session = 0;
  DWORD code = 0;
  std::optional<std::uint32_t> selector{};
  std::size_t inputLength = 0;
  std::size_t outputLength = 0;
  DWORD error = ERROR_SUCCESS;
  DWORD returned = 0;
  std::optional<ParameterValues> written{};  // of a successful write
};

// Both drivers of one port (virtual COM port and network bus) as user mode meets them: current and default
// values of the two sets, and the exchange that reads and writes them.
//
// Strict: an open with any other access, sharing, disposition or flags than the interface's rules say, a
// request of another code, header or length, out of order, or with an OVERLAPPED structure is refused and
// recorded as a violation. A correct client leaves Violations() empty.
class PortDriver : public DriverEndpoint {
 public:
  // Values by selector; another selector throws std::out_of_range. All start as the drivers' own defaults.
  [[nodiscard]] ParameterValues& Current(std::uint32_t selector);
  [[nodiscard]] ParameterValues& Default(std::uint32_t selector);

  // Faults add up; of two that are due at once the older one wins. Throws std::invalid_argument for a
  // misbehaviour that the operation cannot have.
  void Inject(const DriverFault& fault);
  void ClearFaults() { faults_.clear(); }

  [[nodiscard]] const std::vector<DriverRecord>& Records() const { return records_; }
  [[nodiscard]] std::vector<ParameterValues> Writes() const;  // successful ones, in order
  void ClearRecords() { records_.clear(); }
  [[nodiscard]] const std::vector<std::string>& Violations() const { return violations_; }
  // Opens that were not followed by a close.
  [[nodiscard]] std::size_t OpenSessions() const { return sessions_.size(); }

  [[nodiscard]] DWORD Open(std::uint64_t session, const DriverOpen& open) override;
  [[nodiscard]] DriverAnswer Control(std::uint64_t session, const DriverRequest& request) override;
  void Close(std::uint64_t session) override;

 private:
  // What the last size request of a session answered.
  struct SizeReport {
    DWORD dataCode = 0;  // the request that may follow
    std::uint32_t selector = 0;
    std::uint32_t size = 0;
  };
  [[nodiscard]] DriverAnswer Answer(std::uint64_t session, const DriverRequest& request,
                                    DriverRecord& record);
  [[nodiscard]] DriverAnswer AnswerSize(std::uint64_t session, const DriverRequest& request,
                                        std::uint32_t selector);
  [[nodiscard]] DriverAnswer AnswerRead(std::uint64_t session, const DriverRequest& request,
                                        std::uint32_t selector);
  [[nodiscard]] DriverAnswer AnswerWrite(const DriverRequest& request, DriverRecord& record);
  [[nodiscard]] std::optional<DriverFault> Due(DriverFault::Operation operation,
                                               std::optional<std::uint32_t> selector);
  [[nodiscard]] DriverAnswer Fill(std::span<std::byte> output, const std::vector<std::byte>& stream,
                                  const std::optional<DriverFault>& fault) const;
  [[nodiscard]] DriverAnswer Violate(std::string text);

  std::array<ParameterValues, 2> current_{ParameterValues(kPortSet), ParameterValues(kBusSet)};
  std::array<ParameterValues, 2> default_ = current_;
  std::vector<DriverFault> faults_;
  std::map<std::uint64_t, std::optional<SizeReport>> sessions_;
  std::vector<DriverRecord> records_;
  std::vector<std::string> violations_;
};

}  // namespace workbench
