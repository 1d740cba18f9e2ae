// A modal property sheet. Windows only.
#pragma once

#include <windows.h>

#include <prsht.h>

#include <vector>

#include "base/wide_string.h"
#include "ui/framework/property_page.h"

// Shows pages under one caption, prefixed by Windows with "Properties for" in the user's language, without an
// Apply button. The pages are the derived class's and live as long as the sheet; everything belongs to the
// thread that calls DoModal.
class CPropertySheetImpl {
 public:
  // What PropertySheetW returns when the user pressed OK and something was saved.
  static constexpr INT_PTR kSaved = 1;

  virtual ~CPropertySheetImpl() = default;
  CPropertySheetImpl(const CPropertySheetImpl&) = delete;
  CPropertySheetImpl& operator=(const CPropertySheetImpl&) = delete;

  // Runs the sheet until the user ends it. The result is that of PropertySheetW: kSaved, 0 when nothing was
  // saved, -1 when the sheet or one of its pages could not be made. `owner` may be null.
  [[nodiscard]] INT_PTR DoModal(HWND owner);

 protected:
  CPropertySheetImpl() noexcept = default;
  void SetCaption(CWideString caption) noexcept { caption_ = std::move(caption); }
  // Appends a tab; the first page is shown first.
  void AddPage(CPropertyPageImpl& page) { pages_.push_back(&page); }

 private:
  static int CALLBACK SheetCallback(HWND window, UINT event, LPARAM lParam);
  [[nodiscard]] bool CreatePages(std::vector<HPROPSHEETPAGE>& handles);
  [[nodiscard]] PROPSHEETHEADERW Header(HWND owner, std::vector<HPROPSHEETPAGE>& handles) const noexcept;

  CActivationContext activation_;
  CWideString caption_;
  std::vector<CPropertyPageImpl*> pages_;
};
