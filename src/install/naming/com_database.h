// The COM name database: which COM numbers are taken. Windows only.
//
// It belongs to Windows (msports.dll) and is shared by all makers' ports. It is opened for single steps and
// never kept. Any thread; one handle serves one thread.
#pragma once

#include <windows.h>

#include <ddk/msports.h>

#include <optional>

#include "base/unique_handle.h"
#include "install/naming/com_names.h"

// ComDBOpen: HCOMDB_INVALID_HANDLE_VALUE when it fails.
struct ComDatabaseTraits {
  using Handle = HCOMDB;
  static Handle Invalid() noexcept { return HCOMDB_INVALID_HANDLE_VALUE; }
  static void Close(Handle handle) noexcept { ComDBClose(handle); }
};
using CComDatabase = CUniqueHandle<ComDatabaseTraits>;

// Opens the database; an empty holder when that fails.
[[nodiscard]] CComDatabase OpenComDatabase() noexcept;

// All numbers of a database that the caller opened, one byte for each; nothing when it is not open (the
// invalid handle) or does not answer.
[[nodiscard]] std::optional<ComUsage> ReadComUsage(HCOMDB database);
