// What the pages of a port have in common. Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include <span>

#include "base/wide_string.h"
#include "config/nbus_parameters.h"
#include "config/parent_device.h"
#include "config/user_mode_config.h"
#include "config/vcp_parameters.h"
#include "install/devices/device_reg_info.h"
#include "ui/framework/page_background.h"
#include "ui/framework/property_page.h"
#include "ui/framework/tooltip_dialog.h"
#include "ui/help.h"

// A control, and the id of its text in the string table.
struct ControlText {
  int control;
  UINT stringId;
};

// What a page says, row by row.
struct PageTables {
  // In the order in which they are set; an id without a control is skipped. Kept on purpose: missing controls
  std::span<const ControlText> texts{};
  std::span<const ToolTipText> tips{};
  UINT otherTip = 0;                  // the tip of all other controls; 0: none
  std::span<const HelpId> helpIds{};  // ends in kEndOfHelpIds
};

// Base of the pages that show and change the settings of one port: a page with tips and the product's
// background, on the configuration channel of the port's drivers, with a copy of both parameter sets.
//
// Construction opens the channel, reads set 0, finds the device server and reads set 1, and stops at the
// first step that fails. The page is usable when none did; one that is not keeps the members' initial values.
//
// Who owns a page, and its thread, is said at CPropertyPageImpl. What the page shows is its own copy of the
// sets: other programs' changes are seen at the next read.
class CPortPageBase : public CPropertyPageImpl, public CToolTipDialog, public CKdUserModeConfig {
 public:
  // Whether construction could read the port's settings.
  [[nodiscard]] bool IsUsable() const noexcept { return usable_; }

 protected:
  // The device information set is borrowed and outlives the page; the element is copied. `title` as in
  // CPropertyPageImpl; `tables` outlives the page.
  CPortPageBase(WORD dialogId, const wchar_t* title, const PageTables& tables, HDEVINFO deviceInfoSet,
                const SP_DEVINFO_DATA& element);

  // Exchanges with the drivers: set 0 is the port's, set 1 the network bus's. False when the driver refuses;
  // a page that is not usable may have no channel, and then all of them fail.
  [[nodiscard]] bool ReadPortSet() { return GetParameterSet(portSet_, CKdUVcpUserModeInterface::kSelector); }
  [[nodiscard]] bool ReadBusSet() { return GetParameterSet(busSet_, CKdNBusUserModeInterface::kSelector); }
  [[nodiscard]] bool WritePortSet() { return SetParameterSet(portSet_, CKdUVcpUserModeInterface::kSelector); }
  [[nodiscard]] bool WriteBusSet() { return SetParameterSet(busSet_, CKdNBusUserModeInterface::kSelector); }

  // The registry value "PortName"; the empty text when it cannot be read.
  [[nodiscard]] CWideString PortName() const;
  // The device information set that the page was made with, borrowed.
  [[nodiscard]] HDEVINFO DeviceSet() const noexcept { return registry_.Set(); }
  // The page's own copy, for calls that want to write through it.
  [[nodiscard]] SP_DEVINFO_DATA& DeviceElement() noexcept { return element_; }

  // Puts the texts of the tables into their controls.
  void SetTexts() const;
  // Shows a message box over the page, with a text of the string table, and returns the user's button (IDYES
  // ...). Timers and other messages reach the page while it is up.
  [[nodiscard]] int ShowMessage(UINT stringId, const wchar_t* caption, UINT style) const;
  [[nodiscard]] bool IsChecked(int control) const noexcept;

  // What the help link shows, with "%s" for the help file (ShowHelpTopic).
  [[nodiscard]] virtual const wchar_t* HelpTopic() const = 0;

  // The background and the help link, first thing on every page.
  void OnInitDialog() override;
  void BeforeDispatch(const MSG& message) override { ProcessToolTip(message); }
  bool OnHelp(const HELPINFO& request) override;
  bool OnClicked(int control) override;  // the help link
  bool OnToolTipText(NMTTDISPINFOW& request) override;
  HBRUSH OnControlColour(HDC context) override { return background_.Prepare(context); }

  CKdUVcpUserModeInterface portSet_;
  CKdNBusUserModeInterface busSet_;

 private:
  [[nodiscard]] bool Open();

  const PageTables& tables_;
  CPageBackground background_;
  SP_DEVINFO_DATA element_;
  CKDDeviceRegInfo registry_;
  CKdSetupDi_ParentDevice parent_;
  bool usable_;
};
