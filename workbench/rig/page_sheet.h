// A property sheet around the DLL's page, as Device Manager puts it up.
#pragma once

#include <windows.h>

#include <prsht.h>

#include <string>
#include <vector>

#include "workbench/machine/machine.h"

namespace workbench {

// One open sheet of one device, with the page that the DLL provides for it. Belongs to the thread that made
// it. At most one at a time is meant to be run; several may be open.
class PageSheet {
 public:
  // Asks the DLL for the device's advanced pages and opens the sheet, modeless, in the middle of the
  // screen. An owner waits for it, disabled. Throws std::runtime_error when the DLL gives no page or the
  // sheet does not open.
  PageSheet(Machine& machine, const Dll& dll, Device& device, const std::wstring& caption,
            HWND owner = nullptr);
  ~PageSheet();  // closes it as the Cancel button does
  PageSheet(const PageSheet&) = delete;
  PageSheet& operator=(const PageSheet&) = delete;

  [[nodiscard]] HWND Window() const { return sheet_; }
  [[nodiscard]] HWND Page() const;
  [[nodiscard]] bool IsOpen() const;

  // Handles messages until there are none left and everything is painted.
  void Settle() const;
  // Handles messages until the user has closed the sheet.
  void RunUntilClosed();
  // Hands a message to the sheet; true when it was the sheet's. Destroys the sheet when the user has
  // finished with it.
  [[nodiscard]] bool Take(MSG& message);

 private:
  void Destroy();

  DeviceElement element_;  // Device Manager keeps its set while the sheet is open
  HWND owner_;
  HWND sheet_ = nullptr;
};

}  // namespace workbench
