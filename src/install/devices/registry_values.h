// Walking and copying registry values. Windows only.
//
// Keys are borrowed; a null key makes every call fail. Failure is reported without an error code, except that
// std::bad_alloc may be thrown. Any thread.
#pragma once

#include <windows.h>

#include <functional>

#include "base/unique_handle.h"
#include "base/wide_string.h"

// Open or create a key; an empty holder on failure. Names may be paths. A key that exists is opened by
// CreateKey as well; missing keys of the path are created with it.
[[nodiscard]] CRegistryKey OpenKey(HKEY parent, const CWideString& path, REGSAM access);
[[nodiscard]] CRegistryKey CreateKey(HKEY parent, const CWideString& path);  // to read and write

// Calls visit(name, type) for every value of the key, until the enumeration ends or fails. Names have up to
// 16383 characters. The visitor must not add or delete values of this key.
void ForEachValue(HKEY key, const std::function<void(const CWideString& name, DWORD type)>& visit);

// Copy one value; one that cannot be read or written is left out. A REG_DWORD of more than four bytes is not
// copied, one of fewer is filled up with zeros. A string is copied byte by byte, with its terminator or
// without.
void CopyDword(HKEY from, HKEY to, const CWideString& name);
void CopyString(HKEY from, HKEY to, const CWideString& name);

// Copies the REG_DWORD and REG_SZ values of a key, not the keys below it.
void CopyDwordsAndStrings(HKEY from, HKEY to);

// Reads a string of any length up to its first zero character, which may be missing. The type that it was
// stored with has no influence. On failure `text` stays as it was.
[[nodiscard]] bool ReadString(HKEY key, const CWideString& name, CWideString& text);

// Writes a REG_SZ with its terminator.
[[nodiscard]] bool WriteString(HKEY key, const CWideString& name, const CWideString& text);

// Deletes a key that has no keys below it, in the 64-bit view where Windows knows views. Failure is not
// reported.
void DeleteKey(HKEY parent, const CWideString& name);
