// Handles of SetupAPI that close themselves. Windows only.
//
// SetupAPI reports failure by INVALID_HANDLE_VALUE where the registry and the kernel use null, so its keys
// have a holder type of their own. An empty holder closes nothing.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include "base/unique_handle.h"

// A device's hardware or software key, from SetupDiOpenDevRegKey.
struct DeviceKeyTraits {
  using Handle = HKEY;
  static Handle Invalid() noexcept { return static_cast<HKEY>(INVALID_HANDLE_VALUE); }
  static void Close(Handle handle) noexcept { RegCloseKey(handle); }
};
using CDeviceKey = CUniqueHandle<DeviceKeyTraits>;

// A device information set, from SetupDiGetClassDevsW or SetupDiCreateDeviceInfoList. Its information
// elements are valid for as long as the set is.
struct DeviceInfoListTraits {
  using Handle = HDEVINFO;
  static Handle Invalid() noexcept { return INVALID_HANDLE_VALUE; }
  static void Close(Handle handle) noexcept { SetupDiDestroyDeviceInfoList(handle); }
};
using CDeviceInfoList = CUniqueHandle<DeviceInfoListTraits>;
