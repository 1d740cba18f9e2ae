// The page "Port Settings" that Device Manager shows for a port. Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include "status/port_web.h"
#include "ui/port_page_base.h"

// Shows the live state of the port as its device server tells it, and lets the user set the two handshake
// emulations, open the device server's web page, the advanced settings and help.
//
// The settings shown are adopted into the page's copy and written back with every refresh; only the boxes
// wait for the user's OK. The HTTP exchange of a refresh blocks the page's thread.
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
  // Reads both parameter sets, fetches the port's status document, shows what it says and writes it into both
  // sets. A device server that does not answer is reported when `showErrors` is set, and shown as "Offline".
  // Blocks for the length of the HTTP exchange. Does nothing while a refresh is under way: its message box
  // lets the timer's ticks through.
  void RefreshPortStatus(bool showErrors);
  // The status document, or the empty one of a device server that does not answer.
  [[nodiscard]] CWideString FetchDocument(bool showErrors) const;
  // The same without messages, when nobody asked for it. Does nothing during an apply: its question lets the
  // ticks through, and a refresh would put the driver's boxes in place of the user's.
  void RefreshSilently();
  void KeepFocusUsable(HWND focusBefore) const;
  void WriteCurrentPortsSettings(const CWideString& portName) const;

  void OnAdvanced();
  void OpenPortWebPage();

  PortWebAddress web_;
  UINT_PTR timer_ = 0;
  bool refreshing_ = false;
  bool applying_ = false;
  bool settingsChanged_ = false;  // forces an apply; no setting of the page needs that today
};
