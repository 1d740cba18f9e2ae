// The COM name database and the DOS device names.
#pragma once

#include <windows.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

class RegistrySandbox;

// Which COM numbers are taken: a bit map in the registry, where Windows keeps it. Numbers from 1.
class ComDatabase {
 public:
  static constexpr DWORD kMaximumPorts = 4096;

  explicit ComDatabase(RegistrySandbox& registry);

  [[nodiscard]] bool IsClaimed(DWORD number) const;  // false for a number outside the database
  void Claim(DWORD number);                          // grows the database when it must
  void Release(DWORD number);
  [[nodiscard]] DWORD Ports() const;                 // how many numbers the database arbitrates
  [[nodiscard]] std::vector<DWORD> Claimed() const;  // ascending

  // Handles of ComDBOpen; no handle is used twice.
  [[nodiscard]] HANDLE OpenHandle();
  [[nodiscard]] bool IsOpen(HANDLE handle) const { return open_.contains(handle); }
  bool CloseHandle(HANDLE handle) { return open_.erase(handle) != 0; }

  // When set, ComDBOpen fails with this error.
  DWORD openError = ERROR_SUCCESS;

 private:
  void Store();

  RegistrySandbox& registry_;
  std::vector<unsigned char> bits_;  // what the registry holds
  std::set<HANDLE> open_;
  std::uint64_t nextHandle_ = 0xC0DB0010;
};

// DOS device names: each name is a stack of targets, of which the top one counts. Names are
// case-insensitive.
class DosDevices {
 public:
  // The stack of a name, current target first; empty when the name is not defined.
  [[nodiscard]] std::vector<std::wstring> Targets(std::wstring_view name) const;
  [[nodiscard]] std::wstring Target(std::wstring_view name) const;  // "" when not defined
  [[nodiscard]] std::vector<std::wstring> Names() const;
  [[nodiscard]] std::vector<std::wstring> NamesOf(std::wstring_view target) const;
  void Define(std::wstring_view name, std::wstring_view target);
  // Removes the first target that equals `target` or, unless `exact`, begins with it; the current one when
  // `target` is empty. False when there is none.
  bool Remove(std::wstring_view name, std::wstring_view target, bool exact);

 private:
  struct IgnoreCase {
    using is_transparent = void;
    bool operator()(std::wstring_view left, std::wstring_view right) const;
  };
  std::map<std::wstring, std::vector<std::wstring>, IgnoreCase> names_;
};

}  // namespace workbench
