#include "ui/help.h"

#include <htmlhelp.h>

#include <algorithm>
#include <optional>
#include <string>

#include "base/export_guard.h"
#include "base/system_dll.h"
#include "base/system_function.h"
#include "base/unique_handle.h"
#include "base/wide_string.h"

namespace {

constexpr wchar_t kHelpFile[] = L"KdNUI41.chm";
constexpr wchar_t kPopUpTopics[] = L"%s::/KdUUI.txt";

constexpr char kControlKey[] = "CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";
constexpr char kControlName[] = "hhctrl.ocx";
constexpr WORD kHtmlHelpOrdinal = 15;  // HtmlHelpW
constexpr DWORD kMaximumPath = 260;

using HtmlHelpFunction = HWND(WINAPI*)(HWND, LPCWSTR, UINT, DWORD_PTR);

// Where the control is registered. It is loaded by a narrow path: it has a plain name in the system
// directory.
std::optional<std::string> RegisteredPath() {
  CRegistryKey key;
  if (RegOpenKeyExA(HKEY_CLASSES_ROOT, kControlKey, 0, KEY_READ, key.Put()) != ERROR_SUCCESS) return {};
  char stored[kMaximumPath + 1] = {};  // a value that is stored without a terminator gets one here
  DWORD type = REG_NONE;
  DWORD size = kMaximumPath;
  auto* const bytes = reinterpret_cast<BYTE*>(stored);
  if (RegQueryValueExA(key.Get(), nullptr, nullptr, &type, bytes, &size) != ERROR_SUCCESS) return {};
  if (type == REG_SZ) return std::string(stored);
  if (type != REG_EXPAND_SZ) return {};
  char expanded[kMaximumPath];
  const DWORD length = ExpandEnvironmentStringsA(stored, expanded, kMaximumPath);
  if (length == 0 || length > kMaximumPath) return {};
  return std::string(expanded);
}

bool IsComplete(const std::string& path) {
  return path.starts_with("\\\\") || path.find(":\\") == 1;
}

// A path that is not complete is looked for in the system directory only: the host's own directory and the
// current one are not to be trusted.
HMODULE LoadControl() {
  const std::optional<std::string> path = RegisteredPath();
  HMODULE control = nullptr;
  if (path && !path->empty()) {
    control = IsComplete(*path) ? LoadLibraryExA(path->c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)
                                : LoadSystemDll(path->c_str());
  }
  if (control == nullptr) control = LoadSystemDll(kControlName);
  return control;
}

// The control is never freed: its help window may outlive every page. Kept on purpose: open handles
HtmlHelpFunction FindHtmlHelp() {
  const HMODULE control = LoadControl();
  if (control == nullptr) return nullptr;
  const FARPROC function = GetProcAddress(control, MAKEINTRESOURCEA(kHtmlHelpOrdinal));
  return reinterpret_cast<HtmlHelpFunction>(reinterpret_cast<void*>(function));
}

HWND CallHtmlHelp(HWND owner, const CWideString& topic, UINT command, DWORD_PTR data) {
  // Looked for once; a control that was not found is not looked for again.
  static constinit CSystemFunction<HtmlHelpFunction> lookedUp;
  const HtmlHelpFunction function =
      lookedUp.Get([] { return GuardBoundary<HtmlHelpFunction>(nullptr, FindHtmlHelp); });
  return function != nullptr ? function(owner, topic.Text(), command, data) : nullptr;
}

CWideString TopicOf(const wchar_t* format) {
  CWideString topic = format;
  topic.Replace(L"%s", kHelpFile);
  return topic;
}

bool HasControl(std::span<const HelpId> table, DWORD control) {
  return control != 0 && std::ranges::find(table, control, &HelpId::control) != table.end();
}

}  // namespace

void ShowHelpTopic(HWND owner, const wchar_t* topicFormat) {
  CallHtmlHelp(owner, TopicOf(topicFormat), HH_DISPLAY_TOPIC, 0);
}

void ShowContextHelp(const HELPINFO& request, std::span<const HelpId> table) {
  if (request.iContextType != HELPINFO_WINDOW) return;
  if (!HasControl(table, static_cast<DWORD>(request.iCtrlId))) return;
  CallHtmlHelp(static_cast<HWND>(request.hItemHandle), TopicOf(kPopUpTopics), HH_TP_HELP_WM_HELP,
               reinterpret_cast<DWORD_PTR>(table.data()));
}
