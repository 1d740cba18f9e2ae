// Hostile instance ids: the name of a port's backup, the hardware part and the rules that are chosen by it.
#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "fuzz_checks.h"
#include "install/naming/com_names.h"
#include "install/install_rules.h"

namespace {

std::wstring_view LastSegment(std::wstring_view id) {
  const std::size_t at = id.rfind(L'\\');
  return at == std::wstring_view::npos ? id : id.substr(at + 1);
}

void CheckBackupKey(const std::wstring& id) {
  const CWideString key = BackupKeyName(id);
  Require(key.Find(L"\\") == CWideString::kNotFound, "a backup is one key, not a path");
  Require(key.Length() <= id.size(), "a backup's name is no longer than the id");
  Require(key.View().ends_with(LastSegment(id)), "the last segment, which tells ports apart, stays whole");
  Require(!(BackupKeyName(id + L"1") == BackupKeyName(id + L"2")), "two ports of a server have two backups");
  Require(BackupKeyName(key) == key, "a name without backslashes stays as it is");
}

void CheckHardwareId(const std::wstring& id) {
  const CWideString hardwareId = HardwareIdOf(id);
  Require(std::ranges::count(hardwareId.View(), L'\\') <= 1, "nothing of the second backslash on is left");
  Require(HardwareIdOf(hardwareId) == hardwareId, "a hardware part is its own hardware part");
  CWideString raised(id);
  raised.MakeUpper();
  Require(raised.View().starts_with(hardwareId.View()), "the hardware part is the front of the id");

  const auto number = FixedComNumber(hardwareId);
  Require(!number || (*number >= 1 && *number <= 255), "a fixed number can be had");
  Require(!TakesNumberUnasked(hardwareId) || number, "only a fixed number is taken unasked");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::wstring text = Utf16Text(std::span(data, size));
  CheckBackupKey(text);
  CheckHardwareId(text);
  Require(ForbidsDriverUpdate(text) == (ReferenceNumber(text) == 1), "only the number one forbids");
  Require(IsCapabilityValue(text + L"Supported" + text), "a capability is known by its name");
  return 0;
}
