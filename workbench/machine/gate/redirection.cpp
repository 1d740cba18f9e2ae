#include "workbench/machine/gate/redirection.h"

namespace workbench {

Redirection::Redirection(HMODULE module, const Chooser& choose) {
  for (const ImportSlot& import : ImportsOf(module)) {
    const AnyFunction hook = import.name == nullptr ? nullptr : choose(import.dll, import.name);
    if (hook == nullptr) {
      std::string name = import.dll;
      name.append(import.name == nullptr ? "!#" : "!");
      name.append(import.name == nullptr ? std::to_string(import.ordinal) : import.name);
      untouched_.push_back(std::move(name));
      continue;
    }
    changed_.push_back({import.slot, *import.slot});
    WriteSlot(import.slot, hook);
  }
}

Redirection::~Redirection() {
  for (const Changed& changed : changed_) WriteSlot(changed.slot, changed.original);
}

}  // namespace workbench
