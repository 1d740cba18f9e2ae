// The seam to the simulated drivers.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace workbench {

// The arguments of the CreateFileW that opens a driver's interface.
struct DriverOpen {
  std::wstring path{};
  DWORD access = 0;
  DWORD share = 0;
  DWORD disposition = 0;
  DWORD flags = 0;  // flags and attributes
  bool hasSecurity = false;
  bool hasTemplate = false;
};

// The arguments of one DeviceIoControl. A null buffer arrives as an empty span with data() == nullptr.
struct DriverRequest {
  DWORD code = 0;
  std::span<const std::byte> input{};
  std::span<std::byte> output{};
  bool overlapped = false;  // an OVERLAPPED structure was given
};

// The answer: a Win32 error (0: success) and the number of output bytes written.
struct DriverAnswer {
  DWORD error = ERROR_SUCCESS;
  DWORD returned = 0;
};

// A driver as user mode sees it: what is behind one device interface.
//
// The machine calls it on the thread of the DLL's call, one call at a time. `session` numbers the opens:
// it is the same in Open, its Controls and its Close, and never used again. The machine checks what
// Windows checks (handles, pointers) and reports violations itself; everything about the requests is the
// driver's business. An endpoint must outlive the machine that it is attached to.
class DriverEndpoint {
 public:
  virtual ~DriverEndpoint() = default;
  // Answers a Win32 error; any but ERROR_SUCCESS refuses the open, and no Close follows.
  [[nodiscard]] virtual DWORD Open(std::uint64_t session, const DriverOpen& open) = 0;
  [[nodiscard]] virtual DriverAnswer Control(std::uint64_t session, const DriverRequest& request) = 0;
  virtual void Close(std::uint64_t session) = 0;
};

}  // namespace workbench
