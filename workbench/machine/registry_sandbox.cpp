#include "workbench/machine/registry_sandbox.h"

#include <array>
#include <stdexcept>
#include <string>

#include "base/unique_handle.h"

namespace workbench {
namespace {

constexpr wchar_t kAllScratch[] = L"Software\\KdWorkbench";

// The predefined keys that are redirected, and the scratch subkeys that stand for them.
struct Predefined {
  HKEY key;
  const wchar_t* name;
};
const std::array<Predefined, 3>& PredefinedKeys() {
  // HKEY_CURRENT_USER comes last: the scratch keys are opened below the real one.
  static const std::array<Predefined, 3> keys = {
      {{HKEY_LOCAL_MACHINE, L"Machine"}, {HKEY_CLASSES_ROOT, L"Classes"}, {HKEY_CURRENT_USER, L"User"}}};
  return keys;
}

// Keys of the real registry that Windows' own libraries read in this process while the sandbox holds.
struct Seed {
  HKEY root;
  const wchar_t* rootName;
  const wchar_t* path;
};
const std::array<Seed, 3>& Seeds() {
  static const std::array<Seed, 3> seeds = {
      {{HKEY_LOCAL_MACHINE, L"Machine", L"System\\CurrentControlSet\\Services\\WinSock2"},
       {HKEY_LOCAL_MACHINE, L"Machine", L"System\\CurrentControlSet\\Services\\Tcpip\\Parameters"},
       {HKEY_CURRENT_USER, L"User", L"Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings"}}};
  return seeds;
}

void Require(LSTATUS status, const char* what) {
  if (status != ERROR_SUCCESS) {
    throw std::runtime_error(std::string("registry sandbox: ") + what + " failed with " +
                             std::to_string(status));
  }
}

CRegistryKey Create(HKEY root, const std::wstring& path) {
  CRegistryKey key;
  Require(RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.Put(), nullptr),
          "create");
  return key;
}

CRegistryKey OpenToRead(const std::wstring& path) {
  CRegistryKey key;
  RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, key.Put());
  return key;
}

std::optional<RegistrySandbox::RawValue> ReadRaw(HKEY key, const std::wstring& name) {
  RegistrySandbox::RawValue value;
  DWORD size = 0;
  if (RegQueryValueExW(key, name.c_str(), nullptr, &value.type, nullptr, &size) != ERROR_SUCCESS) return {};
  value.data.resize(size);
  if (RegQueryValueExW(key, name.c_str(), nullptr, &value.type, value.data.data(), &size) != ERROR_SUCCESS)
    return {};
  return value;
}

// Scratch keys of processes that ended without removing them.
void RemoveLeftovers() {
  CRegistryKey all;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kAllScratch, 0, KEY_ALL_ACCESS, all.Put()) != ERROR_SUCCESS) return;
  std::vector<std::wstring> stale;
  wchar_t name[256];
  for (DWORD i = 0, size = 256;
       RegEnumKeyExW(all.Get(), i, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
       ++i, size = 256) {
    const DWORD process = std::wcstoul(name, nullptr, 10);
    const CKernelHandle running(OpenProcess(SYNCHRONIZE, FALSE, process));
    if (!running) stale.emplace_back(name);
  }
  for (const std::wstring& key : stale) RegDeleteTreeW(all.Get(), key.c_str());
}

}  // namespace

RegistrySandbox::RegistrySandbox()
    : scratch_(kAllScratch + (L"\\" + std::to_wstring(GetCurrentProcessId()))) {
  RemoveLeftovers();
  RegDeleteTreeW(HKEY_CURRENT_USER, scratch_.c_str());
  Require(RegOpenKeyExW(HKEY_CURRENT_USER, nullptr, 0, KEY_ALL_ACCESS, &realUser_), "opening the user's key");
  for (const Seed& seed : Seeds()) {
    CRegistryKey source;
    if (RegOpenKeyExW(seed.root, seed.path, 0, KEY_READ, source.Put()) != ERROR_SUCCESS) continue;
    const CRegistryKey target = Create(realUser_, scratch_ + L"\\" + seed.rootName + L"\\" + seed.path);
    RegCopyTreeW(source.Get(), nullptr, target.Get());
  }
  std::vector<CRegistryKey> scratch;
  for (const Predefined& one : PredefinedKeys())
    scratch.push_back(Create(realUser_, scratch_ + L"\\" + one.name));
  for (std::size_t i = 0; i < scratch.size(); ++i) {
    Require(RegOverridePredefKey(PredefinedKeys()[i].key, scratch[i].Get()), "override");
  }
}

RegistrySandbox::~RegistrySandbox() {
  for (const Predefined& one : PredefinedKeys()) RegOverridePredefKey(one.key, nullptr);
  RegDeleteTreeW(realUser_, scratch_.c_str());
  RegCloseKey(realUser_);
}

void RegistrySandbox::SetRaw(const std::wstring& path, const std::wstring& name, DWORD type, const void* data,
                             DWORD size) {
  const CRegistryKey key = Create(HKEY_LOCAL_MACHINE, path);
  Require(RegSetValueExW(key.Get(), name.c_str(), 0, type, static_cast<const BYTE*>(data), size), "set");
}

void RegistrySandbox::SetText(const std::wstring& path, const std::wstring& name, const std::wstring& text) {
  SetRaw(path, name, REG_SZ, text.c_str(), static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

void RegistrySandbox::SetDword(const std::wstring& path, const std::wstring& name, std::uint32_t value) {
  SetRaw(path, name, REG_DWORD, &value, sizeof value);
}

void RegistrySandbox::SetTexts(const std::wstring& path, const std::wstring& name,
                               const std::vector<std::wstring>& texts) {
  std::wstring all;
  for (const std::wstring& text : texts) all += text + L'\0';
  SetRaw(path, name, REG_MULTI_SZ, all.c_str(), static_cast<DWORD>((all.size() + 1) * sizeof(wchar_t)));
}

void RegistrySandbox::MakeKey(const std::wstring& path) {
  Create(HKEY_LOCAL_MACHINE, path);
}

void RegistrySandbox::DeleteValue(const std::wstring& path, const std::wstring& name) {
  CRegistryKey key;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_SET_VALUE, key.Put()) != ERROR_SUCCESS) return;
  RegDeleteValueW(key.Get(), name.c_str());
}

void RegistrySandbox::DeleteKey(const std::wstring& path) {
  RegDeleteTreeW(HKEY_LOCAL_MACHINE, path.c_str());
}

bool RegistrySandbox::HasKey(const std::wstring& path) const {
  return static_cast<bool>(OpenToRead(path));
}

std::optional<RegistrySandbox::RawValue> RegistrySandbox::Raw(const std::wstring& path,
                                                              const std::wstring& name) const {
  const CRegistryKey key = OpenToRead(path);
  if (!key) return {};
  return ReadRaw(key.Get(), name);
}

std::optional<std::wstring> RegistrySandbox::Text(const std::wstring& path, const std::wstring& name) const {
  const std::optional<RawValue> raw = Raw(path, name);
  if (!raw || (raw->type != REG_SZ && raw->type != REG_EXPAND_SZ && raw->type != REG_MULTI_SZ)) return {};
  const auto* text = reinterpret_cast<const wchar_t*>(raw->data.data());
  std::wstring value(text, raw->data.size() / sizeof(wchar_t));
  return value.substr(0, value.find(L'\0'));
}

std::optional<std::uint32_t> RegistrySandbox::Dword(const std::wstring& path,
                                                    const std::wstring& name) const {
  const std::optional<RawValue> raw = Raw(path, name);
  if (!raw || raw->type != REG_DWORD || raw->data.size() != sizeof(std::uint32_t)) return {};
  std::uint32_t value = 0;
  std::copy(raw->data.begin(), raw->data.end(), reinterpret_cast<std::uint8_t*>(&value));
  return value;
}

std::vector<std::wstring> RegistrySandbox::ValueNames(const std::wstring& path) const {
  std::vector<std::wstring> names;
  const CRegistryKey key = OpenToRead(path);
  std::wstring name(16384, L'\0');
  for (DWORD i = 0; key; ++i) {
    auto size = static_cast<DWORD>(name.size());
    if (RegEnumValueW(key.Get(), i, name.data(), &size, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
      break;
    names.push_back(name.substr(0, size));
  }
  return names;
}

std::vector<std::wstring> RegistrySandbox::KeyNames(const std::wstring& path) const {
  std::vector<std::wstring> names;
  const CRegistryKey key = OpenToRead(path);
  wchar_t name[256];
  for (DWORD i = 0; key; ++i) {
    DWORD size = 256;
    if (RegEnumKeyExW(key.Get(), i, name, &size, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
    names.emplace_back(name, size);
  }
  return names;
}

std::wstring EnumKeyOf(const std::wstring& instanceId) {
  return L"System\\CurrentControlSet\\Enum\\" + instanceId;
}

std::wstring ParametersKeyOf(const std::wstring& instanceId) {
  return EnumKeyOf(instanceId) + L"\\Device Parameters";
}

}  // namespace workbench
