// The import table of a loaded module.
#pragma once

#include <windows.h>

#include <vector>

namespace workbench {

// Any function; cast back to its own type before it is called.
using AnyFunction = void (*)();

// One slot of an import table: where the module keeps the address of a function that it calls.
struct ImportSlot {
  const char* dll = "";
  const char* name = nullptr;  // null: imported by ordinal
  WORD ordinal = 0;
  AnyFunction* slot = nullptr;
};

// The slots of every import descriptor of `module`. The pointers stay good while it is loaded.
[[nodiscard]] std::vector<ImportSlot> ImportsOf(HMODULE module);

// Writes a slot, whatever the protection of its page.
void WriteSlot(AnyFunction* slot, AnyFunction value);

}  // namespace workbench
