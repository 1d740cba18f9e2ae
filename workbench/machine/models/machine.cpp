#include "workbench/machine/models/machine.h"

#include <atomic>
#include <stdexcept>

namespace workbench {
namespace {

std::atomic<Machine*> current{nullptr};

// Where Windows keeps the path of the HTML Help control.
void InstallHtmlHelp() {
  static constexpr wchar_t kKey[] = L"CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";
  static constexpr wchar_t kPath[] = L"%SystemRoot%\\system32\\hhctrl.ocx";
  if (RegSetKeyValueW(HKEY_CLASSES_ROOT, kKey, nullptr, REG_EXPAND_SZ, kPath, sizeof kPath) != ERROR_SUCCESS)
    throw std::runtime_error("the registry sandbox refuses a key");
}

}  // namespace

Machine::Machine() : comNames_(registry_), devices_(*this), sets_(*this), files_(*this) {
  // A host has these keys before any port is installed; the kernel makes the first one anew at each start.
  registry_.MakeKey(kSerialCommKey);
  registry_.MakeKey(kPortsKey);
  InstallHtmlHelp();
  current.store(this);
}

Machine::~Machine() {
  current.store(nullptr);
}

Machine* Machine::Current() {
  return current.load();
}

}  // namespace workbench
