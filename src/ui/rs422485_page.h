// The page "RS422/485 Settings". Windows only.
#pragma once

#include <windows.h>

#include <setupapi.h>

#include <cstdint>

#include "ui/framework/data_exchange.h"
#include "ui/port_page_base.h"

// Lets the user choose the duplex mode of a port from those that it supports. Nothing is written before
// apply, which asks before it changes a port that another application has open.
// Kept on purpose: renaming text
//
// The advanced sheet makes this page and does not show it: the port page takes over the duplex mode that it
// has read. To show it, add it to the sheet; nothing else is needed. Kept on purpose: hidden page
//
// Ownership and thread are those of CPortPageBase.
class CRS422485Page : public CPortPageBase, private CWinDataExchange {
 public:
  CRS422485Page(HDEVINFO deviceInfoSet, const SP_DEVINFO_DATA& element);

  // The duplex mode of the page's copy: as it was last read, restored or applied.
  [[nodiscard]] std::uint32_t DuplexMode() const noexcept { return portSet_.DuplexMode; }

 protected:
  void OnInitDialog() override;
  const wchar_t* HelpTopic() const override { return L"%s::/422485Page.htm>mainwin"; }
  bool OnClicked(int control) override;
  LRESULT OnApply() override;

 private:
  void ShowDuplexModes() const;
  void RestoreDefaults();
};
