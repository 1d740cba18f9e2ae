#include "workbench/machine/gate/import_table.h"

#include <cstdint>

namespace workbench {
namespace {

template <class T>
T* At(HMODULE module, std::uint64_t offset) {
  return reinterpret_cast<T*>(reinterpret_cast<unsigned char*>(module) + offset);
}

const IMAGE_DATA_DIRECTORY* ImportDirectory(HMODULE module) {
  const auto* dos = At<IMAGE_DOS_HEADER>(module, 0);
  if (dos->e_magic != IMAGE_DOS_SIGNATURE) return nullptr;
  const auto* headers = At<IMAGE_NT_HEADERS>(module, static_cast<std::uint64_t>(dos->e_lfanew));
  if (headers->Signature != IMAGE_NT_SIGNATURE) return nullptr;
  const auto* directory = &headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  return directory->VirtualAddress == 0 ? nullptr : directory;
}

void AppendDescriptor(HMODULE module, const IMAGE_IMPORT_DESCRIPTOR& descriptor,
                      std::vector<ImportSlot>& slots) {
  // The names are in the original table; a linker that leaves it out has the names nowhere once the
  // loader has written the addresses.
  if (descriptor.OriginalFirstThunk == 0) return;
  const char* dll = At<char>(module, descriptor.Name);
  const auto* names = At<IMAGE_THUNK_DATA>(module, descriptor.OriginalFirstThunk);
  auto* addresses = At<AnyFunction>(module, descriptor.FirstThunk);
  for (; names->u1.AddressOfData != 0; ++names, ++addresses) {
    ImportSlot slot{.dll = dll, .slot = addresses};
    if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) {
      slot.ordinal = static_cast<WORD>(IMAGE_ORDINAL(names->u1.Ordinal));
    } else {
      slot.name = At<IMAGE_IMPORT_BY_NAME>(module, names->u1.AddressOfData)->Name;
    }
    slots.push_back(slot);
  }
}

}  // namespace

std::vector<ImportSlot> ImportsOf(HMODULE module) {
  std::vector<ImportSlot> slots;
  const IMAGE_DATA_DIRECTORY* directory = ImportDirectory(module);
  if (directory == nullptr) return slots;
  const auto* descriptor = At<IMAGE_IMPORT_DESCRIPTOR>(module, directory->VirtualAddress);
  for (; descriptor->Name != 0; ++descriptor) AppendDescriptor(module, *descriptor, slots);
  return slots;
}

void WriteSlot(AnyFunction* slot, AnyFunction value) {
  DWORD old = 0;
  VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &old);
  *slot = value;
  VirtualProtect(slot, sizeof *slot, old, &old);
}

}  // namespace workbench
