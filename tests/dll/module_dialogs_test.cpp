// The dialog templates: the controls that the pages address, and whether people can read and reach them.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "base/resource_ids.h"
#include "workbench/machine/dll.h"

namespace {

struct Page {
  WORD id;
  std::vector<int> tabOrder;
  // Mnemonics and the control that gets the focus. Not "c" and "d" of the port page's labels: a button has
  // each of them as well, and they go round.
  std::map<wchar_t, int> mnemonics{};
  std::vector<int> tips{};  // static controls with one
  // Check boxes of which the label shows the text, and Windows takes the accessible name from their own.
  std::map<int, const wchar_t*> hiddenTexts{};
};

const Page kPages[] = {
    {.id = IDD_PORT_PAGE,
     .tabOrder = {841, 211, 205, 246, 840, 892},
     .mnemonics = {{L'h', 246}},
     .tips = {222, 223, 224, 225, 226, 246, 297, 298, 299, 300},
     .hiddenTexts = {{211, L"CTS Always True - hardware state ignored"},
                     {205, L"DSR Always True - hardware state ignored"}}},
    {.id = IDD_DEVICE_PAGE, .tabOrder = {200, 9000, 290, 246}, .mnemonics = {{L'h', 246}}},
    {.id = IDD_ABOUT_PAGE, .tabOrder = {1035}},
    {.id = IDD_RS422485_PAGE, .tabOrder = {259, 246, 892}, .mnemonics = {{L'h', 246}}},
    {.id = IDD_TCPIP_PAGE, .tabOrder = {237, 239, 288, 246, 892}, .mnemonics = {{L't', 237}, {L'h', 246}}},
};

// The widest text that a value shows, where the template's own is not the widest.
const std::map<std::pair<WORD, int>, const wchar_t*> kWidest = {
    {{IDD_PORT_PAGE, 294}, L"Connected"},
    {{IDD_PORT_PAGE, 295}, L"RS232/422/485"},
    {{IDD_PORT_PAGE, 296}, L"921600"},
    {{IDD_PORT_PAGE, 300}, L"DTR/DSR"},
    {{IDD_PORT_PAGE, 301}, L"RS485 half-duplex autogating mode"},
};

INT_PTR CALLBACK NoMessages(HWND, UINT, WPARAM, LPARAM) {
  return FALSE;
}

class ModuleDialogs : public testing::TestWithParam<Page> {
 protected:
  void SetUp() override {
    const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_INTERNET_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
    wchar_t wanted[8];
    if (GetEnvironmentVariableW(L"KDUUI_DPI", wanted, ARRAYSIZE(wanted)) != 0) {
      ASSERT_EQ(Dpi(), _wtoi(wanted)) << "the session's resolution does not come through";
    }
    parent_ = CreateWindowW(L"Static", L"", WS_OVERLAPPEDWINDOW, 0, 0, 800, 800, nullptr, nullptr, nullptr,
                            nullptr);
    dialog_ = CreateDialogParamW(dll_.Module(), MAKEINTRESOURCEW(GetParam().id), parent_, &NoMessages, 0);
    ASSERT_NE(dialog_, nullptr) << "dialog " << GetParam().id << ", error " << GetLastError();
  }
  void TearDown() override {
    if (parent_ != nullptr) DestroyWindow(parent_);
  }

  static int Dpi() {
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return dpi;
  }
  // Pixels of a control's width that its text cannot have: the box of a check box, the edges of a button.
  static LONG FrameOf(HWND child) {
    if (ClassOf(child) != L"Button") return 0;
    const LONG kind = GetWindowLongW(child, GWL_STYLE) & BS_TYPEMASK;
    return (kind == BS_AUTOCHECKBOX ? 18 : 12) * Dpi() / 96;  // with room to spare
  }

  std::vector<HWND> Children() const {
    std::vector<HWND> children;
    for (HWND child = GetWindow(dialog_, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
      children.push_back(child);
    }
    return children;
  }
  RECT PlaceOf(HWND child) const {
    RECT place;
    GetWindowRect(child, &place);
    MapWindowPoints(nullptr, dialog_, reinterpret_cast<POINT*>(&place), 2);
    return place;
  }
  static std::wstring ClassOf(HWND window) {
    wchar_t name[64];
    GetClassNameW(window, name, ARRAYSIZE(name));
    return name;
  }
  static std::wstring TextOf(HWND window) {
    wchar_t text[256];
    GetWindowTextW(window, text, ARRAYSIZE(text));
    return text;
  }

  workbench::Machine machine_;
  workbench::Dll dll_{machine_};
  HWND parent_ = nullptr;
  HWND dialog_ = nullptr;
};

// A static control without the style never sees the mouse, and its tip never shows.
TEST_P(ModuleDialogs, StaticControlsWithATipSeeTheMouseAndBoxesHaveNames) {
  for (const int id : GetParam().tips) {
    EXPECT_TRUE(GetWindowLongW(GetDlgItem(dialog_, id), GWL_STYLE) & SS_NOTIFY) << "control " << id;
  }
  for (const auto& [id, text] : GetParam().hiddenTexts) EXPECT_EQ(TextOf(GetDlgItem(dialog_, id)), text);
}

TEST_P(ModuleDialogs, ControlsLieApartInsideAStandardPage) {
  RECT standard = {0, 0, 252, 218};
  MapDialogRect(dialog_, &standard);
  std::vector<HWND> others;  // that came before, except frames
  for (const HWND child : Children()) {
    const RECT place = PlaceOf(child);
    EXPECT_TRUE(place.left >= 0 && place.top >= 0 && place.right <= standard.right &&
                place.bottom <= standard.bottom)
        << "control " << GetDlgCtrlID(child);
    const LONG style = GetWindowLongW(child, GWL_STYLE);
    const bool group = ClassOf(child) == L"Button" && (style & BS_TYPEMASK) == BS_GROUPBOX;
    if (group || !(style & WS_VISIBLE)) continue;
    for (const HWND other : others) {
      const RECT taken = PlaceOf(other);
      RECT common;
      EXPECT_FALSE(IntersectRect(&common, &place, &taken))
          << "controls " << GetDlgCtrlID(other) << " and " << GetDlgCtrlID(child);
    }
    others.push_back(child);
  }
}

TEST_P(ModuleDialogs, NoTextIsCutOff) {
  const HDC context = GetDC(dialog_);
  SelectObject(context, reinterpret_cast<HGDIOBJ>(SendMessageW(dialog_, WM_GETFONT, 0, 0)));
  for (const HWND child : Children()) {
    const bool isStatic = ClassOf(child) == L"Static";
    if (!isStatic && ClassOf(child) != L"Button") continue;
    // The text of a picture is the number of its resource.
    const LONG kind = GetWindowLongW(child, GWL_STYLE) & SS_TYPEMASK;
    if (isStatic && (kind == SS_BITMAP || kind == SS_ICON)) continue;
    const auto widest = kWidest.find({GetParam().id, GetDlgCtrlID(child)});
    const std::wstring text = widest != kWidest.end() ? widest->second : TextOf(child);
    if (text.empty() || GetParam().hiddenTexts.contains(GetDlgCtrlID(child))) continue;
    const RECT place = PlaceOf(child);
    const LONG room = place.right - place.left - FrameOf(child);
    // What DrawText needs for the text, wrapped at the control's width.
    RECT needed = {0, 0, room, 0};
    DrawTextW(context, text.c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK);
    EXPECT_LE(needed.right, room) << "control " << GetDlgCtrlID(child) << ": " << text;
    EXPECT_LE(needed.bottom, place.bottom - place.top) << "control " << GetDlgCtrlID(child) << ": " << text;
  }
  ReleaseDC(dialog_, context);
}

// With Tab alone, from the first control to the last one and back to the first; a mnemonic goes to the
// control that it names.
TEST_P(ModuleDialogs, TheKeyboardReachesEveryControlInOrder) {
  HWND control = nullptr;
  for (const int id : GetParam().tabOrder) {
    control = GetNextDlgTabItem(dialog_, control, FALSE);
    EXPECT_EQ(GetDlgCtrlID(control), id);
  }
  control = GetNextDlgTabItem(dialog_, control, FALSE);
  EXPECT_EQ(GetDlgCtrlID(control), GetParam().tabOrder.front());

  EnableWindow(dialog_, TRUE);
  for (const HWND window : {parent_, dialog_}) ShowWindow(window, SW_SHOW);
  for (const auto& [letter, named] : GetParam().mnemonics) {
    SetFocus(GetDlgItem(dialog_, GetParam().tabOrder.front()));
    MSG message{};
    message.hwnd = GetFocus();
    message.message = WM_SYSCHAR;
    message.wParam = letter;
    EXPECT_TRUE(IsDialogMessageW(dialog_, &message));
    EXPECT_EQ(GetDlgCtrlID(GetFocus()), named) << static_cast<char>(letter);
  }
}

INSTANTIATE_TEST_SUITE_P(Pages, ModuleDialogs, testing::ValuesIn(kPages),
                         [](const auto& page) { return "Dialog" + std::to_string(page.param.id); });

}  // namespace
