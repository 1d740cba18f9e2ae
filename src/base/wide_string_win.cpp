#include <windows.h>

#include "base/module_instance.h"
#include "base/wide_string.h"

void CWideString::MakeLower() {
  if (!IsEmpty()) CharLowerBuffW(Writable().data(), static_cast<DWORD>(Length()));
}

void CWideString::MakeUpper() {
  if (!IsEmpty()) CharUpperBuffW(Writable().data(), static_cast<DWORD>(Length()));
}

bool CWideString::LoadFromTable(std::uint32_t id) {
  // With a size of 0 LoadStringW hands out the resource itself, so no length is guessed.
  const wchar_t* resource = nullptr;
  const int length = LoadStringW(ModuleInstance(), id, reinterpret_cast<wchar_t*>(&resource), 0);
  *this =
      length > 0 ? CWideString(std::wstring_view(resource, static_cast<std::size_t>(length))) : CWideString();
  return length > 0;
}
