#include "ui/framework/activation_context.h"

#include "base/module_instance.h"
#include "base/resource_ids.h"

namespace {

HANDLE CreateFromOwnManifest() noexcept {
  ACTCTXW description{};
  description.cbSize = sizeof(description);
  description.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  description.hModule = ModuleInstance();
  description.lpResourceName = MAKEINTRESOURCEW(IDR_MANIFEST);
  return CreateActCtxW(&description);
}

}  // namespace

CActivationContext::CActivationContext() noexcept : context_(CreateFromOwnManifest()) {}

CActivationScope::CActivationScope(const CActivationContext& context) noexcept {
  if (context.Get() == INVALID_HANDLE_VALUE) return;
  active_ = ActivateActCtx(context.Get(), &cookie_) != FALSE;
}

CActivationScope::~CActivationScope() {
  const CLastErrorKeeper keeper;
  if (active_) DeactivateActCtx(0, cookie_);
}
