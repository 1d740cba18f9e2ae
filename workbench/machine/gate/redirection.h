// Points chosen imports of a loaded module somewhere else.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "workbench/machine/gate/import_table.h"

namespace workbench {

// While it lives, the imports of `module` for which `choose` answers a function go there. What the module
// looks up at run time is caught by choosing its LoadLibrary*, GetModuleHandle* and GetProcAddress; this
// covers delay-loaded imports, because the delay helper imports those. The module's code must not be
// running on another thread while the object is made or destroyed.
class Redirection {
 public:
  // Answers the replacement for a named import, or null to leave it alone.
  using Chooser = std::function<AnyFunction(const char* dll, const char* name)>;

  Redirection(HMODULE module, const Chooser& choose);
  ~Redirection();
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;

  // The module was unloaded: there is nothing to put back.
  void Abandon() { changed_.clear(); }
  // Imports that were left alone, as "dll!name".
  [[nodiscard]] const std::vector<std::string>& Untouched() const { return untouched_; }

 private:
  struct Changed {
    AnyFunction* slot;
    AnyFunction original;
  };
  std::vector<Changed> changed_;
  std::vector<std::string> untouched_;
};

}  // namespace workbench
