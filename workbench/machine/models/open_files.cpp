#include "workbench/machine/models/open_files.h"

#include "workbench/machine/models/machine.h"
#include "workbench/text/device_text.h"

namespace workbench {

OpenFiles::~OpenFiles() {
  for (const auto& [handle, file] : files_) ::CloseHandle(handle);
}

HANDLE OpenFiles::Open(const DriverOpen& open, bool& handled) {
  const std::wstring_view path = open.path;
  handled = path.starts_with(L"\\\\.\\") || path.starts_with(L"\\\\?\\");
  if (!handled) return INVALID_HANDLE_VALUE;
  Device* owner = nullptr;
  const DeviceInterface* instance = machine_.Devices().FindInterface(path, &owner);
  if (instance != nullptr) return OpenInterface(open, *instance, *owner);
  if (path.starts_with(L"\\\\.\\")) return OpenComPort(path.substr(4));
  // "\\?\C:\..." is a file like any other.
  handled = path.find(L'#') != std::wstring_view::npos;
  return FailWith(ERROR_FILE_NOT_FOUND, INVALID_HANDLE_VALUE);
}

HANDLE OpenFiles::OpenInterface(const DriverOpen& open, const DeviceInterface& instance,
                                const Device& owner) {
  if (instance.driver == nullptr || !instance.active || !owner.started)
    return FailWith(ERROR_FILE_NOT_FOUND, INVALID_HANDLE_VALUE);
  const std::uint64_t session = nextSession_++;
  const DWORD error = instance.driver->Open(session, open);
  if (error != ERROR_SUCCESS) return FailWith(error, INVALID_HANDLE_VALUE);
  const HANDLE handle = Keep({.driver = instance.driver, .session = session});
  machine_.Calls().Opened(HandleKind::DriverFile, reinterpret_cast<std::uint64_t>(handle));
  return handle;
}

HANDLE OpenFiles::OpenComPort(std::wstring_view name) {
  const std::wstring target = machine_.DosNames().Target(name);
  Device* device = target.empty() ? nullptr : machine_.Devices().FindPort(target);
  if (device == nullptr || !device->started) return FailWith(ERROR_FILE_NOT_FOUND, INVALID_HANDLE_VALUE);
  // A serial port is exclusive: a second open is refused, whoever makes it.
  if (device->port->openElsewhere || device->port->openHere)
    return FailWith(ERROR_ACCESS_DENIED, INVALID_HANDLE_VALUE);
  device->port->openHere = true;
  const HANDLE handle = Keep({.port = device});
  machine_.Calls().Opened(HandleKind::ComPortFile, reinterpret_cast<std::uint64_t>(handle));
  return handle;
}

HANDLE OpenFiles::Keep(const OpenFile& file) {
  const HANDLE handle = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  files_.emplace(handle, file);
  return handle;
}

bool OpenFiles::Owns(HANDLE handle) const {
  return files_.contains(handle);
}

bool OpenFiles::Control(HANDLE handle, const DriverRequest& request, DWORD* returned) {
  const auto found = files_.find(handle);
  if (found == files_.end() || found->second.driver == nullptr) return FailWith(ERROR_INVALID_FUNCTION);
  const DriverAnswer answer = found->second.driver->Control(found->second.session, request);
  if (returned != nullptr) *returned = answer.returned;
  return answer.error == ERROR_SUCCESS || FailWith(answer.error);
}

bool OpenFiles::Close(HANDLE handle) {
  const auto found = files_.find(handle);
  if (found == files_.end()) return false;
  const OpenFile file = found->second;
  files_.erase(found);
  ::CloseHandle(handle);
  if (file.driver != nullptr) file.driver->Close(file.session);
  if (file.port != nullptr) file.port->port->openHere = false;
  return true;
}

}  // namespace workbench
