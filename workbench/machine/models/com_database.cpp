#include "workbench/machine/models/com_database.h"

#include <algorithm>

#include "workbench/machine/models/registry_sandbox.h"

namespace workbench {
namespace {

constexpr wchar_t kArbiterKey[] = L"System\\CurrentControlSet\\Control\\COM Name Arbiter";
constexpr wchar_t kArbiterValue[] = L"ComDB";

bool BeginsWith(std::wstring_view text, std::wstring_view start) {
  return text.substr(0, start.size()) == start;
}

}  // namespace

ComDatabase::ComDatabase(RegistrySandbox& registry) : registry_(registry) {
  if (const auto raw = registry_.Raw(kArbiterKey, kArbiterValue)) bits_ = raw->data;
  if (!bits_.empty()) return;
  bits_.resize(256 / 8);
  Store();
}

void ComDatabase::Store() {
  registry_.SetRaw(kArbiterKey, kArbiterValue, REG_BINARY, bits_.data(), static_cast<DWORD>(bits_.size()));
}

DWORD ComDatabase::Ports() const {
  return static_cast<DWORD>(bits_.size() * 8);
}

bool ComDatabase::IsClaimed(DWORD number) const {
  const std::size_t index = number - 1;
  return number != 0 && index / 8 < bits_.size() && ((bits_[index / 8] >> (index % 8)) & 1) != 0;
}

void ComDatabase::Claim(DWORD number) {
  if (number == 0 || number > kMaximumPorts) return;
  const std::size_t index = number - 1;
  if (index / 8 >= bits_.size()) bits_.resize(index / 8 + 1);
  bits_[index / 8] = static_cast<unsigned char>(bits_[index / 8] | (1u << (index % 8)));
  Store();
}

void ComDatabase::Release(DWORD number) {
  if (!IsClaimed(number)) return;
  const std::size_t index = number - 1;
  bits_[index / 8] = static_cast<unsigned char>(bits_[index / 8] & ~(1u << (index % 8)));
  Store();
}

std::vector<DWORD> ComDatabase::Claimed() const {
  std::vector<DWORD> numbers;
  for (DWORD number = 1; number <= Ports(); ++number) {
    if (IsClaimed(number)) numbers.push_back(number);
  }
  return numbers;
}

HANDLE ComDatabase::OpenHandle() {
  const auto handle = reinterpret_cast<HANDLE>(nextHandle_);
  nextHandle_ += 0x10;
  open_.insert(handle);
  return handle;
}

bool DosDevices::IgnoreCase::operator()(std::wstring_view left, std::wstring_view right) const {
  return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                              static_cast<int>(right.size()), TRUE) == CSTR_LESS_THAN;
}

std::vector<std::wstring> DosDevices::Targets(std::wstring_view name) const {
  const auto found = names_.find(name);
  return found == names_.end() ? std::vector<std::wstring>() : found->second;
}

std::wstring DosDevices::Target(std::wstring_view name) const {
  const auto found = names_.find(name);
  return found == names_.end() ? std::wstring() : found->second.front();
}

std::vector<std::wstring> DosDevices::Names() const {
  std::vector<std::wstring> names;
  for (const auto& [name, targets] : names_) names.push_back(name);
  return names;
}

std::vector<std::wstring> DosDevices::NamesOf(std::wstring_view target) const {
  std::vector<std::wstring> names;
  for (const auto& [name, targets] : names_) {
    if (targets.front() == target) names.push_back(name);
  }
  return names;
}

void DosDevices::Define(std::wstring_view name, std::wstring_view target) {
  std::vector<std::wstring>& targets = names_[std::wstring(name)];
  targets.insert(targets.begin(), std::wstring(target));
}

bool DosDevices::Remove(std::wstring_view name, std::wstring_view target, bool exact) {
  const auto found = names_.find(name);
  if (found == names_.end()) return false;
  std::vector<std::wstring>& targets = found->second;
  const auto match = std::ranges::find_if(
      targets, [&](const std::wstring& one) { return exact ? one == target : BeginsWith(one, target); });
  if (match == targets.end()) return false;
  targets.erase(match);
  if (targets.empty()) names_.erase(found);
  return true;
}

}  // namespace workbench
