#include "install/naming/com_port_util.h"

bool CCOMPortUtil::OpenComDb() {
  if (!database_) database_ = OpenComDatabase();
  return static_cast<bool>(database_);
}

bool CCOMPortUtil::CloseComDb() {
  return database_ && ComDBClose(database_.Release()) == ERROR_SUCCESS;
}

bool CCOMPortUtil::ClaimComNumber(DWORD number, bool force, BOOL* forced) {
  if (!database_) return false;
  BOOL wasForced = FALSE;
  if (ComDBClaimPort(database_.Get(), number, force ? TRUE : FALSE, &wasForced) != ERROR_SUCCESS) {
    return false;
  }
  if (forced != nullptr) *forced = wasForced;
  return true;
}

bool CCOMPortUtil::ReleaseComNumber(DWORD number) {
  return database_ && ComDBReleasePort(database_.Get(), number) == ERROR_SUCCESS;
}

bool CCOMPortUtil::IsComNumberFree(DWORD number) const {
  if (number > kComUsageBytes) return false;
  const std::optional<ComUsage> usage = ReadComUsage();
  return usage && IsNumberFree(*usage, number);
}

std::optional<ComUsage> CCOMPortUtil::ReadComUsage() const {
  return ::ReadComUsage(database_.Get());
}
