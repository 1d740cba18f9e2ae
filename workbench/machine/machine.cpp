#include "workbench/machine/machine.h"

#include <atomic>
#include <stdexcept>

#include "workbench/machine/gate/thunk.h"

namespace workbench {
namespace {

std::atomic<Machine*> current{nullptr};

// Where Windows keeps the path of the HTML Help control.
constexpr wchar_t kHelpControlKey[] = L"CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";

void InstallHtmlHelp() {
  static constexpr wchar_t kPath[] = L"%SystemRoot%\\system32\\hhctrl.ocx";
  HKEY key = nullptr;
  if (RegCreateKeyExW(HKEY_CLASSES_ROOT, kHelpControlKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                      nullptr) != ERROR_SUCCESS) {
    throw std::runtime_error("the registry sandbox refuses a key");
  }
  RegSetValueExW(key, nullptr, 0, REG_EXPAND_SZ, reinterpret_cast<const BYTE*>(kPath), sizeof kPath);
  RegCloseKey(key);
}

}  // namespace

Gate* CurrentGate() {
  Machine* machine = current.load();
  return machine == nullptr ? nullptr : &machine->Calls();
}

AnyFunction FindRealFunction(const FunctionRow& row) {
  return reinterpret_cast<AnyFunction>(GetProcAddress(LoadLibraryA(row.dll), row.name));
}

Machine::Machine() : comNames_(registry_), devices_(*this), sets_(*this), files_(*this) {
  // A host has these keys before any port is installed; the kernel makes the first one anew at each start.
  registry_.MakeKey(kSerialCommKey);
  registry_.MakeKey(kPortsKey);
  InstallHtmlHelp();
  Machine* none = nullptr;
  if (!current.compare_exchange_strong(none, this)) throw std::logic_error("a machine is there already");
}

Machine::~Machine() {
  current.store(nullptr);
}

Machine* Machine::Current() {
  return current.load();
}

}  // namespace workbench
