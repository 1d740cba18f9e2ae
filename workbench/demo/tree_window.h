// A stand-in for Device Manager's window.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>

#include "base/unique_handle.h"
#include "workbench/rig/rig.h"

namespace workbench {

struct ImageListTraits {
  using Handle = HIMAGELIST;
  static Handle Invalid() noexcept { return nullptr; }
  static void Close(Handle handle) noexcept { ImageList_Destroy(handle); }
};

// The devices of a machine in a tree. A double click or Enter on a port opens its property sheet with the
// DLL's page; the window waits for the sheet, and then shows what has become of the devices. Belongs to the
// thread that made it.
class TreeWindow {
 public:
  // Shows the window in the middle of the screen; its dialog is a resource of the program. Throws
  // std::runtime_error when it does not open.
  explicit TreeWindow(Rig& rig);
  ~TreeWindow();
  TreeWindow(const TreeWindow&) = delete;
  TreeWindow& operator=(const TreeWindow&) = delete;

  // Called before a device's sheet opens and after it has closed.
  std::function<void(Device&)> opening = [](Device&) {};
  std::function<void(Device&)> closed = [](Device&) {};

  [[nodiscard]] HWND Window() const { return window_; }

  // Handles messages until the user has closed the window.
  void RunUntilClosed();

 private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  bool Handle(UINT message, LPARAM lParam);
  void MakeImages();
  void Fill();
  void Select(const Device& device);
  [[nodiscard]] Device* DeviceOf(HTREEITEM item) const;  // null for the computer itself, and for no item
  void OpenSelected();
  // The line at the bottom, which says what to do, or why a device does not open.
  void SetStatus(const wchar_t* text);

  Rig& rig_;
  HWND window_ = nullptr;
  HWND tree_ = nullptr;
  CUniqueHandle<ImageListTraits> images_;
};

}  // namespace workbench
