// Handles of SetupAPI that close themselves. Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include "base/unique_handle.h"

// SetupDiOpenDevRegKey: INVALID_HANDLE_VALUE when it fails, unlike the registry's own calls.
struct DeviceKeyTraits {
  using Handle = HKEY;
  static Handle Invalid() noexcept { return static_cast<HKEY>(INVALID_HANDLE_VALUE); }
  static void Close(Handle handle) noexcept { RegCloseKey(handle); }
};
using CDeviceKey = CUniqueHandle<DeviceKeyTraits>;

// SetupDiGetClassDevsW, SetupDiCreateDeviceInfoList: INVALID_HANDLE_VALUE when they fail.
struct DeviceInfoListTraits {
  using Handle = HDEVINFO;
  static Handle Invalid() noexcept { return INVALID_HANDLE_VALUE; }
  static void Close(Handle handle) noexcept { SetupDiDestroyDeviceInfoList(handle); }
};
using CDeviceInfoList = CUniqueHandle<DeviceInfoListTraits>;
