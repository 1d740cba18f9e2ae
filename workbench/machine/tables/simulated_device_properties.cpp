// SetupAPI: registry keys and properties of devices, install parameters and the class installer.
#include <windows.h>

#include <setupapi.h>

#include <algorithm>
#include <cstring>

#include "base/unique_handle.h"
#include "workbench/machine/tables/tables.h"

namespace workbench {
namespace {

// Where Windows keeps a property: a value of the device's key below Enum.
struct PropertyValue {
  DWORD property;
  const wchar_t* name;
  DWORD type;
  bool writable;
};
constexpr PropertyValue kProperties[] = {
    {SPDRP_DEVICEDESC, L"DeviceDesc", REG_SZ, true}, {SPDRP_HARDWAREID, L"HardwareID", REG_MULTI_SZ, true},
    {SPDRP_CLASS, L"Class", REG_SZ, false},          {SPDRP_CLASSGUID, L"ClassGUID", REG_SZ, false},
    {SPDRP_DRIVER, L"Driver", REG_SZ, true},         {SPDRP_FRIENDLYNAME, L"FriendlyName", REG_SZ, true},
};

const PropertyValue* FindProperty(DWORD property) {
  const auto* found = std::ranges::find(kProperties, property, &PropertyValue::property);
  return found == std::end(kProperties) ? nullptr : found;
}

// What SetupDiOpenDevRegKey answers when it fails.
HKEY NoKey(DWORD error) {
  return FailWith(error, static_cast<HKEY>(INVALID_HANDLE_VALUE));
}

HKEY WINAPI OpenDevRegKey(HDEVINFO handle, SP_DEVINFO_DATA* data, DWORD scope, DWORD profile, DWORD type,
                          REGSAM access) {
  MachineLock machine;
  const SetElement* element = machine->Sets().FindElement(handle, data);
  if (element == nullptr) return static_cast<HKEY>(INVALID_HANDLE_VALUE);
  if (scope != DICS_FLAG_GLOBAL || profile != 0 || type != DIREG_DEV) {
    machine->Calls().Violate("only DIREG_DEV in the global scope and profile 0 is simulated");
    return NoKey(ERROR_INVALID_FLAGS);
  }
  const std::wstring path = ParametersKeyOf(element->device->instanceId);
  HKEY key = nullptr;
  const LSTATUS status = RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, access, &key);
  if (status == ERROR_SUCCESS) return key;
  return NoKey(status == ERROR_FILE_NOT_FOUND ? ERROR_KEY_DOES_NOT_EXIST : static_cast<DWORD>(status));
}

BOOL WINAPI GetProperty(HDEVINFO handle, SP_DEVINFO_DATA* data, DWORD property, DWORD* type, BYTE* buffer,
                        DWORD size, DWORD* required) {
  MachineLock machine;
  const SetElement* element = machine->Sets().FindElement(handle, data);
  if (element == nullptr) return FALSE;
  const PropertyValue* known = FindProperty(property);
  if (known == nullptr) return FailWith(ERROR_INVALID_REG_PROPERTY);
  machine->Calls().Note(known->name);
  const auto value = machine->Registry().Raw(EnumKeyOf(element->device->instanceId), known->name);
  if (!value) return FailWith(ERROR_INVALID_DATA);
  if (required != nullptr) *required = static_cast<DWORD>(value->data.size());
  if (type != nullptr) *type = value->type;
  if (buffer == nullptr || size < value->data.size()) return FailWith(ERROR_INSUFFICIENT_BUFFER);
  std::ranges::copy(value->data, buffer);
  return TRUE;
}

bool IsTerminated(const BYTE* buffer, DWORD size) {
  return size >= 2 && size % 2 == 0 && buffer[size - 1] == 0 && buffer[size - 2] == 0;
}

BOOL WINAPI SetProperty(HDEVINFO handle, SP_DEVINFO_DATA* data, DWORD property, const BYTE* buffer,
                        DWORD size) {
  MachineLock machine;
  const SetElement* element = machine->Sets().FindElement(handle, data);
  if (element == nullptr) return FALSE;
  const PropertyValue* known = FindProperty(property);
  if (known == nullptr || !known->writable) return FailWith(ERROR_INVALID_REG_PROPERTY);
  machine->Calls().Note(known->name);
  const std::wstring key = EnumKeyOf(element->device->instanceId);
  if (buffer == nullptr) {
    machine->Registry().DeleteValue(key, known->name);
    return TRUE;
  }
  if (known->type == REG_SZ && !IsTerminated(buffer, size))
    machine->Calls().Violate("a text without a terminator");
  machine->Registry().SetRaw(key, known->name, known->type, buffer, size);
  return TRUE;
}

// The parameters of an element or, without an element, of the whole set; null with last error set.
InstallParameters* FindParameters(MachineLock& machine, HDEVINFO handle, const SP_DEVINFO_DATA* data) {
  DeviceSet* set = machine->Sets().Find(handle);
  if (set == nullptr) return nullptr;
  if (data == nullptr) return &set->parameters;
  SetElement* element = machine->Sets().FindElement(handle, data);
  return element == nullptr ? nullptr : &element->parameters;
}

bool IsRight(const MachineLock& machine, const SP_DEVINSTALL_PARAMS_W* parameters) {
  return parameters == nullptr ? FailWith(ERROR_INVALID_PARAMETER)
                               : machine->Calls().HasSize(*parameters, "SP_DEVINSTALL_PARAMS_W");
}

BOOL WINAPI GetInstallParams(HDEVINFO handle, SP_DEVINFO_DATA* data, SP_DEVINSTALL_PARAMS_W* result) {
  MachineLock machine;
  const InstallParameters* parameters = FindParameters(machine, handle, data);
  if (parameters == nullptr || !IsRight(machine, result)) return FALSE;
  *result = parameters->install;
  return TRUE;
}

BOOL WINAPI SetInstallParams(HDEVINFO handle, SP_DEVINFO_DATA* data, SP_DEVINSTALL_PARAMS_W* given) {
  MachineLock machine;
  InstallParameters* parameters = FindParameters(machine, handle, data);
  if (parameters == nullptr || !IsRight(machine, given)) return FALSE;
  if ((given->Flags & DI_CLASSINSTALLPARAMS) != 0 && parameters->classInstall.empty()) {
    return FailWith(ERROR_NO_CLASSINSTALL_PARAMS);
  }
  if ((parameters->install.Flags & ~given->Flags & kFlagOfOthers) != 0) {
    machine->Calls().Violate("a flag that others have set is cleared");
  }
  parameters->install = *given;
  if ((given->Flags & DI_PROPERTIES_CHANGE) != 0) machine->Calls().Note(L"DI_PROPERTIES_CHANGE");
  if ((given->FlagsEx & DI_FLAGSEX_PROPCHANGE_PENDING) != 0 && data != nullptr) {
    machine->Devices().Find(data->DevInst)->changePending = true;
    machine->Calls().Note(L"DI_FLAGSEX_PROPCHANGE_PENDING");
  }
  return TRUE;
}

// What is wrong with class install parameters, or null.
const char* WrongClassParams(const SP_CLASSINSTALL_HEADER* header, DWORD size) {
  if (size < sizeof *header || header->cbSize != sizeof *header)
    return "SP_CLASSINSTALL_HEADER of the wrong size";
  if (header->InstallFunction == DIF_REMOVE) {
    return size == sizeof(SP_REMOVEDEVICE_PARAMS) ? nullptr : "SP_REMOVEDEVICE_PARAMS of the wrong size";
  }
  if (header->InstallFunction != DIF_PROPERTYCHANGE)
    return "class install parameters of an unexpected function";
  if (size != sizeof(SP_PROPCHANGE_PARAMS)) return "SP_PROPCHANGE_PARAMS of the wrong size";
  const auto* change = reinterpret_cast<const SP_PROPCHANGE_PARAMS*>(header);
  if (change->StateChange < DICS_ENABLE || change->StateChange > DICS_STOP) return "unknown state change";
  const bool oneProfile = change->StateChange == DICS_START || change->StateChange == DICS_STOP;
  if (oneProfile && change->Scope != DICS_FLAG_CONFIGSPECIFIC)
    return "start and stop are for one hardware profile";
  if (change->Scope != DICS_FLAG_GLOBAL && change->Scope != DICS_FLAG_CONFIGSPECIFIC) return "unknown scope";
  return nullptr;
}

void NoteClassParams(MachineLock& machine, const SP_CLASSINSTALL_HEADER* header) {
  if (header->InstallFunction != DIF_PROPERTYCHANGE) return;
  const auto* change = reinterpret_cast<const SP_PROPCHANGE_PARAMS*>(header);
  static constexpr const wchar_t* kStates[] = {L"DICS_ENABLE", L"DICS_DISABLE", L"DICS_PROPCHANGE",
                                               L"DICS_START", L"DICS_STOP"};
  machine->Calls().Note(kStates[change->StateChange - 1]);
  machine->Calls().Note(change->Scope == DICS_FLAG_GLOBAL ? L"DICS_FLAG_GLOBAL"
                                                          : L"DICS_FLAG_CONFIGSPECIFIC");
  machine->Calls().Note(L"profile " + std::to_wstring(change->HwProfile));
}

BOOL WINAPI SetClassParams(HDEVINFO handle, SP_DEVINFO_DATA* data, SP_CLASSINSTALL_HEADER* header,
                           DWORD size) {
  MachineLock machine;
  InstallParameters* parameters = FindParameters(machine, handle, data);
  if (parameters == nullptr) return FALSE;
  parameters->classInstall.clear();
  parameters->install.Flags &= ~static_cast<DWORD>(DI_CLASSINSTALLPARAMS);
  if (header == nullptr && size == 0) return TRUE;
  const char* wrong = header == nullptr ? "a size without parameters" : WrongClassParams(header, size);
  if (wrong != nullptr) return machine->Calls().Misused(wrong, ERROR_INVALID_PARAMETER);
  NoteClassParams(machine, header);
  const auto* bytes = reinterpret_cast<const std::byte*>(header);
  parameters->classInstall.assign(bytes, bytes + size);
  parameters->install.Flags |= DI_CLASSINSTALLPARAMS;
  return TRUE;
}

BOOL ChangeProperty(MachineLock& machine, SetElement& element) {
  SP_PROPCHANGE_PARAMS change{};
  if (element.parameters.classInstall.size() != sizeof change) return FailWith(ERROR_NO_CLASSINSTALL_PARAMS);
  std::memcpy(&change, element.parameters.classInstall.data(), sizeof change);
  DeviceTree& tree = machine->Devices();
  const DWORD state = change.StateChange;
  if (state == DICS_DISABLE || state == DICS_STOP) tree.Disable(*element.device);
  if (state == DICS_ENABLE || state == DICS_START) tree.Enable(*element.device);
  if (state == DICS_PROPCHANGE) {
    tree.Stop(*element.device);
    tree.Start(*element.device);
  }
  return TRUE;
}

BOOL WINAPI CallClassInstaller(DI_FUNCTION function, HDEVINFO handle, SP_DEVINFO_DATA* data) {
  MachineLock machine;
  SetElement* element = machine->Sets().FindElement(handle, data);
  if (element == nullptr) return FALSE;
  if (function == DIF_PROPERTYCHANGE) {
    machine->Calls().Note(L"DIF_PROPERTYCHANGE");
    return ChangeProperty(machine, *element);
  }
  if (function == DIF_REMOVE) {
    machine->Calls().Note(L"DIF_REMOVE");
    machine->Devices().Remove(*element->device);
    return TRUE;
  }
  return machine->Calls().Misused("a class installer function that is not simulated", ERROR_DI_DO_DEFAULT);
}

const FunctionRow kRows[] = {
    {"setupapi.dll", KD_SIMULATED(SetupDiOpenDevRegKey, OpenDevRegKey),
     FailsWithMinusOne(ERROR_ACCESS_DENIED), Returns(HandleKind::RegistryKey)},
    {"setupapi.dll", KD_SIMULATED(SetupDiGetDeviceRegistryPropertyW, GetProperty),
     FailsWithZero(ERROR_INVALID_DATA)},
    {"setupapi.dll", KD_SIMULATED(SetupDiSetDeviceRegistryPropertyW, SetProperty),
     FailsWithZero(ERROR_ACCESS_DENIED)},
    {"setupapi.dll", KD_SIMULATED(SetupDiGetDeviceInstallParamsW, GetInstallParams),
     FailsWithZero(ERROR_INVALID_PARAMETER)},
    {"setupapi.dll", KD_SIMULATED(SetupDiSetDeviceInstallParamsW, SetInstallParams),
     FailsWithZero(ERROR_INVALID_PARAMETER)},
    {"setupapi.dll", KD_SIMULATED(SetupDiSetClassInstallParamsW, SetClassParams),
     FailsWithZero(ERROR_INVALID_PARAMETER)},
    {"setupapi.dll", KD_SIMULATED(SetupDiCallClassInstaller, CallClassInstaller),
     FailsWithZero(ERROR_ACCESS_DENIED)},
};

}  // namespace

const std::span<const FunctionRow> kDevicePropertyRows = kRows;

}  // namespace workbench
