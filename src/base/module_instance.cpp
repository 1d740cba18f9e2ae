#include "base/module_instance.h"

namespace {
HINSTANCE g_instance = nullptr;
}

void SetModuleInstance(HINSTANCE instance) noexcept {
  g_instance = instance;
}

HINSTANCE ModuleInstance() noexcept {
  return g_instance;
}
