// The page "Port Settings" that Device Manager shows for a port. Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include "ui/port_settings_page.h"

// Shows the live state of the port as its device server tells it, and lets the user set the two handshake
// emulations, open the device server's web page, the advanced settings and help.
//
// The settings shown are adopted into the page's copy and written back with every refresh; only the boxes
// wait for the user's OK. The HTTP exchange of a refresh blocks the page's thread.
class CKdUIPropertyPage : public CPortSettingsPage {
 public:
  CKdUIPropertyPage(HDEVINFO set, const SP_DEVINFO_DATA& element);

 protected:
  void OnInitDialog() override;
  bool OnToolTipText(NMTTDISPINFOW& request) override;

 private:
  void SetTexts() const;
  void SetUpTips() const;
};
