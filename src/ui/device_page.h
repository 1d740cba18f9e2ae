// The device page of the advanced sheet. Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include "ui/device_rules.h"
#include "ui/port_page_base.h"

// Shows the port's hardware, and lets the user give it another COM number and set two switches. Nothing is
// written before apply, which asks before it changes a port that another application has open. A rename asks
// again. Kept on purpose: renaming text
//
// Ownership and thread are those of CPortPageBase. The rules are in device_rules.h.
class CDeviceAdvSettingPage : public CPortPageBase {
 public:
  CDeviceAdvSettingPage(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element);

 protected:
  void OnInitDialog() override;
  const wchar_t* HelpTopic() const override;
  LRESULT OnApply() override;

 private:
  void ShowInformation() const;
  void FillComNames() const;
  [[nodiscard]] DeviceSwitches EnteredSwitches() const noexcept;
  [[nodiscard]] CWideString SelectedComName() const;
  // The two steps of an apply; false when the user declined or, of the rename, when it failed.
  [[nodiscard]] bool SaveSwitches(const CWideString& portName);
  [[nodiscard]] bool Rename(const CWideString& newName);
};
