#include "workbench/demo/tree_window.h"

#include <shellapi.h>

#include <stdexcept>
#include <utility>
#include <vector>

#include "base/resource_ids.h"
#include "workbench/demo/report.h"
#include "workbench/rig/page_controls.h"
#include "workbench/rig/page_sheet.h"

namespace workbench {
namespace {

constexpr wchar_t kClass[] = L"WorkbenchDeviceTree";
constexpr wchar_t kHint[] = L"Double-click a port, or press Enter, to open its properties.";
constexpr UINT kOpenSelected = WM_APP;

// Pictures of the tree, in the order of its image list.
enum Image { kComputerImage, kDeviceImage, kPortImage };

int Scaled(int pixels) {
  const HDC screen = GetDC(nullptr);
  const int scaled = MulDiv(pixels, GetDeviceCaps(screen, LOGPIXELSX), 96);
  ReleaseDC(nullptr, screen);
  return scaled;
}

HFONT MessageFont() {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  return CreateFontIndirectW(&metrics.lfMessageFont);
}

void AddImage(HIMAGELIST images, HICON icon) {
  ImageList_AddIcon(images, icon);
  DestroyIcon(icon);
}

HICON ShellIcon(UINT index) {
  HICON icon = nullptr;
  ExtractIconExW(L"shell32.dll", static_cast<int>(index), nullptr, &icon, 1);
  return icon;
}

}  // namespace

TreeWindow::TreeWindow(Rig& rig) : rig_(rig), font_(MessageFont()) {
  MakeWindow();
  MakeControls();
  MakeImages();
  Fill();
  SetStatus(kHint);
  Layout();
  CenterOnScreen(window_);
  ShowWindow(window_, SW_SHOW);
  SetFocus(tree_);
}

TreeWindow::~TreeWindow() {
  if (window_) DestroyWindow(window_);
}

void TreeWindow::MakeWindow() {
  WNDCLASSW description{};
  description.lpfnWndProc = &TreeWindow::Procedure;
  description.hInstance = GetModuleHandleW(nullptr);
  description.lpszClassName = kClass;
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.hIcon = LoadIconW(rig_.dll->Module(), MAKEINTRESOURCEW(IDI_PRODUCT));
  description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  RegisterClassW(&description);  // fails when an earlier window has done so
  CreateWindowExW(0, kClass, L"Device Manager (simulated host)", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                  CW_USEDEFAULT, Scaled(440), Scaled(320), nullptr, nullptr, description.hInstance, this);
  if (!window_) throw std::runtime_error("The device tree's window does not open");
}

void TreeWindow::MakeControls() {
  const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_TREEVIEW_CLASSES | ICC_BAR_CLASSES};
  InitCommonControlsEx(&classes);
  constexpr DWORD kTreeStyle = WS_CHILD | WS_VISIBLE | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES |
                               TVS_LINESATROOT | TVS_SHOWSELALWAYS;
  tree_ = CreateWindowExW(WS_EX_CLIENTEDGE, WC_TREEVIEWW, L"Devices", kTreeStyle, 0, 0, 0, 0, window_,
                          nullptr, nullptr, nullptr);
  status_ = CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0,
                            window_, nullptr, nullptr, nullptr);
  if (!tree_ || !status_) throw std::runtime_error("The device tree's controls cannot be made");
  for (const HWND control : {tree_, status_}) {
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_.Get()), FALSE);
  }
}

void TreeWindow::MakeImages() {
  constexpr UINT kShellComputer = 15;
  constexpr UINT kShellNetworkDrive = 9;
  const int width = GetSystemMetrics(SM_CXSMICON);
  const int height = GetSystemMetrics(SM_CYSMICON);
  images_.Reset(ImageList_Create(width, height, ILC_COLOR32 | ILC_MASK, 3, 0));
  AddImage(images_.Get(), ShellIcon(kShellComputer));
  AddImage(images_.Get(), ShellIcon(kShellNetworkDrive));
  AddImage(images_.Get(), static_cast<HICON>(LoadImageW(rig_.dll->Module(), MAKEINTRESOURCEW(IDI_PRODUCT),
                                                        IMAGE_ICON, width, height, LR_DEFAULTCOLOR)));
  TreeView_SetImageList(tree_, images_.Get(), TVSIL_NORMAL);
}

void TreeWindow::Layout() {
  RECT client{};
  RECT line{};
  SendMessageW(status_, WM_SIZE, 0, 0);  // it puts itself at the bottom
  GetClientRect(window_, &client);
  GetWindowRect(status_, &line);
  MoveWindow(tree_, 0, 0, client.right, client.bottom - (line.bottom - line.top), TRUE);
}

// The computer on top, and each device below its parent.
void TreeWindow::Fill() {
  SendMessageW(tree_, WM_SETREDRAW, FALSE, 0);
  TreeView_DeleteAllItems(tree_);
  std::vector<HTREEITEM> path;
  const auto add = [&](const std::wstring& name, Device* device, Image image) {
    TVINSERTSTRUCTW item{};
    item.hParent = path.empty() ? TVI_ROOT : path.back();
    item.hInsertAfter = TVI_LAST;
    item.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_STATE | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    item.item.pszText = const_cast<wchar_t*>(name.c_str());
    item.item.lParam = reinterpret_cast<LPARAM>(device);
    item.item.state = item.item.stateMask = TVIS_EXPANDED;
    item.item.iImage = item.item.iSelectedImage = image;
    path.push_back(reinterpret_cast<HTREEITEM>(
        SendMessageW(tree_, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item))));
  };
  add(kComputer, nullptr, kComputerImage);
  for (const ListedDevice& listed : ListDevices(rig_.machine)) {
    path.resize(listed.depth + 1);
    add(listed.name, listed.device, listed.device->port ? kPortImage : kDeviceImage);
  }
  SendMessageW(tree_, WM_SETREDRAW, TRUE, 0);
}

void TreeWindow::Select(const Device& device) {
  for (HTREEITEM item = TreeView_GetRoot(tree_); item; item = TreeView_GetNextVisible(tree_, item)) {
    TVITEMW asked{};
    asked.mask = TVIF_PARAM | TVIF_HANDLE;
    asked.hItem = item;
    SendMessageW(tree_, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&asked));
    if (asked.lParam == reinterpret_cast<LPARAM>(&device)) TreeView_SelectItem(tree_, item);
  }
}

Device* TreeWindow::SelectedDevice() const {
  TVITEMW asked{};
  asked.mask = TVIF_PARAM | TVIF_HANDLE;
  asked.hItem = TreeView_GetSelection(tree_);
  if (!asked.hItem || !SendMessageW(tree_, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&asked))) return nullptr;
  return reinterpret_cast<Device*>(asked.lParam);
}

std::wstring TreeWindow::Status() const {
  wchar_t text[256] = L"";
  SendMessageW(status_, SB_GETTEXTW, 0, reinterpret_cast<LPARAM>(text));
  return text;
}

void TreeWindow::SetStatus(const std::wstring& text) {
  SendMessageW(status_, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

void TreeWindow::RunUntilClosed() {
  MSG message;
  while (window_ && GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

LRESULT CALLBACK TreeWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    auto* self = static_cast<TreeWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    self->window_ = window;
  }
  auto* self = reinterpret_cast<TreeWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  return self && self->window_ ? self->Handle(message, wParam, lParam)
                               : DefWindowProcW(window, message, wParam, lParam);
}

LRESULT TreeWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SIZE:
      if (status_) Layout();
      return 0;
    case WM_SETFOCUS:
      SetFocus(tree_);
      return 0;
    case WM_NOTIFY:
      return OnNotify(*reinterpret_cast<const NMHDR*>(lParam));
    case kOpenSelected:
      OpenSelected();
      return 0;
    case WM_NCDESTROY: {
      const HWND window = std::exchange(window_, nullptr);
      return DefWindowProcW(window, message, wParam, lParam);
    }
    default:
      return DefWindowProcW(window_, message, wParam, lParam);
  }
}

// The sheet opens when the tree is done with its own message.
LRESULT TreeWindow::OnNotify(const NMHDR& notification) {
  if (notification.hwndFrom != tree_) return 0;
  if (notification.code == NM_RETURN || notification.code == NM_DBLCLK)
    PostMessageW(window_, kOpenSelected, 0, 0);
  return 0;
}

void TreeWindow::OpenSelected() {
  Device* const device = SelectedDevice();
  if (!device) return;
  opening(*device);
  try {
    const std::wstring caption = CaptionOf(rig_.machine, *device);
    PageSheet sheet(rig_, *device, {.caption = caption.c_str(), .owner = window_});
    sheet.RunUntilClosed();
  } catch (const std::runtime_error&) {
    SetStatus(L"This device has no settings page of this product.");
    return;
  }
  closed(*device);
  Fill();
  Select(*device);
  SetStatus(kHint);
}

}  // namespace workbench
