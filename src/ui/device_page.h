// The device page of the advanced sheet. Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include "ui/device_rules.h"
#include "ui/port_page_base.h"

// Shows what the port is made of, and lets the user give it another COM number and set two switches. Nothing
// is written before apply, which asks before it touches a port that another application has open.
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
  [[nodiscard]] bool SaveSwitches(const CWideString& portName);
  [[nodiscard]] bool Rename(const CWideString& newName);
};
