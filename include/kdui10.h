/* kdui10.h - the functions that KdUUI10.DLL exports.
 *
 * For management programs that rename a port, push settings into a port or update a driver, and for
 * installers that register the DLL with Windows. The header needs nothing but the Windows headers and
 * compiles as C11 and as C++17.
 *
 * Two ways to call
 *   Link      Link the import library libKdUUI10.a and call the functions by name. The DLL must then be
 *             found when the program starts; it is installed in the system directory.
 *   Look up   Load the DLL at run time and look the functions up; every function has a pointer type,
 *             named after it with "Fn" behind (KdChangeComNumberFn). Load it from the system directory
 *             only, by its full path: what GetSystemDirectoryW says, and KDUI10_MODULE_NAME. This way a
 *             program also runs, and can say so, where the product is not installed.
 *   The DLL is 64-bit; a 32-bit program cannot load it and needs a 64-bit helper process.
 *
 * Text
 *   All text is UTF-16, ended by a zero character. Strings are read during the call and never kept or
 *   changed: they stay the caller's. A device instance id is what CM_Get_Device_IDW or
 *   SetupDiGetDeviceInstanceIdW return, MAX_DEVICE_ID_LEN (200) characters at most, terminator included;
 *   upper and lower case are the same.
 *
 * Results
 *   A function says only whether it worked; there are no error codes, and the thread's last error means
 *   nothing afterwards. No function raises an exception, memory running out included: that is an ordinary
 *   failure. No function hands out anything that the caller would have to free.
 *
 * Threads
 *   A call works on the caller's thread and is over when it returns. Any thread may call, except from a
 *   DllMain. Calls for different ports may run at the same time. Calls for one port are not serialised:
 *   each reads the settings, changes some and writes all of them back, so of two at once one may be lost.
 *
 * Rights
 *   Changing a device needs an elevated administrator. Without these rights a function fails as it does
 *   for any other reason. KdChangeComNumber may show message boxes: call it from a program on the user's
 *   desktop, not from a service, where nobody could answer. The other functions for management programs
 *   show nothing of their own.
 */
#ifndef KDUI10_H
#define KDUI10_H

#include <windows.h>

#include <guiddef.h>
#include <prsht.h>
#include <setupapi.h>

#ifndef _WIN64
#error "KdUUI10.DLL is a 64-bit library"
#endif

/* Programs leave KDUI10_BUILDING undefined: it is for the build of the DLL itself. */
#ifdef KDUI10_BUILDING
#define KDUI10_API
#else
#define KDUI10_API DECLSPEC_IMPORT
#endif

/* What to load; see "Look up" above. */
#define KDUI10_MODULE_NAME L"KdUUI10.DLL"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Renaming a port -------------------------------------------------------------------------------- */

/* Gives a port another COM name: in the system's COM name database, as DOS device, in the serial-port map,
 * in the port's registry values and in its friendly name. The new name starts with the default line
 * settings 9600,n,8,1. Device Manager shows the new name at once.
 *
 *   deviceInstanceId  The port, which must be present. Null is a failure.
 *   newComName        "COM" and a decimal number from 1 to 255, without leading zeros or a colon, in
 *                     capitals. The name is not checked further: what Windows makes of another text is
 *                     what the port is called afterwards. Null counts as the empty text and is of no use.
 *
 * The user is asked, in a message box without an owner, when another program holds the port open and when
 * the new number is taken already (also by this port itself); "No" leaves everything as it was.
 *
 * Returns TRUE when the port was found and the rename was tried - also when the rename then failed or the
 * user declined it - and FALSE when the id is null or names no present device. To learn whether the port
 * has its new name, read the value PortName from the device's hardware key afterwards.
 */
KDUI10_API BOOL WINAPI KdChangeComNumber(PCWSTR deviceInstanceId, PCWSTR newComName);
typedef BOOL(WINAPI* KdChangeComNumberFn)(PCWSTR deviceInstanceId, PCWSTR newComName);

/* ---- Pushing settings into a port ------------------------------------------------------------------- */

/* The result of the two functions below: 1 when the settings reached the drivers, 0 when they did not. It
 * fills a whole 64-bit register, so that a caller that declares it as BOOL reads the same value.
 */
typedef ULONG64 KdUpdateResult;

/* Values of dataBits. */
#define KD_DATA_BITS_5 0u
#define KD_DATA_BITS_6 1u
#define KD_DATA_BITS_7 2u
#define KD_DATA_BITS_8 3u

/* Values of parity. */
#define KD_PARITY_NONE 0u
#define KD_PARITY_ODD 1u
#define KD_PARITY_EVEN 2u
#define KD_PARITY_MARK 3u
#define KD_PARITY_SPACE 4u

/* Values of stopBits. */
#define KD_STOP_BITS_1 0u
#define KD_STOP_BITS_1_5 1u
#define KD_STOP_BITS_2 2u

/* Values of flowControl: none, or bits. */
#define KD_FLOW_CONTROL_NONE 0u
#define KD_FLOW_CONTROL_CTS_RTS 1u
#define KD_FLOW_CONTROL_DTR_DSR 2u
#define KD_FLOW_CONTROL_XON_XOFF 4u

/* For dataBits, parity, stopBits and flowControl: leave the setting as it is. It is out of range for each
 * of the four (0xFFFFFFFF is not: it has flow control bits).
 */
#define KD_KEEP_SETTING 0xFFFFFFF0u

/* Changes the line settings of a port.
 *
 *   deviceInstanceId  The port, which must be present. Null is a failure.
 *   reserved          Ignored; pass NULL.
 *   baudRate          Bits per second. Stored as it is, without a check against what the port can do:
 *                     pass the present rate to keep it.
 *   dataBits          0 to 3, see KD_DATA_BITS_*.
 *   parity            0 to 4, see KD_PARITY_*.
 *   stopBits          0 to 2, see KD_STOP_BITS_*.
 *   flowControl       0, or any value with at least one of the four lowest bits set, stored as it is; see
 *                     KD_FLOW_CONTROL_*.
 *   A value out of range leaves that setting as it is and is no failure.
 *
 * When the port cannot be opened after the change - a program is using it - the device is disabled and
 * enabled again, so that the settings take effect; the program loses its connection. A port that is not
 * in use is not restarted.
 *
 * Returns 1 when the driver took the settings, whatever came of the restart. Returns 0 when the id is null
 * or names no present device, when the port has no COM name or no configuration interface (its driver is
 * not running), or when the driver refuses; nothing is changed then.
 */
KDUI10_API KdUpdateResult WINAPI KdNPortSettingsUpdate(PCWSTR deviceInstanceId, PVOID reserved,
                                                       UINT32 baudRate, UINT32 dataBits, UINT32 parity,
                                                       UINT32 stopBits, UINT32 flowControl);
typedef KdUpdateResult(WINAPI* KdNPortSettingsUpdateFn)(PCWSTR deviceInstanceId, PVOID reserved,
                                                        UINT32 baudRate, UINT32 dataBits, UINT32 parity,
                                                        UINT32 stopBits, UINT32 flowControl);

/* Changes where and how a port reaches its device server.
 *
 *   deviceInstanceId  The port, which must be present. Null is a failure.
 *   reserved1         Ignored; pass NULL.
 *   address           IPv4 address of the device server, most significant byte first: 192.168.0.10 is
 *                     0xC0A8000A.
 *   dataPort          TCP port of the serial port's data channel.
 *   reserved2         Ignored; pass 0.
 *   configPort        The device server's configuration port.
 *   webPort           The device server's HTTP port.
 *   mac1, mac2        The device server's hardware address, in the two parts in which the network bus
 *                     driver keeps it.
 *   duplexMode        Duplex mode of an RS-422/485 port: 0 none, 1 RS-422 full duplex, 2 RS-485 half
 *                     duplex; see portType.
 *   portType          The port's serial interface type, stored for the network bus driver as it is. If it
 *                     is 0 or 1 and not the type that the port has now, the port takes it over: 0 also
 *                     sets the duplex mode to 0, and 1 sets it to duplexMode, or to 1 if duplexMode is 0.
 *                     Otherwise the port keeps its type and its duplex mode becomes duplexMode.
 *   No value is checked: the drivers receive what is passed. TCP ports are 1 to 65535.
 *
 * When the port cannot be opened after the change, its device is restarted as in KdNPortSettingsUpdate.
 *
 * Returns 1 when both drivers took the settings, whatever came of the restart. Returns 0 for the reasons of
 * KdNPortSettingsUpdate. Nothing is changed then, with one exception: when the serial port driver refuses,
 * the network bus driver has its new settings already. Call again with all values to bring both in step.
 */
KDUI10_API KdUpdateResult WINAPI KdNPortNetworkInfoUpdate(PCWSTR deviceInstanceId, PVOID reserved1,
                                                          UINT32 address, UINT32 dataPort, UINT32 reserved2,
                                                          UINT32 configPort, UINT32 webPort, UINT32 mac1,
                                                          UINT32 mac2, UINT32 duplexMode, UINT32 portType);
typedef KdUpdateResult(WINAPI* KdNPortNetworkInfoUpdateFn)(PCWSTR deviceInstanceId, PVOID reserved1,
                                                           UINT32 address, UINT32 dataPort, UINT32 reserved2,
                                                           UINT32 configPort, UINT32 webPort, UINT32 mac1,
                                                           UINT32 mac2, UINT32 duplexMode, UINT32 portType);

/* ---- Updating a driver ------------------------------------------------------------------------------ */

/* Installs a driver for every present device with a hardware id, also when the driver that is there is the
 * better match. Windows may ask the user to trust the driver's publisher. A restart of the computer that
 * the update needs is neither made nor reported.
 *
 *   hardwareId   The hardware id of the devices, as in the INF file.
 *   infFullPath  The INF file with its full path.
 *
 * Returns TRUE when Windows installed the driver. Returns FALSE when an argument is null, when no present
 * device has the hardware id, or when Windows refuses the driver or the caller's rights.
 */
KDUI10_API BOOL WINAPI KdUpdateDriver(PCWSTR hardwareId, PCWSTR infFullPath);
typedef BOOL(WINAPI* KdUpdateDriverFn)(PCWSTR hardwareId, PCWSTR infFullPath);

/* ---- Called by Windows ------------------------------------------------------------------------------ */

/* The functions from here on are called by the device installer, Device Manager and the COM registration
 * tools, which find them by the names that the INF file and COM prescribe. Management programs leave them
 * alone.
 */

/* Co-installers of the device server ("card") and of its ports, to be registered under CoInstallers32.
 *
 *   installFunction  The DIF code. Acted upon are DIF_INSTALLDEVICE, DIF_REMOVE and DIF_UPDATEDRIVER_UI;
 *                    every other code returns NO_ERROR at once.
 *   deviceInfoSet,
 *   deviceInfoData   The device, both the installer's.
 *   context          The installer's; read only, and for DIF_INSTALLDEVICE alone.
 *   Null pointers do nothing and return NO_ERROR.
 *
 * Return NO_ERROR; ERROR_DI_POSTPROCESSING_REQUIRED before an installation, to be called again after it;
 * after it, the installation's own result, context->InstallResult (NO_ERROR for a port whose COM name is not
 * defined yet, because its driver is not running); or ERROR_DI_DONT_INSTALL, after a message box, when the
 * device's value NoUpgrade forbids the update of its driver from Device Manager.
 * The installation of a port waits, without a limit, for that of other ports in any process.
 */
KDUI10_API DWORD CALLBACK KdUCoInstallCard(DI_FUNCTION installFunction, HDEVINFO deviceInfoSet,
                                           PSP_DEVINFO_DATA deviceInfoData,
                                           PCOINSTALLER_CONTEXT_DATA context);
KDUI10_API DWORD CALLBACK KdUCoInstallPort(DI_FUNCTION installFunction, HDEVINFO deviceInfoSet,
                                           PSP_DEVINFO_DATA deviceInfoData,
                                           PCOINSTALLER_CONTEXT_DATA context);
typedef DWORD(CALLBACK* KdUCoInstallCardFn)(DI_FUNCTION installFunction, HDEVINFO deviceInfoSet,
                                            PSP_DEVINFO_DATA deviceInfoData,
                                            PCOINSTALLER_CONTEXT_DATA context);
typedef KdUCoInstallCardFn KdUCoInstallPortFn;

/* Provider of the property page "Port Settings" of a port, to be registered under EnumPropPages32.
 *
 *   request  What Device Manager asks for. For SPPSR_ENUM_ADV_DEVICE_PROPERTIES the page is added; for
 *            everything else nothing is.
 *   addPage  Is given the page, which is then the sheet's: it is freed with it. The page and its sheet
 *            belong to the thread that shows them.
 *   lParam   Handed to addPage.
 *
 * Returns TRUE when the page was added or none was asked for; FALSE when a pointer is null, the port's
 * settings cannot be read from the drivers or addPage refuses.
 */
KDUI10_API BOOL CALLBACK KdUPortPropPage(PSP_PROPSHEETPAGE_REQUEST request, LPFNADDPROPSHEETPAGE addPage,
                                         LPARAM lParam);
typedef BOOL(CALLBACK* KdUPortPropPageFn)(PSP_PROPSHEETPAGE_REQUEST request, LPFNADDPROPSHEETPAGE addPage,
                                          LPARAM lParam);

/* The four COM entry points, as types only: their prototypes are those of Windows' own headers, and a
 * program may have functions of the same names. DllGetClassObject has no class to give out and fails with
 * CLASS_E_CLASSNOTAVAILABLE, or with E_POINTER when object is null. DllRegisterServer and
 * DllUnregisterServer write and remove the entries of the type library in the DLL: for the machine, which
 * needs an administrator, or for the user alone where the environment of the process has OAPERUSERTLIBREG=1,
 * Windows' own switch for per-user type libraries.
 */
typedef HRESULT(WINAPI* KdDllCanUnloadNowFn)(void);
typedef HRESULT(WINAPI* KdDllGetClassObjectFn)(REFCLSID classId, REFIID interfaceId, LPVOID* object);
typedef HRESULT(WINAPI* KdDllRegisterServerFn)(void);
typedef HRESULT(WINAPI* KdDllUnregisterServerFn)(void);

#ifdef __cplusplus
}
#endif

#endif
