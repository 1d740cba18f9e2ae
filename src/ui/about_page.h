// The page "About" of the advanced sheet. Windows only.
#pragma once

#include <windows.h>

#include "ui/framework/hyperlink.h"
#include "ui/framework/page_background.h"
#include "ui/framework/property_page.h"

// Shows the product and its maker, with a link to the maker's web site. It reads and writes nothing. The
// object outlives the sheet; all of it belongs to the sheet's thread.
class CAboutPage : public CPropertyPageImpl {
 public:
  CAboutPage() noexcept;

 protected:
  void OnInitDialog() override;
  HBRUSH OnControlColour(HDC context) override { return background_.Prepare(context); }

 private:
  CPageBackground background_;
  CHyperLink website_;
};
