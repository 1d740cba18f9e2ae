#include "install/naming/com_database.h"

CComDatabase OpenComDatabase() noexcept {
  HCOMDB handle = HCOMDB_INVALID_HANDLE_VALUE;
  if (ComDBOpen(&handle) != ERROR_SUCCESS) handle = HCOMDB_INVALID_HANDLE_VALUE;
  return CComDatabase(handle);
}

std::optional<ComUsage> ReadComUsage(HCOMDB database) {
  if (database == HCOMDB_INVALID_HANDLE_VALUE) return std::nullopt;
  ComUsage usage{};
  DWORD reported = 0;
  if (ComDBGetCurrentPortUsage(database, usage.data(), static_cast<DWORD>(usage.size()), CDB_REPORT_BYTES,
                               &reported) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  return usage;
}
