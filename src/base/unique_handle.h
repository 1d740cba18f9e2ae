// Handles that close themselves. Windows only.
#pragma once

#include <windows.h>

#include <utility>

#include "base/last_error.h"

// Owns one handle, or none, and closes it at destruction. Can be moved and not copied; a holder that was
// moved from is empty. Traits say what the handle is: a type Handle, Invalid() and Close(handle).
//
// Closing keeps the thread's last error, so that a failure can be reported after clean-up. One object serves
// one thread; the handle itself may be closed on any thread that Windows allows.
template <class Traits>
class CUniqueHandle {
 public:
  using Handle = typename Traits::Handle;

  CUniqueHandle() noexcept = default;
  explicit CUniqueHandle(Handle handle) noexcept : handle_(handle) {}
  CUniqueHandle(CUniqueHandle&& other) noexcept : handle_(other.Release()) {}
  CUniqueHandle& operator=(CUniqueHandle&& other) noexcept {
    Reset(other.Release());
    return *this;
  }
  CUniqueHandle(const CUniqueHandle&) = delete;
  CUniqueHandle& operator=(const CUniqueHandle&) = delete;
  ~CUniqueHandle() { Reset(); }

  // The handle, which stays the object's; the invalid value when it is empty.
  [[nodiscard]] Handle Get() const noexcept { return handle_; }
  // Whether a handle is held.
  [[nodiscard]] explicit operator bool() const noexcept { return handle_ != Traits::Invalid(); }

  // Closes what is held and takes `handle` over.
  void Reset(Handle handle = Traits::Invalid()) noexcept {
    const Handle old = std::exchange(handle_, handle);
    if (old == Traits::Invalid()) return;
    const CLastErrorKeeper keeper;
    Traits::Close(old);
  }
  // Gives the handle away; the caller closes it.
  [[nodiscard]] Handle Release() noexcept { return std::exchange(handle_, Traits::Invalid()); }
  // Closes what is held and returns the place for an out parameter.
  [[nodiscard]] Handle* Put() noexcept {
    Reset();
    return &handle_;
  }

 private:
  Handle handle_ = Traits::Invalid();
};

// CreateFileW: INVALID_HANDLE_VALUE when it fails.
struct FileHandleTraits {
  using Handle = HANDLE;
  static Handle Invalid() noexcept { return INVALID_HANDLE_VALUE; }
  static void Close(Handle handle) noexcept { CloseHandle(handle); }
};
using CFileHandle = CUniqueHandle<FileHandleTraits>;

// CreateMutexW, CreateProcessW: null when they fail.
struct KernelHandleTraits {
  using Handle = HANDLE;
  static Handle Invalid() noexcept { return nullptr; }
  static void Close(Handle handle) noexcept { CloseHandle(handle); }
};
using CKernelHandle = CUniqueHandle<KernelHandleTraits>;

// RegOpenKeyExW, RegCreateKeyExW: the key stays null when they fail.
struct RegistryKeyTraits {
  using Handle = HKEY;
  static Handle Invalid() noexcept { return nullptr; }
  static void Close(Handle handle) noexcept { RegCloseKey(handle); }
};
using CRegistryKey = CUniqueHandle<RegistryKeyTraits>;

// CreateSolidBrush, CreateFontIndirectW and the like: null when they fail. An object must not be selected
// into a device context when its holder closes it.
template <class HandleType>
struct GdiHandleTraits {
  using Handle = HandleType;
  static Handle Invalid() noexcept { return nullptr; }
  static void Close(Handle handle) noexcept { DeleteObject(handle); }
};
using CBrushHandle = CUniqueHandle<GdiHandleTraits<HBRUSH>>;
using CFontHandle = CUniqueHandle<GdiHandleTraits<HFONT>>;
