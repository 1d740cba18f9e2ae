// Walking and copying registry values. Windows only.
#pragma once

#include <windows.h>

#include <functional>

#include "base/unique_handle.h"
#include "base/wide_string.h"

// Opens or creates a key; an empty holder on failure. Names may be paths.
[[nodiscard]] CRegistryKey OpenKey(HKEY parent, const CWideString& path, REGSAM access);
[[nodiscard]] CRegistryKey CreateKey(HKEY parent, const CWideString& path);  // to read and write

// Calls visit(name, type) for every value of the key, until the enumeration ends. Names have up to 16383
// characters.
void ForEachValue(HKEY key, const std::function<void(const CWideString& name, DWORD type)>& visit);

// Copies one value; one that cannot be read or written is left out. A REG_DWORD that holds more than four
// bytes is none, one that holds fewer is filled up with zeros.
void CopyDword(HKEY from, HKEY to, const CWideString& name);
void CopyString(HKEY from, HKEY to, const CWideString& name);

// Copies the REG_DWORD and REG_SZ values of a key.
void CopyDwordsAndStrings(HKEY from, HKEY to);

// Reads a string of any length; on failure `text` stays as it was.
[[nodiscard]] bool ReadString(HKEY key, const CWideString& name, CWideString& text);

// Writes a REG_SZ with its terminator.
[[nodiscard]] bool WriteString(HKEY key, const CWideString& name, const CWideString& text);

// Deletes a key that has no keys below it, in the 64-bit view where Windows knows views.
void DeleteKey(HKEY parent, const CWideString& name);
