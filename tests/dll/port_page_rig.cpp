#include "port_page_rig.h"

#include <stdexcept>

namespace {

using workbench::kBusSet;
using workbench::kPortSet;

}  // namespace

void PointAt(workbench::PortDriver& driver, const workbench::HttpDeviceServer& web, unsigned port) {
  workbench::ParameterValues& bus = driver.Current(kBusSet);
  bus.SetNumber("AddressToConnect", 0x7F000001);
  bus.SetNumber("ServerWebPort", web.Port());
  bus.SetNumber("SerialPortIndex", port);
}

PortPageRig::PortPageRig() {
  web.Start();
  for (unsigned index = 0; index < drivers.size(); ++index) {
    web.SetPort(index + 1, {});
    PointAt(drivers[index], web, index + 1);
    workbench::ParameterValues& port = drivers[index].Current(kPortSet);
    for (const char* line : {"CtsSupported", "DsrSupported"}) port.SetNumber(line, 1);
    port.SetNumber("Baudrate", 9600);
    port.SetNumber("Databits", 3);
    port.SetNumber("FlowControl", 0);
  }
  server = workbench::AddDeviceServer(
      machine, {.comNumbers = {7, 8}, .driver = [this](unsigned index) { return &drivers.at(index); }});
  dll = std::make_unique<workbench::Dll>(machine);
}

std::vector<std::string> PortPageRig::Complaints() {
  std::vector<std::string> all = machine.Calls().Violations();
  for (const workbench::PortDriver& driver : drivers) {
    all.insert(all.end(), driver.Violations().begin(), driver.Violations().end());
  }
  return all;
}

PageRequest::PageRequest(workbench::Machine& machine, const workbench::Dll& dll, workbench::Device& port,
                         DWORD request, bool accept)
    : accept_(accept), element_(machine, port) {
  SP_PROPSHEETPAGE_REQUEST wanted{};
  wanted.cbSize = sizeof(wanted);
  wanted.PageRequested = request;
  wanted.DeviceInfoSet = element_.Set();
  wanted.DeviceInfoData = element_.Data();
  result = dll.PropPage(&wanted, &PageRequest::Add, reinterpret_cast<LPARAM>(this));
}

BOOL CALLBACK PageRequest::Add(HPROPSHEETPAGE page, LPARAM lParam) {
  auto* self = reinterpret_cast<PageRequest*>(lParam);
  ++self->offered;
  self->page = page;
  return self->accept_ ? TRUE : FALSE;
}

PortSheet::PortSheet(workbench::Machine& machine, const workbench::Dll& dll, workbench::Device& port,
                     Painting painting)
    : request_(machine, dll, port) {
  if (request_.page == nullptr && !request_.result) throw std::runtime_error("the export added no page");
  if (request_.page == nullptr || !request_.result) throw std::logic_error("the export tells a lie");
  PROPSHEETHEADERW header{};
  header.dwSize = sizeof(header);
  header.dwFlags = PSH_MODELESS | PSH_PROPTITLE;
  header.pszCaption = L"Port";
  header.nPages = 1;
  header.phpage = &request_.page;
  const INT_PTR result = PropertySheetW(&header);
  if (result == 0 || result == -1) throw std::runtime_error("the sheet did not open");
  sheet_ = reinterpret_cast<HWND>(result);
  page_ = reinterpret_cast<HWND>(SendMessageW(sheet_, PSM_GETCURRENTPAGEHWND, 0, 0));
  if (painting == Painting::WhenUncovered) {
    RedrawWindow(sheet_, nullptr, nullptr, RDW_VALIDATE | RDW_ALLCHILDREN | RDW_NOFRAME | RDW_NOERASE);
  }
  PumpMessages();
}

PortSheet::~PortSheet() {
  Close();
}

void PortSheet::Close() {
  if (IsWindow(sheet_)) DestroyWindow(sheet_);
}

std::wstring PortSheet::Text(int id) const {
  wchar_t text[5000];
  const int length = GetWindowTextW(Control(id), text, ARRAYSIZE(text));
  return {text, static_cast<std::size_t>(length)};
}

bool PortSheet::IsShown(int id) const {
  return Control(id) != nullptr && (GetWindowLongW(Control(id), GWL_STYLE) & WS_VISIBLE) != 0;
}

std::string PortSheet::Box(int box, int label) const {
  std::string words = SendMessageW(Control(box), BM_GETCHECK, 0, 0) == BST_CHECKED ? "checked" : "clear";
  if (!IsWindowEnabled(Control(box))) words += ", disabled";
  if (!IsWindowEnabled(Control(label))) words += ", label disabled";
  return words;
}

void PortSheet::Click(int id) const {
  if (IsWindowEnabled(Control(id))) SendMessageW(Control(id), BM_CLICK, 0, 0);
}

void PortSheet::Check(int id, bool check) const {
  if ((SendMessageW(Control(id), BM_GETCHECK, 0, 0) == BST_CHECKED) != check) Click(id);
}

bool PortSheet::PressOk() {
  SendMessageW(sheet_, PSM_PRESSBUTTON, PSBTN_OK, 0);
  PumpMessages();
  if (SendMessageW(sheet_, PSM_GETCURRENTPAGEHWND, 0, 0) != 0) return false;
  Close();
  return true;
}

std::wstring TipOf(HWND page, HWND tool) {
  NMTTDISPINFOW request{};
  request.hdr.code = TTN_GETDISPINFOW;
  request.hdr.idFrom = reinterpret_cast<UINT_PTR>(tool);
  request.uFlags = TTF_IDISHWND;
  SendMessageW(page, WM_NOTIFY, request.hdr.idFrom, reinterpret_cast<LPARAM>(&request));
  return request.lpszText != nullptr ? request.lpszText : L"(no answer)";
}

void AskForHelp(HWND page, int control, int contextType) {
  HELPINFO request{};
  request.cbSize = sizeof request;
  request.iContextType = contextType;
  request.iCtrlId = control;
  request.hItemHandle = GetDlgItem(page, control);
  SendMessageW(page, WM_HELP, 0, reinterpret_cast<LPARAM>(&request));
}

void PumpMessages(DWORD milliseconds) {
  const ULONGLONG end = GetTickCount64() + milliseconds;
  do {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    if (milliseconds != 0) Sleep(10);
  } while (GetTickCount64() < end);
}
