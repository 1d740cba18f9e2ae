#include "status/utils.h"

#include "install/naming/com_database.h"
#include "install/naming/ports_settings.h"
#include "status/com_name_list.h"
#include "status/ports_default.h"
#include "status/serial_words.h"

namespace {

LRESULT AddText(HWND combo, const CWideString& text) {
  return SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.Text()));
}

void Select(HWND combo, LRESULT index) {
  SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

}  // namespace

CWideString CUtils::DataBitsIndexToText(std::uint32_t index) const {
  return ::DataBitsIndexToText(index);
}
CWideString CUtils::ParityIndexToText(std::uint32_t index) const {
  return ::ParityIndexToText(index);
}
CWideString CUtils::StopBitsIndexToText(std::uint32_t index) const {
  return ::StopBitsIndexToText(index);
}
CWideString CUtils::FlowControlIndexToText(std::uint32_t index) const {
  return ::FlowControlIndexToText(index);
}
CWideString CUtils::DuplexIndexToText(std::uint32_t index) const {
  return ::DuplexIndexToText(index);
}
CWideString CUtils::ParityCodeToText(std::wstring_view code) const {
  return ::ParityCodeToText(code);
}
CWideString CUtils::StopBitsCodeToText(std::wstring_view code) const {
  return ::StopBitsCodeToText(code);
}
CWideString CUtils::FlowControlCodeToText(std::wstring_view code) const {
  return ::FlowControlCodeToText(code);
}
CWideString CUtils::DuplexCodeToText(std::wstring_view code) const {
  return ::DuplexCodeToText(code);
}
std::uint32_t CUtils::ParityCodeToIndex(std::uint32_t code) const {
  return ::ParityCodeToIndex(code);
}
std::uint32_t CUtils::StopBitsCodeToIndex(std::uint32_t code) const {
  return ::StopBitsCodeToIndex(code);
}
std::uint32_t CUtils::FlowControlCodeToIndex(std::uint32_t code) const {
  return ::FlowControlCodeToIndex(code);
}
std::uint32_t CUtils::DuplexCodeToIndex(std::uint32_t code) const {
  return ::DuplexCodeToIndex(code);
}

ChoiceList CUtils::LoadChoiceList(UINT resourceId, std::uint32_t mask) const {
  CWideString text;
  text.LoadFromTable(resourceId);
  return SplitChoices(text, mask);
}

void CUtils::FillChoiceCombo(const HWND& combo, ChoiceList list, std::int32_t value, bool matchBits) const {
  auto selected = FindChoice(list, value, matchBits);
  if (!selected) {
    selected = list.size();
    list.push_back({CWideString::Format(L"%d", value), value});
  }
  SendMessageW(combo, CB_RESETCONTENT, 0, 0);
  LRESULT selectedIndex = -1;
  for (std::size_t at = 0; at < list.size(); ++at) {
    const LRESULT index = AddText(combo, list[at].text);
    SendMessageW(combo, CB_SETITEMDATA, static_cast<WPARAM>(index), list[at].value);
    if (at == *selected) selectedIndex = index;
  }
  Select(combo, selectedIndex);
}

// NOLINTBEGIN(performance-unnecessary-value-param): one of the fixed interfaces, which take their texts by
// value
// cppcheck-suppress passedByValue ; so is this interface
void CUtils::FillStringCombo(const HWND& combo, std::vector<CWideString> list,
                             CWideString selectedText) const {
  // NOLINTEND(performance-unnecessary-value-param)
  SendMessageW(combo, CB_RESETCONTENT, 0, 0);
  LRESULT selected = -1;
  for (const CWideString& text : list) {
    const LRESULT index = AddText(combo, text);
    if (text == selectedText) selected = index;
  }
  Select(combo, selected);
}

std::int32_t CUtils::GetSelectedItemData(const HWND* combo) const {
  if (combo == nullptr) return -1;
  const LRESULT index = SendMessageW(*combo, CB_GETCURSEL, 0, 0);
  return static_cast<std::int32_t>(SendMessageW(*combo, CB_GETITEMDATA, static_cast<WPARAM>(index), 0));
}

bool CUtils::WritePortsDefaultSettings(const CWideString& portName, std::uint32_t baudRate,
                                       std::uint32_t dataBitsIndex, std::uint32_t parityIndex,
                                       std::uint32_t stopBitsIndex, std::uint32_t flowControl) const {
  const auto settings =
      PortsDefaultSettings(baudRate, dataBitsIndex, parityIndex, stopBitsIndex, flowControl);
  return settings && WritePortsSettings(portName, *settings);
}

std::vector<CWideString> CUtils::BuildComNameList(HCOMDB comDb, const CWideString& currentName) const {
  const std::optional<ComUsage> usage = ReadComUsage(comDb);
  return usage ? ComNameList(*usage, currentName) : std::vector<CWideString>();
}
