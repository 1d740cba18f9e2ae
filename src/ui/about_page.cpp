#include "ui/about_page.h"

#include "base/product.h"
#include "base/resource_ids.h"

#define KD_WIDE_TEXT(text) L"" text

CAboutPage::CAboutPage() noexcept : CPropertyPageImpl(IDD_ABOUT_PAGE, L"About") {}

void CAboutPage::OnInitDialog() {
  background_.Create();
  website_.Attach(Control(IDC_ABOUT_WEBSITE));
  website_.SetTarget(KD_WIDE_TEXT(KD_WEB_ADDRESS));
}
