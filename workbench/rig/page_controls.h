// Windows, pages and their controls, read and worked as a person does.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace workbench {

[[nodiscard]] bool IsOfClass(HWND window, const wchar_t* name);
[[nodiscard]] std::wstring TextOf(HWND window);
[[nodiscard]] std::wstring TextOf(HWND page, int control);
void Enter(HWND page, int control, const std::wstring& text);

[[nodiscard]] bool IsChecked(HWND page, int box);
// Whether a control has the style of a visible one. Its page may lie behind another one.
[[nodiscard]] bool IsShown(HWND page, int control);
// Presses a button; anything else gets the mouse button down and up near its corner. A disabled control takes
// none.
void Click(HWND page, int control);

// The entries of a combo box, and its selected one: "" when there is none.
[[nodiscard]] std::vector<std::wstring> EntriesOf(HWND page, int combo);
[[nodiscard]] std::wstring SelectedOf(HWND page, int combo);
// Chooses the entry with this text. Throws std::invalid_argument when there is none.
void Select(HWND page, int combo, const std::wstring& entry);

// The tip that a page gives for a control, or for itself; "" when it has none.
[[nodiscard]] std::wstring TipOf(HWND page, HWND tool);
// What F1 on a control sends.
void AskForHelp(HWND page, int control, int contextType = HELPINFO_WINDOW);

// Lets the calling thread handle its messages until there are none or `milliseconds` have passed.
void PumpMessages(DWORD milliseconds = 0);
// Handles the messages that the thread has waiting and paints the window.
void PaintNow(HWND window);
void CenterOnScreen(HWND window);

}  // namespace workbench
