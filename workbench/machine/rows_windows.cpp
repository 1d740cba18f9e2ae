// Real functions of user32, gdi32 and comctl32.
#include <windows.h>

#include <commctrl.h>
#include <prsht.h>

#include "workbench/machine/hooks.h"

namespace workbench {
namespace {

constexpr Failure kNoWindow = FailsWithZero(ERROR_INVALID_WINDOW_HANDLE);
constexpr Failure kNoMemory = FailsWithZero(ERROR_NOT_ENOUGH_MEMORY);
constexpr Failure kNoResource = FailsWithZero(ERROR_RESOURCE_NAME_NOT_FOUND);

const FunctionRow kRows[] = {
    {"user32.dll", KD_REAL(CreateWindowExW), kNoMemory, Returns(HandleKind::Window)},
    {"user32.dll", KD_REAL(DestroyWindow), kNoWindow, ClosesIfKnown(HandleKind::Window)},
    {"user32.dll", KD_REAL(CreateDialogParamW), kNoMemory, Returns(HandleKind::Window)},
    {"user32.dll", KD_REAL(DialogBoxParamW), FailsWithMinusOne(ERROR_NOT_ENOUGH_MEMORY)},
    {"user32.dll", KD_REAL(GetDlgItem), FailsWithZero(ERROR_CONTROL_ID_NOT_FOUND)},
    {"user32.dll", KD_REAL(SetWindowTextW), kNoWindow},
    {"user32.dll", KD_REAL(GetWindowTextW), CannotFail()},
    {"user32.dll", KD_REAL(SetDlgItemTextW), kNoWindow},
    {"user32.dll", KD_REAL(LoadStringW), kNoResource},
    {"user32.dll", KD_REAL(LoadCursorW), kNoResource},
    {"user32.dll", KD_REAL(LoadIconW), kNoResource},
    {"user32.dll", KD_REAL(LoadBitmapW), kNoResource, Returns(HandleKind::Gdi)},
    {"user32.dll", KD_REAL(SetTimer), kNoMemory},
    {"user32.dll", KD_REAL(KillTimer), CannotFail()},
    {"user32.dll", KD_REAL(EnableWindow), CannotFail()},
    {"user32.dll", KD_REAL(ShowWindow), CannotFail()},
    {"user32.dll", KD_REAL(GetDC), kNoMemory},
    {"user32.dll", KD_REAL(SendMessageW), CannotFail()},
    {"user32.dll", KD_REAL(SendDlgItemMessageW), CannotFail()},
    {"user32.dll", KD_REAL(EnumChildWindows), CannotFail()},
    {"gdi32.dll", KD_REAL(CreateSolidBrush), kNoMemory, Returns(HandleKind::Gdi)},
    {"gdi32.dll", KD_REAL(CreateFontIndirectW), kNoMemory, Returns(HandleKind::Gdi)},
    {"gdi32.dll", KD_REAL(DeleteObject), CannotFail(), ClosesIfKnown(HandleKind::Gdi)},
    {"comctl32.dll", KD_REAL(CreatePropertySheetPageW), kNoMemory},
    {"comctl32.dll", KD_REAL(PropertySheetW), FailsWithMinusOne(ERROR_NOT_ENOUGH_MEMORY)},
};

}  // namespace

std::span<const FunctionRow> WindowRows() {
  return kRows;
}

}  // namespace workbench
