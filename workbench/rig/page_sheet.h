// A property sheet around the DLL's page of a port, as Device Manager puts it up.
#pragma once

#include <windows.h>

#include <prsht.h>

#include <optional>
#include <string>

#include "workbench/rig/page_controls.h"
#include "workbench/rig/rig.h"

namespace workbench {

// The page's handle, from the export; null when it adds none. Keeps the device's set, as Device Manager does
// while the sheet is open.
class PageRequest {
 public:
  PageRequest(Rig& rig, Device& device, DWORD request = SPPSR_ENUM_ADV_DEVICE_PROPERTIES, bool accept = true);

  BOOL result = FALSE;
  HPROPSHEETPAGE page = nullptr;
  unsigned offered = 0;  // how often the callback was called

 private:
  static BOOL CALLBACK Add(HPROPSHEETPAGE page, LPARAM lParam);
  bool accept_;
  DeviceElement element_;
};

// Whether a sheet is painted when it comes up. That takes longer than all the rest of it.
enum class Painting { Now, WhenUncovered };

struct SheetLook {
  const wchar_t* caption = L"Port";
  HWND owner = nullptr;  // waits for the sheet, disabled
  Painting painting = Painting::Now;
};

// One open sheet, modeless, in the middle of the screen. Belongs to the thread that made it; several may be
// open.
class PageSheet {
 public:
  // Throws std::runtime_error when the export adds no page or the sheet does not open.
  PageSheet(Rig& rig, Device& device, const SheetLook& look = {});
  explicit PageSheet(Rig& rig, unsigned port = 0) : PageSheet(rig, rig.Port(port)) {}
  // Any page.
  explicit PageSheet(HPROPSHEETPAGE page, const SheetLook& look = {}) { Open(page, look); }
  ~PageSheet() { Close(); }
  PageSheet(const PageSheet&) = delete;
  PageSheet& operator=(const PageSheet&) = delete;

  [[nodiscard]] HWND Window() const { return sheet_; }
  [[nodiscard]] HWND Page() const { return page_; }
  [[nodiscard]] HWND Control(int id) const { return GetDlgItem(page_, id); }

  [[nodiscard]] std::wstring Text(int id) const { return TextOf(page_, id); }
  [[nodiscard]] bool IsShown(int id) const { return workbench::IsShown(page_, id); }
  // A check box and its label in words: "checked", "clear", with "disabled" and "label disabled" behind it.
  [[nodiscard]] std::string Box(int box, int label) const;
  // As a click of the user: a disabled control takes none.
  void Click(int id) const { workbench::Click(page_, id); }
  void Check(int id, bool check) const;

  // Presses OK; true when the sheet has ended (and is destroyed).
  bool PressOk();
  void Close();
  // Handles messages until the user has closed the sheet.
  void RunUntilClosed();

 private:
  void Open(HPROPSHEETPAGE page, const SheetLook& look);
  // A modeless sheet whose buttons were used has no current page any more, and waits to be destroyed.
  [[nodiscard]] bool HasEnded() const { return SendMessageW(sheet_, PSM_GETCURRENTPAGEHWND, 0, 0) == 0; }

  std::optional<PageRequest> request_;
  HWND owner_ = nullptr;
  HWND sheet_ = nullptr;
  HWND page_ = nullptr;
};

}  // namespace workbench
