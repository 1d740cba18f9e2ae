// One device of a device information set, with the registry values and properties that belong to it.
// Windows only.
//
// A device's own values live in its hardware key ("Device Parameters"). Strings there are read into a
// buffer of 300 bytes: 149 characters and a terminator fit, a longer value counts as not read. All operations
// are best effort: they report success or failure, without an error code. Writing needs administrator rights.
#pragma once

#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>

#include <cstdint>

#include "base/device_handles.h"
#include "base/wide_string.h"

// Opens the device's hardware key with `access`; an empty holder when that fails. A device without such a key
// gets none.
[[nodiscard]] CDeviceKey OpenDeviceKey(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element, REGSAM access);

// Reads a string value. The type that the value was stored with has no influence, and its terminator may be
// missing. On failure `value` stays as it was.
[[nodiscard]] bool ReadDevRegString(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element,
                                    const wchar_t* name, CWideString& value);

// Reads a value of at most four bytes; missing high bytes are 0. On failure `value` stays as it was.
[[nodiscard]] bool ReadDevRegDword(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element,
                                   const wchar_t* name, std::uint32_t& value);

// Writes a REG_DWORD.
bool WriteDevRegDword(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element, const wchar_t* name,
                      std::uint32_t value);

// A device: a copy of its information element and the set that the element belongs to.
//
// The set is borrowed and never destroyed here; it must outlive the object. One object serves one thread.
class CKDDeviceRegInfo {
 public:
  CKDDeviceRegInfo(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element) noexcept
      : element_(element), set_(deviceInfoSet) {}
  virtual ~CKDDeviceRegInfo() = default;
  CKDDeviceRegInfo(const CKDDeviceRegInfo&) = delete;
  CKDDeviceRegInfo& operator=(const CKDDeviceRegInfo&) = delete;

  // Reads a string property (SPDRP_*), whatever its length. On failure `value` stays as it was.
  [[nodiscard]] bool GetDeviceRegistryString(DWORD property, CWideString& value) const;
  // "{setup class}\nnnn", the device's software key below the Class key.
  [[nodiscard]] bool GetDriverKeyName(CWideString& value) const;
  // The name that Device Manager shows: "Port name (COM7)".
  [[nodiscard]] bool GetFriendlyName(CWideString& value) const;
  [[nodiscard]] bool SetFriendlyName(const CWideString& value) const;

  // ReadDevRegString on this device.
  [[nodiscard]] bool GetRegString(const wchar_t* name, CWideString& value) const;
  // Writes a REG_SZ without its terminator. Kept on purpose: no terminator
  [[nodiscard]] bool SetRegString(const wchar_t* name, const CWideString& value) const;

  // What the constructor was given: the set itself, and the copy of the element.
  [[nodiscard]] HDEVINFO Set() const noexcept { return set_; }
  [[nodiscard]] const SP_DEVINFO_DATA& Element() const noexcept { return element_; }
  // The same element for the calls that want a pointer to write through. Never null.
  [[nodiscard]] SP_DEVINFO_DATA* ElementPointer() const noexcept { return &element_; }

 private:
  mutable SP_DEVINFO_DATA element_;
  HDEVINFO set_;
};
