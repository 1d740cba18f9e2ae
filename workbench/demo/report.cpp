#include "workbench/demo/report.h"
#include "workbench/text/device_text.h"
#include "workbench/text/text_table.h"

#include <algorithm>
#include <cstdio>

namespace workbench {
namespace {

struct Word {
  UINT code;
  const wchar_t* word;
};
constexpr Word kIcons[] = {{MB_ICONEXCLAMATION, L"exclamation"},
                           {MB_ICONINFORMATION, L"information"},
                           {MB_ICONQUESTION, L"question"},
                           {MB_ICONERROR, L"error"},
                           {0, L"no icon"}};
constexpr Word kAnswers[] = {{IDOK, L"OK"}, {IDYES, L"Yes"}, {IDNO, L"No"}, {IDCANCEL, L"Cancel"}};

template <std::size_t N>
std::wstring WordOf(const Word (&words)[N], UINT code) {
  const auto* found = std::ranges::find(words, code, &Word::code);
  return found == std::end(words) ? L"other" : found->word;
}

void AddChildren(Machine& machine, const Device& parent, std::size_t depth, std::vector<ListedDevice>& list) {
  for (Device* child : parent.children) {
    if (child->removed) continue;
    const std::wstring key = EnumKeyOf(child->instanceId);
    const std::wstring description = machine.Registry().Text(key, L"DeviceDesc").value_or(child->instanceId);
    list.push_back({child, depth, machine.Registry().Text(key, L"FriendlyName").value_or(description)});
    AddChildren(machine, *child, depth + 1, list);
  }
}

}  // namespace

std::vector<ListedDevice> ListDevices(Machine& machine) {
  std::vector<ListedDevice> list;
  AddChildren(machine, machine.Devices().Root(), 0, list);
  return list;
}

std::wstring FormatDevices(Machine& machine) {
  TextTable table({kComputer, L"Instance id"});
  for (const ListedDevice& one : ListDevices(machine))
    table.Add({std::wstring(2 * (one.depth + 1), L' ') + one.name, one.device->instanceId});
  return table.Text();
}

void Print(const std::wstring& text) {
  const std::string bytes = Narrow(text);
  std::fwrite(bytes.data(), 1, bytes.size(), stdout);
  std::fflush(stdout);
}

bool PrintBeside(const std::wstring& happened, const std::wstring& expected) {
  Print(happened);
  if (happened != expected) Print(L"  DIFFERS, expected is:\n" + expected);
  return happened == expected;
}

std::wstring CaptionOf(Machine& machine, const Device& device) {
  return PlacesOf(machine, device).friendlyName + L" Properties";
}

std::wstring FormatMessageBoxes(const std::vector<MessageBoxRecord>& boxes) {
  std::wstring text;
  for (const MessageBoxRecord& box : boxes) {
    text += L"  Message box \"" + box.caption + L"\" (" + WordOf(kIcons, box.style & MB_ICONMASK) + L"): " +
            box.text + L" -> " + WordOf(kAnswers, static_cast<UINT>(box.answer)) + L"\n";
  }
  return text;
}

DriverValues ValuesOf(Rig& rig) {
  DriverValues values;
  for (PortDriver& driver : rig.drivers) {
    for (const std::uint32_t set : {kPortSet, kBusSet}) values.push_back(driver.Current(set));
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

std::wstring FormatFaults(const Rig& rig) {
  std::wstring text;
  for (const std::string& fault : rig.Misuse()) text += L"VIOLATION: " + Widen(fault) + L"\n";
  for (const std::string& handle : rig.LeftOpen()) text += L"VIOLATION: " + Widen(handle) + L" left open\n";
  return text;
}

bool EndsWell(Rig& rig) {
  rig.dll.reset();
  const std::wstring faults = FormatFaults(rig);
  Print(faults);
  return faults.empty();
}

}  // namespace workbench
