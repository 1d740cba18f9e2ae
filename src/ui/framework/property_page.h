// A property page: one dialog of a sheet and the object that answers for it. Windows only.
#pragma once

#include <windows.h>

#include <commctrl.h>
#include <prsht.h>

#include <memory>

#include "ui/framework/activation_context.h"

// Base of every page. A page is made from a dialog template of this module; its object hangs on the dialog's
// window, and the dialog procedure forwards each message to the one named handler below that a page
// overrides.
//
// Lifetime: either the caller owns the object (Create; it must outlive the sheet) or the sheet does
// (CreateOwned; it is freed when the sheet releases the page, even if its window was never created, and never
// before). A page that is released while one of its handlers runs, because a message box or a blocking call
// let the sheet close, is freed when the handler returns.
//
// All members belong to the sheet's thread. No exception leaves the window procedure: a handler that throws
// leaves its message unhandled. Handlers run under the module's activation context.
class CPropertyPageImpl {
 public:
  virtual ~CPropertyPageImpl();
  CPropertyPageImpl(const CPropertyPageImpl&) = delete;
  CPropertyPageImpl& operator=(const CPropertyPageImpl&) = delete;

  // Makes the page for a sheet; the object stays the caller's. Null when Windows cannot make it; otherwise
  // the handle goes to a sheet or to DestroyPropertySheetPage.
  [[nodiscard]] HPROPSHEETPAGE Create();
  // The same with the object handed to the page. On failure the object is freed and null returned.
  [[nodiscard]] static HPROPSHEETPAGE CreateOwned(std::shared_ptr<CPropertyPageImpl> page);

  // The dialog's window; null before it is created and after it is destroyed.
  [[nodiscard]] HWND Window() const noexcept { return window_; }

 protected:
  // `title` is a text that outlives the page or MAKEINTRESOURCEW of a string id.
  CPropertyPageImpl(WORD dialogId, const wchar_t* title) noexcept;

  // A control of the dialog; null when the template has none with this id.
  [[nodiscard]] HWND Control(int id) const noexcept { return GetDlgItem(window_, id); }
  [[nodiscard]] const CActivationContext& Activation() const noexcept { return activation_; }

  // Sees every message first and cannot stop it: mouse messages on their way to the tips, for one.
  virtual void BeforeDispatch(const MSG&) {}

  // Handlers. Those that return bool say whether they took the message.
  virtual void OnInitDialog() {}  // Windows then sets the default focus
  virtual bool OnTimer(UINT_PTR) { return false; }
  virtual bool OnClose() { return false; }
  virtual bool OnHelp(const HELPINFO&) { return false; }     // F1, or the "?" of the caption
  virtual bool OnClicked(int /*control*/) { return false; }  // BN_CLICKED, STN_CLICKED
  virtual bool OnToolTipText(NMTTDISPINFOW&) { return false; }
  // The brush behind the dialog and its labels; null leaves the background to Windows.
  virtual HBRUSH OnControlColour(HDC) { return nullptr; }
  // Writes what the user has set: OK or Apply was pressed. Returns a PSNRET_ value, of which PSNRET_INVALID
  // keeps the sheet open on this page. Not called when OnInitDialog threw.
  virtual LRESULT OnApply() { return PSNRET_NOERROR; }

 private:
  // The first message finds the object in the page's descriptor, and the later ones in the window.
  static INT_PTR CALLBACK StartDialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  static INT_PTR CALLBACK DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  static UINT CALLBACK PageCallback(HWND window, UINT event, PROPSHEETPAGEW* descriptor);
  [[nodiscard]] INT_PTR Dispatch(const MSG& message);
  [[nodiscard]] INT_PTR EraseBackground(HDC context);
  [[nodiscard]] INT_PTR DispatchNotify(NMHDR& header);
  // Makes `result` the message's result, and returns that the message was handled.
  [[nodiscard]] INT_PTR Answer(LRESULT result) const noexcept;
  // Connect the object with the dialog's window, and separate the two again, which may be repeated.
  void Attach(HWND window) noexcept;
  void Detach() noexcept;

  CActivationContext activation_;
  PROPSHEETPAGEW descriptor_{};
  HWND window_ = nullptr;
  bool isComplete_ = false;                  // OnInitDialog has come to its end
  std::shared_ptr<CPropertyPageImpl> self_;  // the sheet's hold on the object; null when the caller owns it
};
