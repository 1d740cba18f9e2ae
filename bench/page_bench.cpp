// page_bench: the port page from the call of the export until it is refreshed and painted, and the memory
// that an open one takes, each against a bare page of the same template.
#include <windows.h>

#include <commctrl.h>
#include <prsht.h>
#include <wininet.h>

#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/resource_ids.h"
#include "measure.h"
#include "workbench/rig/page_sheet.h"
#include "workbench/rig/sample_rig.h"

namespace {

constexpr double kMostPage = 1.10;  // of the time of a bare page with as many tips

using PageMaker = std::function<std::unique_ptr<workbench::PageSheet>()>;
using Sheet = workbench::PageSheet;

BOOL CALLBACK AddTool(HWND window, LPARAM toolTip) {
  TTTOOLINFOW tool{};
  tool.cbSize = sizeof tool;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = window;
  tool.uId = reinterpret_cast<UINT_PTR>(window);
  tool.lpszText = LPSTR_TEXTCALLBACKW;
  SendMessageW(reinterpret_cast<HWND>(toolTip), TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  return TRUE;
}

// Nothing but the dialog; with tips (lParam of the page is not 0), it and each child are tools of a tooltip
// control, as on the product's page.
INT_PTR CALLBACK BareProcedure(HWND window, UINT message, WPARAM, LPARAM lParam) {
  if (message != WM_INITDIALOG) return FALSE;
  if (reinterpret_cast<const PROPSHEETPAGEW*>(lParam)->lParam != 0) {
    const HWND toolTip = CreateWindowExW(0, TOOLTIPS_CLASSW, nullptr, WS_POPUP, 0, 0, 0, 0, window, nullptr,
                                         GetModuleHandleW(nullptr), nullptr);
    AddTool(window, reinterpret_cast<LPARAM>(toolTip));
    EnumChildWindows(window, AddTool, reinterpret_cast<LPARAM>(toolTip));
  }
  return TRUE;
}

HPROPSHEETPAGE BarePage(HMODULE module, bool tips) {
  PROPSHEETPAGEW page{};
  page.dwSize = sizeof page;
  page.hInstance = module;
  page.pszTemplate = MAKEINTRESOURCEW(IDD_PORT_PAGE);
  page.pfnDlgProc = BareProcedure;
  page.lParam = tips ? 1 : 0;
  return CreatePropertySheetPageW(&page);
}

// Closes a WinINet handle.
struct InternetCloser {
  using pointer = HINTERNET;
  void operator()(HINTERNET handle) const { InternetCloseHandle(handle); }
};
using InternetHandle = std::unique_ptr<HINTERNET, InternetCloser>;

// One GET, plain: a session, a connection, a request, the document to its end.
std::string Get(std::uint16_t port, const wchar_t* path) {
  const InternetHandle session(InternetOpenW(L"bench", INTERNET_OPEN_TYPE_DIRECT, nullptr, nullptr, 0));
  const InternetHandle connection(
      InternetConnectW(session.get(), L"127.0.0.1", port, nullptr, nullptr, INTERNET_SERVICE_HTTP, 0, 0));
  const InternetHandle request(HttpOpenRequestW(connection.get(), L"GET", path, nullptr, nullptr, nullptr,
                                                INTERNET_FLAG_KEEP_CONNECTION | INTERNET_FLAG_NO_CACHE_WRITE,
                                                0));
  if (!request || !HttpSendRequestW(request.get(), nullptr, 0, nullptr, 0)) {
    throw std::runtime_error("the document cannot be had");
  }
  std::string document;
  char bytes[4096];
  DWORD count = 0;
  while (InternetReadFile(request.get(), bytes, sizeof bytes, &count) && count > 0)
    document.append(bytes, count);
  return document;
}

// Bytes in use in the heaps of the process.
std::size_t BytesInUse() {
  HANDLE heaps[64];
  const DWORD count = GetProcessHeaps(ARRAYSIZE(heaps), heaps);
  std::size_t bytes = 0;
  for (DWORD i = 0; i < count && i < ARRAYSIZE(heaps); ++i) {
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heaps[i]);
    while (HeapWalk(heaps[i], &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
    HeapUnlock(heaps[i]);
  }
  return bytes;
}

// Heap bytes that one more open sheet takes.
double BytesPerSheet(workbench::Machine& machine, const PageMaker& make) {
  constexpr std::size_t kSheets = 20;
  std::vector<std::unique_ptr<Sheet>> sheets;
  sheets.reserve(kSheets + 1);
  sheets.push_back(make());
  machine.Calls().ClearLog();
  const std::size_t before = BytesInUse();
  for (std::size_t i = 0; i < kSheets; ++i) {
    sheets.push_back(make());
    machine.Calls().ClearLog();
  }
  return (static_cast<double>(BytesInUse()) - static_cast<double>(before)) / kSheets;
}

std::string BytesText(double bytes) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f KB", bytes / 1024);
  return text;
}

void ComparePages() {
  workbench::SampleRig host;
  host.Load();
  const HMODULE module = host.dll->Module();
  const PageMaker makeProduct = [&] { return std::make_unique<Sheet>(host, 0u); };
  const PageMaker makeBare = [=] { return std::make_unique<Sheet>(BarePage(module, false)); };
  const PageMaker makeWithTips = [=] { return std::make_unique<Sheet>(BarePage(module, true)); };
  std::unique_ptr<Sheet> sheet;
  const auto close = [&] {
    sheet.reset();
    host.machine.Calls().ClearLog();
    host.web.ClearRequests();
    host.Driver().ClearRecords();
  };
  const auto open = [&] {
    sheet = makeProduct();
    if (sheet->Text(IDC_PORT_STATE) != L"Connected") throw std::runtime_error("the page is not refreshed");
  };
  const bench::Work openProduct{.run = open, .tidy = close};
  const auto openBare = [&](const PageMaker& make) {
    const auto openAndGet = [&, make] {
      sheet = make();
      if (Get(host.web.Port(), L"/p1").empty()) throw std::runtime_error("no document");
    };
    return bench::Work{.run = openAndGet, .tidy = close};
  };
  // Half the time is Wine's server and its screen, which other programs disturb: a bound needs many rounds.
  const bench::Patience many{.sampleSeconds = 0.02, .batch = 100, .mostRounds = 600};
  const bench::Patience some{.sampleSeconds = 0.02, .batch = 30, .mostRounds = 240, .tolerance = 0.02};
  const char* figure = "Port page, from the export until refreshed and painted";
  bench::PrintRow(figure, "bare page with tips on its controls, and one plain GET",
                  bench::Compare(openProduct, openBare(makeWithTips), many), kMostPage);
  bench::PrintRow(figure, "the same without tips", bench::Compare(openProduct, openBare(makeBare), some));

  const double bare = BytesPerSheet(host.machine, makeBare);
  const double page = BytesPerSheet(host.machine, makeProduct);
  bench::PrintRow("Heap of an open port page", BytesText(page), "bare page: " + BytesText(bare), page / bare);
}

}  // namespace

int main() {
  try {
    ComparePages();
    return bench::ExitStatus();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "page_bench: %s\n", error.what());
    return 1;
  }
}
