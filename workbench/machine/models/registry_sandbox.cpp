#include "workbench/machine/models/registry_sandbox.h"

#include <algorithm>
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
// HKEY_CURRENT_USER comes last: the scratch keys are opened below the real one.
const Predefined kPredefined[] = {
    {HKEY_LOCAL_MACHINE, L"Machine"}, {HKEY_CLASSES_ROOT, L"Classes"}, {HKEY_CURRENT_USER, L"User"}};

// Keys of the real registry that Windows' own libraries read in this process while the sandbox holds.
struct Seed {
  HKEY root;
  const wchar_t* rootName;
  const wchar_t* path;
};
const Seed kSeeds[] = {
    {HKEY_LOCAL_MACHINE, L"Machine", L"System\\CurrentControlSet\\Services\\WinSock2"},
    {HKEY_LOCAL_MACHINE, L"Machine", L"System\\CurrentControlSet\\Services\\Tcpip\\Parameters"},
    {HKEY_CURRENT_USER, L"User", L"Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings"}};

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

// What RegEnumKeyExW or RegEnumValueW reports.
template <class Enumerate>
std::vector<std::wstring> NamesIn(HKEY key, Enumerate enumerate) {
  std::vector<std::wstring> names;
  std::wstring name(16384, L'\0');
  for (DWORD i = 0;; ++i) {
    auto size = static_cast<DWORD>(name.size());
    if (enumerate(key, i, name.data(), &size, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
      return names;
    names.push_back(name.substr(0, size));
  }
}

std::vector<std::wstring> SubkeysOf(HKEY key) {
  return NamesIn(key, RegEnumKeyExW);
}

std::vector<std::wstring> ValuesOf(HKEY key) {
  return NamesIn(key, RegEnumValueW);
}

// Scratch keys of processes that ended without removing them.
void RemoveLeftovers(HKEY all) {
  for (const std::wstring& name : SubkeysOf(all)) {
    const DWORD process = std::wcstoul(name.c_str(), nullptr, 10);
    const CKernelHandle running(OpenProcess(SYNCHRONIZE, FALSE, process));
    if (!running) RegDeleteTreeW(all, name.c_str());
  }
}

// Where a seed is below the scratch key.
std::wstring PlaceOf(const Seed& seed) {
  return std::wstring(seed.rootName) + L"\\" + seed.path;
}

// Removes everything from a scratch key but the seeds and the keys above them; `place` is the key's place,
// with a backslash at its end, or nothing.
void EmptyButSeeds(HKEY key, const std::wstring& place) {
  for (const std::wstring& name : SubkeysOf(key)) {
    const std::wstring below = place + name;
    const auto is = [&](const Seed& seed) { return PlaceOf(seed) == below; };
    const auto leadsTo = [&](const Seed& seed) { return PlaceOf(seed).starts_with(below + L"\\"); };
    if (std::ranges::any_of(kSeeds, is)) continue;
    if (!std::ranges::any_of(kSeeds, leadsTo)) {
      RegDeleteTreeW(key, name.c_str());
      continue;
    }
    EmptyButSeeds(Create(key, name).Get(), below + L"\\");
  }
  for (const std::wstring& name : ValuesOf(key)) RegDeleteValueW(key, name.c_str());
}

// The scratch key of this process. The seeds are copied once: there are many, and machines come and go by the
// thousand.
class ProcessScratch {
 public:
  ProcessScratch()
      : all_(Create(HKEY_CURRENT_USER, kAllScratch)), name_(std::to_wstring(GetCurrentProcessId())) {
    RemoveLeftovers(all_.Get());
    RegDeleteTreeW(all_.Get(), name_.c_str());
    for (const Seed& seed : kSeeds) {
      CRegistryKey source;
      if (RegOpenKeyExW(seed.root, seed.path, 0, KEY_READ, source.Put()) != ERROR_SUCCESS) continue;
      RegCopyTreeW(source.Get(), nullptr, Create(all_.Get(), name_ + L"\\" + PlaceOf(seed)).Get());
    }
  }
  ~ProcessScratch() { RegDeleteTreeW(all_.Get(), name_.c_str()); }
  ProcessScratch(const ProcessScratch&) = delete;
  ProcessScratch& operator=(const ProcessScratch&) = delete;

  [[nodiscard]] CRegistryKey Open(const std::wstring& place = L"") const {
    return Create(all_.Get(), place.empty() ? name_ : name_ + L"\\" + place);
  }

 private:
  CRegistryKey all_;
  std::wstring name_;
};

const ProcessScratch& Scratch() {
  static const ProcessScratch scratch;
  return scratch;
}

}  // namespace

RegistrySandbox::RegistrySandbox() {
  for (const Predefined& one : kPredefined)
    Require(RegOverridePredefKey(one.key, Scratch().Open(one.name).Get()), "override");
}

RegistrySandbox::~RegistrySandbox() {
  for (const Predefined& one : kPredefined) RegOverridePredefKey(one.key, nullptr);
  EmptyButSeeds(Scratch().Open().Get(), L"");
}

void RegistrySandbox::SetRaw(const std::wstring& path, const std::wstring& name, DWORD type, const void* data,
                             DWORD size) {
  Require(RegSetKeyValueW(HKEY_LOCAL_MACHINE, path.c_str(), name.c_str(), type, data, size), "set");
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
  RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, path.c_str(), name.c_str());
}

void RegistrySandbox::DeleteKey(const std::wstring& path) {
  RegDeleteTreeW(HKEY_LOCAL_MACHINE, path.c_str());
}

bool RegistrySandbox::HasKey(const std::wstring& path) const {
  return static_cast<bool>(OpenToRead(path));
}

std::optional<RegistrySandbox::RawValue> RegistrySandbox::Raw(const std::wstring& path,
                                                              const std::wstring& name) const {
  RawValue value;
  const CRegistryKey key = OpenToRead(path);
  DWORD size = 0;
  const auto read = [&](BYTE* data) {
    return key &&
           RegQueryValueExW(key.Get(), name.c_str(), nullptr, &value.type, data, &size) == ERROR_SUCCESS;
  };
  if (!read(nullptr)) return {};
  value.data.resize(size);
  if (!read(value.data.data())) return {};
  return value;
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
  std::uint32_t value = 0;
  DWORD size = sizeof value;
  const LSTATUS status =
      RegGetValueW(HKEY_LOCAL_MACHINE, path.c_str(), name.c_str(), RRF_RT_REG_DWORD, nullptr, &value, &size);
  return status == ERROR_SUCCESS ? std::optional(value) : std::nullopt;
}

std::vector<std::wstring> RegistrySandbox::ValueNames(const std::wstring& path) const {
  const CRegistryKey key = OpenToRead(path);
  return key ? ValuesOf(key.Get()) : std::vector<std::wstring>();
}

std::vector<std::wstring> RegistrySandbox::KeyNames(const std::wstring& path) const {
  const CRegistryKey key = OpenToRead(path);
  return key ? SubkeysOf(key.Get()) : std::vector<std::wstring>();
}

std::wstring EnumKeyOf(const std::wstring& instanceId) {
  return L"System\\CurrentControlSet\\Enum\\" + instanceId;
}

std::wstring ParametersKeyOf(const std::wstring& instanceId) {
  return EnumKeyOf(instanceId) + L"\\Device Parameters";
}

}  // namespace workbench
