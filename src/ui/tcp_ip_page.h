// The page "TCP/IP Settings" of the advanced sheet. Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include "ui/framework/data_exchange.h"
#include "ui/port_page_base.h"
#include "ui/tcp_ip_rules.h"

// Shows where the port's device server is, and lets the user set the TCP port, the time-out of an attempt to
// connect and the verification of the connection. Nothing is written before apply, which keeps the sheet open
// when a number is out of range or the driver refuses. Kept on purpose: time-out text
//
// Ownership and thread are those of CPortPageBase. The rules are in tcp_ip_rules.h.
class CTcpIpSettingsPage : public CPortPageBase, private CWinDataExchange {
 public:
  CTcpIpSettingsPage(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element);

 protected:
  void OnInitDialog() override;
  const wchar_t* HelpTopic() const override;
  bool OnClicked(int control) override;
  HBRUSH OnControlColour(HDC context) override;
  LRESULT OnApply() override;

 private:
  void ShowAddress() const;
  void ShowNumbers() const;
  void ShowVerification() const;
  void RestoreDefaults();
  // Read the fields; false, with the focus on the first field that is not a number in range.
  [[nodiscard]] bool ReadFields();
  [[nodiscard]] bool ReadField(int control, std::uint32_t maximum, std::uint32_t& value) const;
  void SetText(int control, const CWideString& text) const;

  TcpIpFields fields_;
};
