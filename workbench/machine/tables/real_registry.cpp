// Real functions of the registry (which is the sandbox) and of type library registration.
#include <windows.h>

#include <oleauto.h>

#include "workbench/machine/tables/tables.h"

// mingw-w64's headers lack these two.
extern "C" {
HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* helpDirectory);
HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID library, WORD major, WORD minor, LCID locale, SYSKIND kind);
}

namespace workbench {
namespace {

constexpr Failure kRefused = FailsWithStatus(ERROR_ACCESS_DENIED);
constexpr Failure kAbsent = FailsWithStatus(ERROR_FILE_NOT_FOUND);
constexpr Failure kNoTypeLibrary = FailsWithHresult(static_cast<std::uint32_t>(TYPE_E_REGISTRYACCESS));

const FunctionRow kRows[] = {
    {"advapi32.dll", KD_REAL(RegOpenKeyExW), kRefused, GivesArgument(HandleKind::RegistryKey, 4)},
    {"advapi32.dll", KD_REAL(RegOpenKeyExA), kRefused, GivesArgument(HandleKind::RegistryKey, 4)},
    {"advapi32.dll", KD_REAL(RegCreateKeyExW), kRefused, GivesArgument(HandleKind::RegistryKey, 7)},
    {"advapi32.dll", KD_REAL(RegCloseKey), FailsWithStatus(ERROR_INVALID_HANDLE),
     Closes(HandleKind::RegistryKey)},
    {"advapi32.dll", KD_REAL(RegQueryValueExW), kAbsent},
    {"advapi32.dll", KD_REAL(RegQueryValueExA), kAbsent},
    {"advapi32.dll", KD_REAL(RegGetValueW), kAbsent},
    {"advapi32.dll", KD_REAL(RegSetValueExW), kRefused},
    {"advapi32.dll", KD_REAL(RegEnumValueW), FailsWithStatus(ERROR_NO_MORE_ITEMS)},
    {"advapi32.dll", KD_REAL(RegDeleteKeyW), kRefused},
    {"advapi32.dll", KD_REAL(RegDeleteKeyExW), kRefused},
    {"oleaut32.dll", KD_REAL(LoadTypeLib), kNoTypeLibrary},
    {"oleaut32.dll", KD_REAL(RegisterTypeLib), kNoTypeLibrary},
    {"oleaut32.dll", KD_REAL(UnRegisterTypeLib), kNoTypeLibrary},
    {"oleaut32.dll", KD_REAL(RegisterTypeLibForUser), kNoTypeLibrary},
    {"oleaut32.dll", KD_REAL(UnRegisterTypeLibForUser), kNoTypeLibrary},
};

}  // namespace

const std::span<const FunctionRow> kRegistryRows = kRows;

}  // namespace workbench
