// The user-mode end of the channel to a port's drivers. Windows only.
//
// The drivers of a network port publish one configuration interface for each device, all under one class;
// the device's driver key name tells them apart. Through it parameter sets are read and written.
#pragma once

#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>

#include <cstdint>

#include "base/wide_string.h"
#include "config/device_interface.h"
#include "config/information_set.h"
#include "install/devices/device_reg_info.h"

// The class of the drivers' configuration interface: {6E2B9D14-7A3C-4F85-9B21-C4D07E5A1F93}.
inline constexpr GUID kConfigurationInterfaceClass = {
    0x6E2B9D14, 0x7A3C, 0x4F85, {0x9B, 0x21, 0xC4, 0xD0, 0x7E, 0x5A, 0x1F, 0x93}};

// What tells devices apart, in lower case: the reference string that a device's interface has, and that of an
// interface's path. Empty for a device without a driver key name.
[[nodiscard]] CWideString ConfigurationReference(const CKDDeviceRegInfo& device);
[[nodiscard]] CWideString ReferenceOfPath(const CWideString& path);

// The channel of one device. No driver handle stays open between operations. No operation shows a message or
// reports an error code: what the user sees is the caller's decision. One object serves one thread.
//
// Order of use: FindDeviceInterface, GetParameterSet for each set that will change, SetParameterSet.
class CKdUserModeConfig : public CKdSetupDi_DeviceInterface {
 public:
  // The device information set is borrowed and must outlive the object; the element is copied.
  CKdUserModeConfig(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element) noexcept
      : CKdSetupDi_DeviceInterface(kConfigurationInterfaceClass), device_(deviceInfoSet, element) {}
  ~CKdUserModeConfig() override = default;

  // Finds the device's configuration interface; until it has, every exchange fails. False when the device's
  // driver key name cannot be read or no interface carries it, as while its driver is not running. To be
  // called once for each object. Kept on purpose: second search
  [[nodiscard]] bool FindDeviceInterface();

  // Read the driver's current, respectively default, set into the members that `set` is bound to. The
  // selector says which set the driver is asked for (kSelector of the parameter classes). After a failure the
  // members that were already read have their new values.
  [[nodiscard]] bool GetParameterSet(CSsInformationSet& set, std::uint32_t selector);
  [[nodiscard]] bool GetDefaultParameterSet(CSsInformationSet& set, std::uint32_t selector);
  // Writes the set into the driver. False when the driver refuses, and then it keeps what it has.
  [[nodiscard]] bool SetParameterSet(CSsInformationSet& set, std::uint32_t selector);

  // The interface's path; empty until it has been found.
  [[nodiscard]] const CWideString& InterfacePath() const noexcept { return path_; }
  [[nodiscard]] const CKDDeviceRegInfo& Device() const noexcept { return device_; }

 private:
  CWideString path_;
  CKDDeviceRegInfo device_;
};
