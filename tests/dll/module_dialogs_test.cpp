// The dialog templates: the controls that the pages address, and whether people can read and reach them.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cwchar>
#include <map>
#include <string>
#include <vector>

#include "base/resource_ids.h"

namespace {

struct Page {
  WORD id;
  std::vector<int> controls;
  std::vector<int> tabOrder;
};

const Page kPages[] = {
    {IDD_PORT_PAGE,
     {205, 211, 222, 223, 224, 225, 226, 227, 228, 229, 230, 231, 242, 246,
      247, 248, 294, 295, 296, 297, 298, 299, 300, 301, 302, 840, 841, 892},
     {841, 211, 205, 246, 840, 892}},
    {IDD_DEVICE_PAGE,
     {200, 220, 235, 246, 247, 249, 250, 251, 252, 253, 254, 255, 256, 257, 258, 290, 9000},
     {200, 9000, 290, 246}},
    {IDD_ABOUT_PAGE, {1035}, {1035}},
    {IDD_RS422485_PAGE, {220, 246, 247, 249, 259, 271, 892}, {259, 246, 892}},
    {IDD_TCPIP_PAGE, {237, 239, 240, 246, 247, 283, 288, 289, 892}, {237, 239, 288, 246, 892}},
};

// Mnemonics of labels and the control that gets the focus.
struct Mnemonic {
  WORD dialog;
  wchar_t letter;
  int control;
};
// Not "c" and "d" of the port page's labels: a button has each of them as well, and they go round.
const Mnemonic kMnemonics[] = {
    {IDD_PORT_PAGE, L'h', 246},  {IDD_DEVICE_PAGE, L'h', 246}, {IDD_RS422485_PAGE, L'h', 246},
    {IDD_TCPIP_PAGE, L't', 237}, {IDD_TCPIP_PAGE, L'h', 246},
};

// Labels and the control that each one's mnemonic and a screen reader's name belong to.
struct LabelOf {
  WORD dialog;
  int label;
  int control;
};
const LabelOf kLabels[] = {
    {IDD_PORT_PAGE, 229, 294},     {IDD_PORT_PAGE, 230, 295},   {IDD_PORT_PAGE, 222, 296},
    {IDD_PORT_PAGE, 223, 297},     {IDD_PORT_PAGE, 224, 298},   {IDD_PORT_PAGE, 225, 299},
    {IDD_PORT_PAGE, 226, 300},     {IDD_PORT_PAGE, 231, 301},   {IDD_PORT_PAGE, 227, 211},
    {IDD_PORT_PAGE, 228, 205},     {IDD_PORT_PAGE, 247, 246},   {IDD_DEVICE_PAGE, 220, 200},
    {IDD_DEVICE_PAGE, 251, 258},   {IDD_DEVICE_PAGE, 252, 257}, {IDD_DEVICE_PAGE, 253, 256},
    {IDD_DEVICE_PAGE, 254, 255},   {IDD_DEVICE_PAGE, 247, 246}, {IDD_RS422485_PAGE, 220, 259},
    {IDD_RS422485_PAGE, 247, 246}, {IDD_TCPIP_PAGE, 247, 246},
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
    module_ = LoadLibraryW(L"KdUUI10.DLL");
    ASSERT_NE(module_, nullptr) << "error " << GetLastError();
    parent_ = CreateWindowW(L"Static", L"", WS_OVERLAPPEDWINDOW, 0, 0, 800, 800, nullptr, nullptr, nullptr,
                            nullptr);
    OpenWithFont(kFontSize);
  }
  void TearDown() override {
    if (parent_ != nullptr) DestroyWindow(parent_);
    if (module_ != nullptr) FreeLibrary(module_);
  }

  // Opens the dialog with its font in another size, in points.
  void OpenWithFont(WORD points) {
    if (dialog_ != nullptr) DestroyWindow(dialog_);
    const HRSRC resource = FindResourceW(module_, MAKEINTRESOURCEW(GetParam().id), RT_DIALOG);
    const auto* const bytes = static_cast<const char*>(LockResource(LoadResource(module_, resource)));
    std::vector<char> form(bytes, bytes + SizeofResource(module_, resource));
    // An extended template's fixed part, no menu, no class, the title; then the size of the font.
    constexpr std::size_t kTitle = 26 + 2 * sizeof(WORD);
    auto* const title = reinterpret_cast<wchar_t*>(form.data() + kTitle);
    title[std::wcslen(title) + 1] = points;
    dialog_ = CreateDialogIndirectParamW(module_, reinterpret_cast<const DLGTEMPLATE*>(form.data()), parent_,
                                         &NoMessages, 0);
    ASSERT_NE(dialog_, nullptr) << "dialog " << GetParam().id << ", error " << GetLastError();
  }
  // Pixels of a control's width that its text cannot have: the box of a check box, the edges of a button.
  static LONG FrameOf(HWND child) {
    if (ClassOf(child) != L"Button") return 0;
    const LONG kind = GetWindowLongW(child, GWL_STYLE) & BS_TYPEMASK;
    return kind == BS_AUTOCHECKBOX ? 18 : 12;  // at 96 DPI, with room to spare
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

  void ExpectTextsFit(WORD points);

  static constexpr WORD kFontSize = 8;  // the templates' own, in points
  HMODULE module_ = nullptr;
  HWND parent_ = nullptr;
  HWND dialog_ = nullptr;
};

TEST_P(ModuleDialogs, HasTheControlsThatThePageAddresses) {
  for (const int id : GetParam().controls) EXPECT_NE(GetDlgItem(dialog_, id), nullptr) << "control " << id;
}

TEST_P(ModuleDialogs, FitsAStandardPage) {
  RECT standard = {0, 0, 252, 218};
  MapDialogRect(dialog_, &standard);
  RECT own;
  GetClientRect(dialog_, &own);
  EXPECT_LE(own.right, standard.right);
  EXPECT_LE(own.bottom, standard.bottom);
  for (const HWND child : Children()) {
    const RECT place = PlaceOf(child);
    EXPECT_TRUE(place.left >= 0 && place.top >= 0 && place.right <= own.right && place.bottom <= own.bottom)
        << "control " << GetDlgCtrlID(child);
  }
}

TEST_P(ModuleDialogs, ControlsDoNotOverlap) {
  const std::vector<HWND> children = Children();
  for (std::size_t first = 0; first < children.size(); ++first) {
    for (std::size_t second = first + 1; second < children.size(); ++second) {
      const HWND pair[] = {children[first], children[second]};
      bool frame = false;
      for (const HWND child : pair) {
        const bool group =
            ClassOf(child) == L"Button" && (GetWindowLongW(child, GWL_STYLE) & 0xF) == BS_GROUPBOX;
        if (group || !(GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE)) frame = true;
      }
      if (frame) continue;
      const RECT one = PlaceOf(pair[0]);
      const RECT other = PlaceOf(pair[1]);
      RECT common;
      EXPECT_FALSE(IntersectRect(&common, &one, &other))
          << "controls " << GetDlgCtrlID(pair[0]) << " and " << GetDlgCtrlID(pair[1]);
    }
  }
}

// Dialog units follow the font: 8 points at 120, 144 and 192 DPI are 10, 12 and 16 at 96. The others are what
// users set who like it larger.
TEST_P(ModuleDialogs, NoTextIsCutOff) {
  for (const WORD points : std::initializer_list<WORD>{8, 9, 10, 11, 12, 14, 16}) {
    SCOPED_TRACE(std::to_string(points) + " points");
    OpenWithFont(points);
    ExpectTextsFit(points);
  }
}

void ModuleDialogs::ExpectTextsFit(WORD points) {
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
    if (text.empty()) continue;
    const RECT place = PlaceOf(child);
    const LONG room = place.right - place.left - FrameOf(child) * points / kFontSize;
    // What DrawText needs for the text, wrapped at the control's width.
    RECT needed = {0, 0, room, 0};
    DrawTextW(context, text.c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK);
    EXPECT_LE(needed.right, room) << "control " << GetDlgCtrlID(child) << ": " << text;
    EXPECT_LE(needed.bottom, place.bottom - place.top) << "control " << GetDlgCtrlID(child) << ": " << text;
  }
  ReleaseDC(dialog_, context);
}

TEST_P(ModuleDialogs, LabelsStandBeforeTheirControl) {
  for (const LabelOf& row : kLabels) {
    if (row.dialog != GetParam().id) continue;
    const HWND label = GetDlgItem(dialog_, row.label);
    EXPECT_EQ(GetWindow(label, GW_HWNDNEXT), GetDlgItem(dialog_, row.control)) << "label " << row.label;
  }
}

// With Tab alone, from the first control to the last one and back to the first.
TEST_P(ModuleDialogs, TheKeyboardReachesEveryControlInOrder) {
  HWND control = nullptr;
  for (const int id : GetParam().tabOrder) {
    control = GetNextDlgTabItem(dialog_, control, FALSE);
    EXPECT_EQ(GetDlgCtrlID(control), id);
  }
  control = GetNextDlgTabItem(dialog_, control, FALSE);
  EXPECT_EQ(GetDlgCtrlID(control), GetParam().tabOrder.front());
}

TEST_P(ModuleDialogs, MnemonicsLandOnTheControlThatTheyName) {
  EnableWindow(dialog_, TRUE);
  for (const HWND window : {parent_, dialog_}) ShowWindow(window, SW_SHOW);
  for (const Mnemonic& row : kMnemonics) {
    if (row.dialog != GetParam().id) continue;
    SetFocus(GetDlgItem(dialog_, GetParam().tabOrder.front()));
    MSG message{};
    message.hwnd = GetFocus();
    message.message = WM_SYSCHAR;
    message.wParam = row.letter;
    EXPECT_TRUE(IsDialogMessageW(dialog_, &message));
    EXPECT_EQ(GetDlgCtrlID(GetFocus()), row.control) << static_cast<char>(row.letter);
  }
}

// A static control without the style never sees the mouse, and its tip never shows.
TEST_P(ModuleDialogs, LabelsWithATipNoticeTheMouse) {
  if (GetParam().id != IDD_PORT_PAGE) return;  // the only one with tips on labels
  for (const int id : {222, 223, 224, 225, 226, 246, 297, 298, 299, 300}) {
    EXPECT_TRUE(GetWindowLongW(GetDlgItem(dialog_, id), GWL_STYLE) & SS_NOTIFY) << "control " << id;
  }
}

INSTANTIATE_TEST_SUITE_P(Pages, ModuleDialogs, testing::ValuesIn(kPages),
                         [](const auto& page) { return "Dialog" + std::to_string(page.param.id); });

}  // namespace
