#include "config/driver_channel.h"

#include <windows.h>

#include <winioctl.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <new>

#include "base/unique_handle.h"
#include "config/byte_stream.h"

namespace {

constexpr DWORD ControlCode(DWORD function) {
  return CTL_CODE(0x8001U, function, METHOD_BUFFERED, FILE_READ_ACCESS | FILE_WRITE_ACCESS);
}

constexpr DWORD kWriteCode = ControlCode(0x802);

// The two codes of a read: how large the set is, and the set.
struct ReadCodes {
  DWORD size;
  DWORD data;
};
constexpr ReadCodes kCurrentSet = {ControlCode(0x800), ControlCode(0x801)};
constexpr ReadCodes kDefaultSet = {ControlCode(0x804), ControlCode(0x805)};
static_assert(kCurrentSet.size == 0x8001E000 && kDefaultSet.data == 0x8001E014);

constexpr std::uint32_t kHeaderBytes = 8;
using RequestHeader = std::array<std::uint8_t, kHeaderBytes>;

// What every request begins with: the set's selector and a field that is always all ones.
RequestHeader HeaderFor(std::uint32_t selector) {
  RequestHeader header{};
  std::uint32_t room = kHeaderBytes;
  CByteWriter out(header.data(), room);
  static_cast<void>(out.Dword(selector) && out.Dword(0xFFFFFFFF));
  return header;
}

// A null pointer when memory runs out; a driver's size is no reason to throw.
std::unique_ptr<std::uint8_t[]> Allocate(std::size_t size) {
  return std::unique_ptr<std::uint8_t[]>(new (std::nothrow) std::uint8_t[size]);
}

// Opens the driver for one operation; an empty holder without a path. Kept on purpose: overlapped handle
CFileHandle OpenDriver(const CWideString& path) {
  if (path.IsEmpty()) return CFileHandle();
  return CFileHandle(CreateFileW(path.Text(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                 FILE_FLAG_OVERLAPPED, nullptr));
}

// One request with the header alone as input. `returned` is the number of bytes that the driver wrote into
// `output`, never more than `size`.
bool Ask(const CFileHandle& driver, DWORD code, std::uint32_t selector, void* output, std::uint32_t size,
         std::uint32_t& returned) {
  RequestHeader header = HeaderFor(selector);
  DWORD written = 0;
  if (!DeviceIoControl(driver.Get(), code, header.data(), kHeaderBytes, output, size, &written, nullptr)) {
    return false;
  }
  returned = std::min<std::uint32_t>(written, size);
  return true;
}

bool AskSize(const CFileHandle& driver, DWORD code, std::uint32_t selector, std::uint32_t& size) {
  std::array<std::uint8_t, 4> answer{};
  std::uint32_t returned = 0;
  if (!Ask(driver, code, selector, answer.data(), answer.size(), returned)) return false;
  // An answer of fewer than four bytes does not count.
  const auto value = CByteReader(answer.data(), returned).Dword();
  size = value.value_or(0);
  return value.has_value();
}

// Reads a set. A set that grows between the two requests fails; there is no second try.
bool ReadSet(const CWideString& path, const ReadCodes& codes, CSsInformationSet& set,
             std::uint32_t selector) {
  const CFileHandle driver = OpenDriver(path);
  if (!driver) return false;
  std::uint32_t size = 0;
  if (!AskSize(driver, codes.size, selector, size)) return false;
  const auto buffer = Allocate(size);
  std::uint32_t unread = 0;
  if (!buffer || !Ask(driver, codes.data, selector, buffer.get(), size, unread)) return false;
  return set.Deserialise(buffer.get(), unread);
}

}  // namespace

bool ReadCurrentSet(const CWideString& path, CSsInformationSet& set, std::uint32_t selector) {
  return ReadSet(path, kCurrentSet, set, selector);
}

bool ReadDefaultSet(const CWideString& path, CSsInformationSet& set, std::uint32_t selector) {
  return ReadSet(path, kDefaultSet, set, selector);
}

bool WriteSet(const CWideString& path, CSsInformationSet& set, std::uint32_t selector) {
  const CFileHandle driver = OpenDriver(path);
  if (!driver) return false;
  const std::uint32_t size = set.GetSerialisedSize();
  if (size > std::numeric_limits<DWORD>::max() - kHeaderBytes) return false;
  const auto request = Allocate(std::size_t{size} + kHeaderBytes);
  if (!request) return false;
  const RequestHeader header = HeaderFor(selector);
  std::copy(header.begin(), header.end(), request.get());
  std::uint32_t room = size;
  if (!set.Serialise(request.get() + kHeaderBytes, room)) return false;
  DWORD written = 0;
  return DeviceIoControl(driver.Get(), kWriteCode, request.get(), size + kHeaderBytes, nullptr, 0, &written,
                         nullptr) != FALSE;
}
