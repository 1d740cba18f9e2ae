// SetupAPI: device information sets, their elements and device interfaces.
#include <windows.h>

#include <setupapi.h>

#include <algorithm>

#include "workbench/machine/tables/tables.h"
#include "workbench/text/device_text.h"

namespace workbench {
namespace {

constexpr DWORD kKnownClassFlags =
    DIGCF_DEFAULT | DIGCF_PRESENT | DIGCF_ALLCLASSES | DIGCF_PROFILE | DIGCF_DEVICEINTERFACE;

HDEVINFO WINAPI CreateList(const GUID* classGuid, HWND) {
  MachineLock machine;
  auto set = std::make_unique<DeviceSet>();
  if (classGuid != nullptr) set->classGuid = *classGuid;
  return machine->Sets().Create(std::move(set));
}

bool HasInterface(const Device& device, const GUID& classGuid, bool onlyActive) {
  return std::ranges::any_of(device.interfaces, [&](const auto& one) {
    return IsEqualGUID(one->classGuid, classGuid) && (one->active || !onlyActive);
  });
}

// With DIGCF_ALLCLASSES the class counts for nothing, as on Windows.
bool IsWanted(const Device& device, const GUID* classGuid, DWORD flags) {
  const bool present = (flags & DIGCF_PRESENT) != 0;
  if (present && !device.present) return false;
  if ((flags & DIGCF_ALLCLASSES) != 0 || classGuid == nullptr) return true;
  if ((flags & DIGCF_DEVICEINTERFACE) != 0) return HasInterface(device, *classGuid, present);
  return IsEqualGUID(device.classGuid, *classGuid);
}

HDEVINFO WINAPI GetClassDevs(const GUID* classGuid, const wchar_t* enumerator, HWND, DWORD flags) {
  MachineLock machine;
  if ((flags & ~kKnownClassFlags) != 0)
    return machine->Calls().Misused("unknown flags", ERROR_INVALID_FLAGS, INVALID_HANDLE_VALUE);
  if (classGuid == nullptr && (flags & DIGCF_ALLCLASSES) == 0) {
    return machine->Calls().Misused("neither a class nor DIGCF_ALLCLASSES", ERROR_INVALID_PARAMETER,
                                    INVALID_HANDLE_VALUE);
  }
  auto set = std::make_unique<DeviceSet>();
  set->onlyPresent = (flags & DIGCF_PRESENT) != 0;
  if ((flags & DIGCF_DEVICEINTERFACE) != 0 && classGuid != nullptr) set->interfaceClass = *classGuid;
  for (Device* device : machine->Devices().All()) {
    const std::wstring_view id = device->instanceId;
    if (enumerator != nullptr && !EqualNoCase(id.substr(0, id.find(L'\\')), enumerator)) continue;
    if (IsWanted(*device, classGuid, flags)) machine->Sets().Put(*set, *device);
  }
  return machine->Sets().Create(std::move(set));
}

BOOL WINAPI DestroyList(HDEVINFO handle) {
  MachineLock machine;
  return machine->Sets().Destroy(handle) ? TRUE : FALSE;
}

BOOL WINAPI OpenInfo(HDEVINFO handle, const wchar_t* id, HWND, DWORD flags, SP_DEVINFO_DATA* data) {
  MachineLock machine;
  DeviceSet* set = machine->Sets().Find(handle);
  if (set == nullptr) return FALSE;
  if ((flags & ~static_cast<DWORD>(DIOD_INHERIT_CLASSDRVS | DIOD_CANCEL_REMOVE)) != 0)
    return machine->Calls().Misused("unknown flags", ERROR_INVALID_FLAGS);
  if (id == nullptr) return FailWith(ERROR_INVALID_PARAMETER);
  if (data != nullptr && !machine->Calls().HasSize(*data, "SP_DEVINFO_DATA")) return FALSE;
  Device* device = machine->Devices().Find(std::wstring_view(id));
  if (device == nullptr) return FailWith(ERROR_NO_SUCH_DEVINST);
  if (set->classGuid && !IsEqualGUID(*set->classGuid, device->classGuid))
    return FailWith(ERROR_CLASS_MISMATCH);
  const SetElement& element = machine->Sets().Put(*set, *device);
  if (data != nullptr) DeviceSets::Fill(element, *data);
  return TRUE;
}

BOOL WINAPI EnumInfo(HDEVINFO handle, DWORD index, SP_DEVINFO_DATA* data) {
  MachineLock machine;
  DeviceSet* set = machine->Sets().Find(handle);
  if (set == nullptr) return FALSE;
  if (data == nullptr) return FailWith(ERROR_INVALID_PARAMETER);
  if (!machine->Calls().HasSize(*data, "SP_DEVINFO_DATA")) return FALSE;
  if (index >= set->elements.size()) return FailWith(ERROR_NO_MORE_ITEMS);
  DeviceSets::Fill(*set->elements[index], *data);
  return TRUE;
}

BOOL WINAPI GetInstanceId(HDEVINFO handle, SP_DEVINFO_DATA* data, wchar_t* buffer, DWORD length,
                          DWORD* required) {
  MachineLock machine;
  const SetElement* element = machine->Sets().FindElement(handle, data);
  if (element == nullptr) return FALSE;
  const std::wstring& id = element->device->instanceId;
  if (required != nullptr) *required = static_cast<DWORD>(id.size() + 1);
  if (buffer == nullptr || length <= id.size()) return FailWith(ERROR_INSUFFICIENT_BUFFER);
  id.copy(buffer, id.size());
  buffer[id.size()] = L'\0';
  return TRUE;
}

BOOL WINAPI EnumInterfaces(HDEVINFO handle, SP_DEVINFO_DATA* only, const GUID* classGuid, DWORD index,
                           SP_DEVICE_INTERFACE_DATA* data) {
  MachineLock machine;
  DeviceSet* set = machine->Sets().Find(handle);
  if (set == nullptr) return FALSE;
  if (classGuid == nullptr || data == nullptr) return FailWith(ERROR_INVALID_PARAMETER);
  if (!machine->Calls().HasSize(*data, "SP_DEVICE_INTERFACE_DATA")) return FALSE;
  const SetElement* wanted = only == nullptr ? nullptr : machine->Sets().FindElement(handle, only);
  if (only != nullptr && wanted == nullptr) return FALSE;
  // A set that was not made for this class of interfaces holds none of them.
  if (!set->interfaceClass || !IsEqualGUID(*set->interfaceClass, *classGuid))
    return FailWith(ERROR_NO_MORE_ITEMS);
  for (const auto& element : set->elements) {
    if (wanted != nullptr && element.get() != wanted) continue;
    for (const auto& instance : element->device->interfaces) {
      if (!IsEqualGUID(instance->classGuid, *classGuid) || (set->onlyPresent && !instance->active)) continue;
      if (index-- != 0) continue;
      data->InterfaceClassGuid = instance->classGuid;
      data->Flags = instance->active ? SPINT_ACTIVE : 0;
      data->Reserved = reinterpret_cast<ULONG_PTR>(instance.get());
      return TRUE;
    }
  }
  return FailWith(ERROR_NO_MORE_ITEMS);
}

// The interface that `data` names, with its element; null with last error set.
const DeviceInterface* FindInterface(MachineLock& machine, DeviceSet& set,
                                     const SP_DEVICE_INTERFACE_DATA* data, SetElement** owner) {
  if (data == nullptr || !machine->Calls().HasSize(*data, "SP_DEVICE_INTERFACE_DATA")) return nullptr;
  for (const auto& element : set.elements) {
    for (const auto& instance : element->device->interfaces) {
      if (reinterpret_cast<ULONG_PTR>(instance.get()) != data->Reserved) continue;
      *owner = element.get();
      return instance.get();
    }
  }
  return machine->Calls().Misused<const DeviceInterface*>("an interface that is not of this set",
                                                          ERROR_INVALID_PARAMETER);
}

BOOL WINAPI GetInterfaceDetail(HDEVINFO handle, SP_DEVICE_INTERFACE_DATA* data,
                               SP_DEVICE_INTERFACE_DETAIL_DATA_W* detail, DWORD size, DWORD* required,
                               SP_DEVINFO_DATA* device) {
  MachineLock machine;
  DeviceSet* set = machine->Sets().Find(handle);
  SetElement* owner = nullptr;
  const DeviceInterface* instance = set == nullptr ? nullptr : FindInterface(machine, *set, data, &owner);
  if (instance == nullptr) return FALSE;
  if ((detail == nullptr) != (size == 0))
    return machine->Calls().Misused("a size without a buffer or the reverse", ERROR_INVALID_USER_BUFFER);
  if (detail != nullptr && !machine->Calls().HasSize(*detail, "SP_DEVICE_INTERFACE_DETAIL_DATA_W"))
    return FALSE;
  const auto needed = static_cast<DWORD>(offsetof(SP_DEVICE_INTERFACE_DETAIL_DATA_W, DevicePath) +
                                         (instance->path.size() + 1) * sizeof(wchar_t));
  if (required != nullptr) *required = needed;
  if (size < needed) return FailWith(ERROR_INSUFFICIENT_BUFFER);
  instance->path.copy(detail->DevicePath, instance->path.size());
  detail->DevicePath[instance->path.size()] = L'\0';
  if (device == nullptr) return TRUE;
  if (!machine->Calls().HasSize(*device, "SP_DEVINFO_DATA")) return FALSE;
  DeviceSets::Fill(*owner, *device);
  return TRUE;
}

const FunctionRow kRows[] = {
    {"setupapi.dll", KD_SIMULATED(SetupDiCreateDeviceInfoList, CreateList),
     FailsWithMinusOne(ERROR_NOT_ENOUGH_MEMORY), Returns(HandleKind::DeviceSet)},
    {"setupapi.dll", KD_SIMULATED(SetupDiGetClassDevsW, GetClassDevs), FailsWithMinusOne(ERROR_INVALID_CLASS),
     Returns(HandleKind::DeviceSet)},
    {"setupapi.dll", KD_SIMULATED(SetupDiDestroyDeviceInfoList, DestroyList),
     FailsWithZero(ERROR_INVALID_HANDLE), Closes(HandleKind::DeviceSet)},
    {"setupapi.dll", KD_SIMULATED(SetupDiOpenDeviceInfoW, OpenInfo), FailsWithZero(ERROR_NO_SUCH_DEVINST)},
    {"setupapi.dll", KD_SIMULATED(SetupDiEnumDeviceInfo, EnumInfo), FailsWithZero(ERROR_NO_MORE_ITEMS)},
    {"setupapi.dll", KD_SIMULATED(SetupDiGetDeviceInstanceIdW, GetInstanceId),
     FailsWithZero(ERROR_INVALID_PARAMETER)},
    {"setupapi.dll", KD_SIMULATED(SetupDiEnumDeviceInterfaces, EnumInterfaces),
     FailsWithZero(ERROR_NO_MORE_ITEMS)},
    {"setupapi.dll", KD_SIMULATED(SetupDiGetDeviceInterfaceDetailW, GetInterfaceDetail),
     FailsWithZero(ERROR_INVALID_PARAMETER)},
};

}  // namespace

const std::span<const FunctionRow> kDeviceSetRows = kRows;

}  // namespace workbench
