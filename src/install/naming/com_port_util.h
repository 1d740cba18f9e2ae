// A port as a COM name and everything that has to agree on it. Windows only.
//
// The name of a port lives in five places: the COM name database (which numbers are taken), the DOS device
// that points at the port's kernel device, the SERIALCOMM map (kernel device to COM name), the value
// "PortName" in the port's hardware key, and the friendly name, which shows the name in brackets.
// RenameComPort is the only way in which the system changes a name.
#pragma once

#include <windows.h>

#include <ddk/msports.h>

#include <optional>

#include "install/devices/device_reg_info.h"
#include "install/naming/com_names.h"

// One port device and the COM name database, which is opened and closed around each use.
class CCOMPortUtil : public CKDDeviceRegInfo {
 public:
  using CKDDeviceRegInfo::CKDDeviceRegInfo;
  ~CCOMPortUtil() override;

  // True when the database is open now. An already open one stays open.
  [[nodiscard]] bool OpenComDb();
  // True when the database was open and has been closed.
  bool CloseComDb();
  // Take a number; `forced`, which may be null, is told whether it was taken already, and is written on
  // success only.
  bool ClaimComNumber(DWORD number, bool force, BOOL* forced);
  bool ReleaseComNumber(DWORD number);
  // Whether nobody has the number. False when the database is not open or does not answer, and for numbers
  // that it has no byte for: 0 and those above 256.
  [[nodiscard]] bool IsComNumberFree(DWORD number) const;
  // All numbers at once, for who looks for a free one; nothing under the same conditions.
  [[nodiscard]] std::optional<ComUsage> ReadComUsage() const;

 private:
  HCOMDB database_ = HCOMDB_INVALID_HANDLE_VALUE;
};

// All numbers of a database that the caller opened; nothing when it is not open or does not answer.
[[nodiscard]] std::optional<ComUsage> ReadComUsage(HCOMDB database);

// Moves the DOS device and the SERIALCOMM entry from one name to the other. 1 on success. 0 when a step
// failed: before the new DOS device exists everything is as it was; when only the map could not be written,
// the DOS device keeps the new name.
[[nodiscard]] int RenameDosDeviceAndSerialComm(const CWideString& oldName, const CWideString& newName);

// Writes the settings that programs find for a COM name where Windows keeps them, as "9600,n,8,1". False
// when the registry refuses; needs administrator rights.
bool WritePortsSettings(const CWideString& comName, const CWideString& settings);

// Writes "9600,n,8,1" as the settings that programs find for the port's present name.
void WritePortsDefault(HDEVINFO set, const SP_DEVINFO_DATA& element);
void WritePortsDefault(const CKDDeviceRegInfo& port);

// Moves a port to another COM name, in all five places, and writes the new name's default settings.
//
// Asks (message box owned by `owner`, which may be null) when the new number is taken and, if `interactive`,
// when the port is open somewhere. With `reenumerate` the device tree is enumerated again at the end.
// Returns 1 when the port was renamed or the user declined, 0 when a step failed; what was done before the
// failing step stays done, so that a port never loses its DOS device on the way.
int RenameComPort(CCOMPortUtil& port, const CWideString& newName, HWND owner, bool interactive,
                  bool reenumerate);
