// Real functions of user32, gdi32 and comctl32.
#include <windows.h>

#include <commctrl.h>
#include <prsht.h>

#include "workbench/machine/tables/tables.h"

namespace workbench {
namespace {

constexpr Failure kNoWindow = FailsWithZero(ERROR_INVALID_WINDOW_HANDLE);
constexpr Failure kNoMemory = FailsWithZero(ERROR_NOT_ENOUGH_MEMORY);
constexpr Failure kNoControl = FailsWithZero(ERROR_CONTROL_ID_NOT_FOUND);
constexpr Failure kNoContext = FailsWithZero(ERROR_INVALID_HANDLE);
constexpr Failure kNoResource = FailsWithZero(ERROR_RESOURCE_NAME_NOT_FOUND);

const FunctionRow kRows[] = {
    {"user32.dll", KD_REAL(CreateWindowExW), kNoMemory, Returns(HandleKind::Window)},
    {"user32.dll", KD_REAL(DestroyWindow), kNoWindow, ClosesIfKnown(HandleKind::Window)},
    {"user32.dll", KD_REAL(GetDlgItem), kNoControl},
    {"user32.dll", KD_REAL(GetDlgItemTextW), kNoControl},
    {"user32.dll", KD_REAL(SetDlgItemInt), kNoControl},
    {"user32.dll", KD_REAL(CheckDlgButton), kNoControl},
    {"user32.dll", KD_REAL(GetNextDlgTabItem), kNoControl},
    {"user32.dll", KD_REAL(SetWindowTextW), kNoWindow},
    {"user32.dll", KD_REAL(GetWindowTextW), kNoWindow},
    {"user32.dll", KD_REAL(GetWindowTextLengthW), kNoWindow},
    {"user32.dll", KD_REAL(SetDlgItemTextW), kNoControl},
    {"user32.dll", KD_REAL(SetWindowLongPtrW), kNoWindow},
    {"user32.dll", KD_REAL(GetClassNameW), kNoWindow},
    {"user32.dll", KD_REAL(GetClientRect), kNoWindow},
    {"user32.dll", KD_REAL(GetDlgCtrlID), kNoWindow},
    {"user32.dll", KD_REAL(LoadStringW), kNoResource},
    {"user32.dll", KD_REAL(LoadCursorW), kNoResource},
    {"user32.dll", KD_REAL(SetTimer), kNoMemory},
    {"user32.dll", KD_REAL(KillTimer), CannotFail()},
    {"user32.dll", KD_REAL(EnableWindow), CannotFail()},
    {"user32.dll", KD_REAL(ShowWindow), CannotFail()},
    {"user32.dll", KD_REAL(GetDC), kNoMemory, Returns(HandleKind::Gdi)},
    {"user32.dll", KD_REAL(ReleaseDC), FailsWithZero(0), Closes(HandleKind::Gdi, 1)},
    {"user32.dll", KD_REAL(FillRect), kNoContext},
    {"user32.dll", KD_REAL(DrawTextW), kNoContext},
    {"user32.dll", KD_REAL(SendMessageW), CannotFail()},
    {"user32.dll", KD_REAL(SendDlgItemMessageW), CannotFail()},
    {"user32.dll", KD_REAL(EnumChildWindows), CannotFail()},
    {"gdi32.dll", KD_REAL(CreateSolidBrush), kNoMemory, Returns(HandleKind::Gdi)},
    {"gdi32.dll", KD_REAL(CreateFontIndirectW), kNoMemory, Returns(HandleKind::Gdi)},
    {"gdi32.dll", KD_REAL(DeleteObject), CannotFail(), ClosesIfKnown(HandleKind::Gdi)},
    {"gdi32.dll", KD_REAL(GetObjectW), kNoContext},
    {"gdi32.dll", KD_REAL(GetStockObject), kNoContext},
    {"comctl32.dll", KD_REAL(CreatePropertySheetPageW), kNoMemory},
    {"comctl32.dll", KD_REAL(DestroyPropertySheetPage), CannotFail()},
    {"comctl32.dll", KD_REAL(PropertySheetW), FailsWithMinusOne(ERROR_NOT_ENOUGH_MEMORY)},
};

}  // namespace

const std::span<const FunctionRow> kWindowRows = kRows;

}  // namespace workbench
