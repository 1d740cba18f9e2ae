// Keeps the thread's last error across clean-up code. Windows only.
#pragma once

#include <windows.h>

// Puts the last error that it found at construction back at destruction. To be made on the stack before
// clean-up calls whose own errors are of no interest; it belongs to the thread that made it.
class CLastErrorKeeper {
 public:
  CLastErrorKeeper() noexcept : error_(GetLastError()) {}
  ~CLastErrorKeeper() { SetLastError(error_); }
  CLastErrorKeeper(const CLastErrorKeeper&) = delete;
  CLastErrorKeeper& operator=(const CLastErrorKeeper&) = delete;

 private:
  DWORD error_;
};
