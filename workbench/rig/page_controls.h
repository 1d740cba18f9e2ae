// Controls of a page, read and worked as a person does.
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
// Presses a button; anything else gets the mouse button down and up near its corner.
void Click(HWND page, int control);

// The entries of a combo box, and its selected one: "" when there is none.
[[nodiscard]] std::vector<std::wstring> EntriesOf(HWND page, int combo);
[[nodiscard]] std::wstring SelectedOf(HWND page, int combo);
// Chooses the entry with this text. Throws std::invalid_argument when there is none.
void Select(HWND page, int combo, const std::wstring& entry);

}  // namespace workbench
