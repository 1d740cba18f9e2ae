#include "install/devices/registry_values.h"

#include <string>
#include <string_view>
#include <vector>

#include "base/system_function.h"
#include "install/devices/grow_and_retry.h"

namespace {

constexpr DWORD kMostNameCharacters = 16383;

// The bytes of a value, whatever its length.
struct ValueBytes {
  CLocalMemory memory;
  DWORD size = 0;
};

// False when the value cannot be read.
bool ReadBytes(HKEY key, const CWideString& name, ValueBytes& value) {
  DWORD room = 0;
  return GrowAndRetry(value.memory, room, [&](BYTE* bytes, DWORD given, DWORD* required) {
    *required = given;
    const LSTATUS result = RegQueryValueExW(key, name.Text(), nullptr, nullptr, bytes, required);
    value.size = *required;
    // Without a buffer the registry reports the size and counts that as a success.
    const bool sizeOnly = result == ERROR_SUCCESS && bytes == nullptr && *required > 0;
    if (result == ERROR_SUCCESS && !sizeOnly) return true;
    SetLastError(sizeOnly || result == ERROR_MORE_DATA ? ERROR_INSUFFICIENT_BUFFER : ERROR_INVALID_DATA);
    return false;
  });
}

using DeleteKeyEx = LSTATUS(WINAPI*)(HKEY, LPCWSTR, REGSAM, DWORD);

DeleteKeyEx FindDeleteKeyEx() {
  const HMODULE module = GetModuleHandleW(L"Advapi32.dll");
  if (module == nullptr) return nullptr;
  // Through void*, since a cast between function types is what a compiler rightly warns of.
  return reinterpret_cast<DeleteKeyEx>(reinterpret_cast<void*>(GetProcAddress(module, "RegDeleteKeyExW")));
}

}  // namespace

CRegistryKey OpenKey(HKEY parent, const CWideString& path, REGSAM access) {
  CRegistryKey key;
  if (RegOpenKeyExW(parent, path.Text(), 0, access, key.Put()) != ERROR_SUCCESS) key.Reset();
  return key;
}

CRegistryKey CreateKey(HKEY parent, const CWideString& path) {
  CRegistryKey key;
  if (RegCreateKeyExW(parent, path.Text(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_READ | KEY_WRITE, nullptr,
                      key.Put(), nullptr) != ERROR_SUCCESS) {
    key.Reset();
  }
  return key;
}

void ForEachValue(HKEY key, const std::function<void(const CWideString& name, DWORD type)>& visit) {
  std::vector<wchar_t> name(kMostNameCharacters + 1);
  for (DWORD index = 0;; ++index) {
    DWORD length = kMostNameCharacters + 1;
    DWORD type = REG_NONE;
    if (RegEnumValueW(key, index, name.data(), &length, nullptr, &type, nullptr, nullptr) != ERROR_SUCCESS) {
      return;
    }
    visit(std::wstring_view(name.data(), length), type);
  }
}

void CopyDword(HKEY from, HKEY to, const CWideString& name) {
  DWORD value = 0;
  DWORD size = sizeof(value);
  if (RegQueryValueExW(from, name.Text(), nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size) !=
      ERROR_SUCCESS) {
    return;
  }
  RegSetValueExW(to, name.Text(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), sizeof(value));
}

void CopyString(HKEY from, HKEY to, const CWideString& name) {
  ValueBytes value;
  if (!ReadBytes(from, name, value)) return;
  RegSetValueExW(to, name.Text(), 0, REG_SZ, static_cast<const BYTE*>(value.memory.Get()), value.size);
}

void CopyDwordsAndStrings(HKEY from, HKEY to) {
  ForEachValue(from, [&](const CWideString& name, DWORD type) {
    if (type == REG_DWORD) CopyDword(from, to, name);
    if (type == REG_SZ) CopyString(from, to, name);
  });
}

bool ReadString(HKEY key, const CWideString& name, CWideString& text) {
  ValueBytes value;
  if (!ReadBytes(key, name, value)) return false;
  const auto* characters = static_cast<const wchar_t*>(value.memory.Get());
  const std::wstring_view stored(characters, value.size / sizeof(wchar_t));
  text = stored.substr(0, stored.find(L'\0'));  // the terminator need not be there
  return true;
}

bool WriteString(HKEY key, const CWideString& name, const CWideString& text) {
  const auto bytes = static_cast<DWORD>((text.Length() + 1) * sizeof(wchar_t));
  return RegSetValueExW(key, name.Text(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.Text()), bytes) ==
         ERROR_SUCCESS;
}

void DeleteKey(HKEY parent, const CWideString& name) {
  static constinit CSystemFunction<DeleteKeyEx> lookedUp;
  const DeleteKeyEx deleteKeyEx = lookedUp.Get(FindDeleteKeyEx);
  if (deleteKeyEx != nullptr) {
    deleteKeyEx(parent, name.Text(), 0, 0);
  } else {
    RegDeleteKeyW(parent, name.Text());
  }
}
