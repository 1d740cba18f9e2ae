// The page "Port Settings" that Device Manager shows for a port. Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include "status/port_web.h"
#include "ui/port_page_base.h"

// Shows the live state of the port as its device server reports it, and lets the user set the two handshake
// emulations, open the device server's web page, the advanced settings and help.
//
// A refresh reads both sets, stores what the device server reports in them and writes both back; only the
// boxes wait for the user's OK. Its HTTP exchange blocks the page's thread. Refreshes come when the page
// opens, after an apply, for "Restore Default" and, once the device server's web page was opened, every five
// seconds. Kept on purpose: ticks and boxes
//
// Ownership and thread are those of CPortPageBase. The rules are in port_rules.h and status/port_status.h.
class CKdUIPropertyPage : public CPortPageBase {
 public:
  CKdUIPropertyPage(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element);

 protected:
  void OnInitDialog() override;
  bool OnTimer(UINT_PTR timer) override;
  bool OnClose() override;
  const wchar_t* HelpTopic() const override;
  bool OnClicked(int control) override;
  LRESULT OnApply() override;

 private:
  void SetUpTips() const;
  // One refresh. A device server that does not answer is reported in a message box when `showErrors` is set,
  // and shown as "Offline". Does nothing while a refresh is under way: its message box lets the timer's ticks
  // through.
  void RefreshPortStatus(bool showErrors);
  // The status document; the empty text for a device server that does not answer.
  [[nodiscard]] CWideString FetchDocument(bool showErrors) const;
  // A refresh by the timer, without messages. Does nothing during an apply: its question lets the ticks
  // through, and a refresh would put the driver's boxes in place of the user's.
  void RefreshSilently();
  // Moves the focus on when a refresh has disabled the control that had it.
  void KeepFocusUsable(HWND focusBefore) const;
  // Writes the port's settings for its COM name under the Ports key. Kept on purpose: two orders
  void WriteCurrentPortsSettings(const CWideString& portName) const;

  // Shows the advanced sheet and takes over what it has saved.
  void OnAdvanced();
  void OpenPortWebPage();

  PortWebAddress web_;
  UINT_PTR timer_ = 0;
  bool refreshing_ = false;
  bool applying_ = false;
  bool settingsChanged_ = false;  // forces an apply; no setting of the page needs that today
};
