// One port device and the COM name database. Windows only.
#pragma once

#include <windows.h>

#include <optional>

#include "install/devices/device_reg_info.h"
#include "install/naming/com_database.h"

// One port device and the COM name database, which is closed at first and opened around each use; see
// CComDatabaseScope. The destructor closes an open one. One object serves one thread.
class CCOMPortUtil : public CKDDeviceRegInfo {
 public:
  using CKDDeviceRegInfo::CKDDeviceRegInfo;

  // True when the database is open now. An already open one stays open.
  [[nodiscard]] bool OpenComDb();
  // True when the database was open and has been closed.
  bool CloseComDb();
  // Takes a number; with `force` also one that is taken. `forced` may be null; on success it is set to
  // whether the number was taken before. False when the database is not open or refuses.
  bool ClaimComNumber(DWORD number, bool force, BOOL* forced);
  // Gives a number back, whichever device claimed it: the database knows numbers and no owners.
  bool ReleaseComNumber(DWORD number);
  // Whether a number is free. False when the database is not open or does not answer, and for numbers that it
  // has no byte for: 0 and those above 256.
  [[nodiscard]] bool IsComNumberFree(DWORD number) const;
  // All numbers at once, to look for a free one; nothing when the database is not open or does not answer.
  [[nodiscard]] std::optional<ComUsage> ReadComUsage() const;

 private:
  CComDatabase database_;
};

// Keeps the port's database open for a scope, whichever way that is left. A database that cannot be opened is
// not reported: the operations on it fail. Scopes of one port are not nested: the inner one would close it.
class CComDatabaseScope {
 public:
  explicit CComDatabaseScope(CCOMPortUtil& port) : port_(port) { static_cast<void>(port_.OpenComDb()); }
  ~CComDatabaseScope() { port_.CloseComDb(); }
  CComDatabaseScope(const CComDatabaseScope&) = delete;
  CComDatabaseScope& operator=(const CComDatabaseScope&) = delete;

 private:
  CCOMPortUtil& port_;
};
