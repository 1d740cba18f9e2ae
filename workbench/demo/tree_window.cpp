#include "workbench/demo/tree_window.h"

#include <shellapi.h>

#include <stdexcept>
#include <vector>

#include "base/resource_ids.h"
#include "workbench/demo/report.h"
#include "workbench/demo/tree_ids.h"
#include "workbench/rig/page_controls.h"
#include "workbench/rig/page_sheet.h"

namespace workbench {
namespace {

constexpr wchar_t kHint[] = L"Double-click a port, or press Enter, to open its properties.";
constexpr UINT kOpenSelected = WM_APP;

// Pictures of the tree, in the order of its image list.
enum Image { kComputerImage, kDeviceImage, kPortImage };

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

TreeWindow::TreeWindow(Rig& rig) : rig_(rig) {
  const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_TREEVIEW_CLASSES};
  InitCommonControlsEx(&classes);
  CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_DEVICE_TREE), nullptr,
                     &TreeWindow::Procedure, reinterpret_cast<LPARAM>(this));
  if (!window_) throw std::runtime_error("The device tree's window does not open");
  tree_ = GetDlgItem(window_, IDC_DEVICE_TREE);
  SendMessageW(window_, WM_SETICON, ICON_SMALL,
               reinterpret_cast<LPARAM>(LoadIconW(rig_.dll->Module(), MAKEINTRESOURCEW(IDI_PRODUCT))));
  MakeImages();
  Fill();
  SetStatus(kHint);
  ShowWindow(window_, SW_SHOW);
  SetFocus(tree_);
}

TreeWindow::~TreeWindow() {
  if (window_) DestroyWindow(window_);
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
    if (DeviceOf(item) == &device) TreeView_SelectItem(tree_, item);
  }
}

Device* TreeWindow::DeviceOf(HTREEITEM item) const {
  TVITEMW asked{};
  asked.mask = TVIF_PARAM | TVIF_HANDLE;
  asked.hItem = item;
  SendMessageW(tree_, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&asked));
  return reinterpret_cast<Device*>(asked.lParam);
}

void TreeWindow::SetStatus(const wchar_t* text) {
  SetDlgItemTextW(window_, IDC_STATUS_LINE, text);
}

// Not through IsDialogMessage, for which Enter is a button.
void TreeWindow::RunUntilClosed() {
  MSG message;
  while (window_ && GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

INT_PTR CALLBACK TreeWindow::Procedure(HWND window, UINT message, WPARAM, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, GWLP_USERDATA, lParam);
    reinterpret_cast<TreeWindow*>(lParam)->window_ = window;
    return FALSE;  // the focus is set when the tree is filled
  }
  auto* self = reinterpret_cast<TreeWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  return self && self->Handle(message, lParam) ? TRUE : FALSE;
}

bool TreeWindow::Handle(UINT message, LPARAM lParam) {
  switch (message) {
    case WM_NOTIFY: {
      // The sheet opens when the tree is done with its own message.
      const NMHDR& notification = *reinterpret_cast<const NMHDR*>(lParam);
      if (notification.hwndFrom == tree_ &&
          (notification.code == NM_RETURN || notification.code == NM_DBLCLK))
        PostMessageW(window_, kOpenSelected, 0, 0);
      return true;
    }
    case kOpenSelected:
      OpenSelected();
      return true;
    case WM_CLOSE:
      DestroyWindow(window_);
      return true;
    case WM_NCDESTROY:
      window_ = nullptr;
      return false;
    default:
      return false;
  }
}

void TreeWindow::OpenSelected() {
  Device* const device = DeviceOf(TreeView_GetSelection(tree_));
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
