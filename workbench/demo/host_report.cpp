#include "workbench/demo/host_report.h"

#include "workbench/demo/text_table.h"

namespace workbench {
namespace {

const wchar_t* IconOf(UINT style) {
  switch (style & MB_ICONMASK) {
    case MB_ICONEXCLAMATION:
      return L"exclamation";
    case MB_ICONINFORMATION:
      return L"information";
    case MB_ICONQUESTION:
      return L"question";
    case MB_ICONERROR:
      return L"error";
    default:
      return L"no icon";
  }
}

const wchar_t* AnswerOf(int answer) {
  switch (answer) {
    case IDOK:
      return L"OK";
    case IDYES:
      return L"Yes";
    case IDNO:
      return L"No";
    case IDCANCEL:
      return L"Cancel";
    default:
      return L"other";
  }
}

}  // namespace

std::wstring CaptionOf(Machine& machine, const Device& device) {
  return PlacesOf(machine, device).friendlyName + L" Properties";
}

std::wstring FormatMessageBoxes(const std::vector<MessageBoxRecord>& boxes) {
  std::wstring text;
  for (const MessageBoxRecord& box : boxes) {
    text += L"  Message box \"" + box.caption + L"\" (" + IconOf(box.style) + L"): " + box.text + L" -> " +
            AnswerOf(box.answer) + L"\n";
  }
  return text;
}

DriverValues ValuesOf(SampleHost& host) {
  DriverValues values;
  for (unsigned number = 1; number <= SampleHost::kPorts; ++number) {
    for (const std::uint32_t set : {kPortSet, kBusSet}) values.push_back(host.Driver(number).Current(set));
  }
  return values;
}

std::wstring FormatChanges(const DriverValues& before, const DriverValues& after) {
  std::wstring text;
  for (std::size_t at = 0; at < before.size(); ++at) {
    const std::wstring where = L"  Driver of port " + std::to_wstring(at / 2 + 1) + L", set " +
                               std::to_wstring(before[at].Selector()) + L": ";
    for (const std::string& change : Differences(before[at], after.at(at))) {
      text += where + Widen(change) + L"\n";
    }
  }
  return text;
}

std::vector<std::wstring> ViolationsOf(SampleHost& host) {
  std::vector<std::wstring> violations;
  for (const std::string& text : host.Host().Calls().Violations()) violations.push_back(Widen(text));
  for (const std::string& text : host.Host().Calls().LeftOpen())
    violations.push_back(Widen(text) + L" left open");
  for (unsigned number = 1; number <= SampleHost::kPorts; ++number) {
    for (const std::string& text : host.Driver(number).Violations()) {
      violations.push_back(L"driver of port " + std::to_wstring(number) + L": " + Widen(text));
    }
  }
  return violations;
}

bool ReportViolations(SampleHost& host) {
  const std::vector<std::wstring> violations = ViolationsOf(host);
  for (const std::wstring& violation : violations) Print(L"VIOLATION: " + violation + L"\n");
  return violations.empty();
}

}  // namespace workbench
