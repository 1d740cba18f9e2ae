// The activation context that selects common controls version 6 for this module's windows. Windows only.
#pragma once

#include <windows.h>

#include "base/unique_handle.h"

// CreateActCtxW: INVALID_HANDLE_VALUE when it fails.
struct ActivationContextTraits {
  using Handle = HANDLE;
  static Handle Invalid() noexcept { return INVALID_HANDLE_VALUE; }
  static void Close(Handle handle) noexcept { ReleaseActCtx(handle); }
};

// The context made from the module's own manifest (resource IDR_MANIFEST). The host may be a program without
// a manifest, whose windows get version 5 of the controls, which has no balloon tips with a close button.
// When the context cannot be made, Get() is INVALID_HANDLE_VALUE and windows get the host's controls.
class CActivationContext {
 public:
  CActivationContext() noexcept;
  // The context, which stays the object's.
  [[nodiscard]] HANDLE Get() const noexcept { return context_.Get(); }

 private:
  CUniqueHandle<ActivationContextTraits> context_;
};

// Makes a context the calling thread's for the lifetime of the object; does nothing with a context that could
// not be made. Scopes end in reverse order of their beginning, on the thread that began them; the context
// outlives the scope.
class CActivationScope {
 public:
  explicit CActivationScope(const CActivationContext& context) noexcept;
  ~CActivationScope();
  CActivationScope(const CActivationScope&) = delete;
  CActivationScope& operator=(const CActivationScope&) = delete;

 private:
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};
