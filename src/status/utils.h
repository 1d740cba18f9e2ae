// The stateless helper of the pages: serial-setting words, choice lists, combo boxes, Ports settings, COM
// names. Windows only; what it decides is in the portable files beside it.
#pragma once

#include <windows.h>

#include <ddk/msports.h>

#include <cstdint>
#include <string_view>
#include <vector>

#include "base/wide_string.h"
#include "status/choice_list.h"

// Made on the stack, used once or twice and dropped; any thread, combo boxes on their own thread.
//
// The words are a kept interface: the pages and the status document go directly to status/serial_words.h, and
// nothing here may differ from it. Functions that make texts or lists throw std::bad_alloc when memory runs
// out.
class CUtils {
 public:
  virtual ~CUtils() = default;

  // Words, see status/serial_words.h.
  [[nodiscard]] CWideString DataBitsIndexToText(std::uint32_t index) const;
  [[nodiscard]] CWideString ParityIndexToText(std::uint32_t index) const;
  [[nodiscard]] CWideString StopBitsIndexToText(std::uint32_t index) const;
  [[nodiscard]] CWideString FlowControlIndexToText(std::uint32_t index) const;
  [[nodiscard]] CWideString DuplexIndexToText(std::uint32_t index) const;
  [[nodiscard]] CWideString ParityCodeToText(std::wstring_view code) const;
  [[nodiscard]] CWideString StopBitsCodeToText(std::wstring_view code) const;
  [[nodiscard]] CWideString FlowControlCodeToText(std::wstring_view code) const;
  [[nodiscard]] CWideString DuplexCodeToText(std::wstring_view code) const;
  [[nodiscard]] std::uint32_t ParityCodeToIndex(std::uint32_t code) const;
  [[nodiscard]] std::uint32_t StopBitsCodeToIndex(std::uint32_t code) const;
  [[nodiscard]] std::uint32_t FlowControlCodeToIndex(std::uint32_t code) const;
  [[nodiscard]] std::uint32_t DuplexCodeToIndex(std::uint32_t code) const;

  // The choices of a comma-separated string resource that `mask` offers, see SplitChoices. A missing resource
  // is an empty text.
  [[nodiscard]] ChoiceList LoadChoiceList(UINT resourceId, std::uint32_t mask) const;

  // Fills a combo box anew and selects the entry for `value`, see FindChoice. A value that the list does not
  // offer is added as its bare number and selected, so that it is shown instead of lost. The combo box
  // belongs to the calling thread, here and below.
  void FillChoiceCombo(const HWND& combo, ChoiceList list, std::int32_t value, bool matchBits) const;

  // Fills a combo box anew and selects the last entry that equals `selectedText` exactly; without one,
  // nothing is selected.
  void FillStringCombo(const HWND& combo, std::vector<CWideString> list, CWideString selectedText) const;

  // The value kept with the selected item: CB_ERR without a selection, -1 for a null reference.
  [[nodiscard]] std::int32_t GetSelectedItemData(const HWND* combo) const;

  // Writes the port's settings, in index form, where Windows keeps the defaults of COM ports. False when a
  // setting is out of range (then nothing is written) or the registry refuses; needs administrator rights.
  bool WritePortsDefaultSettings(const CWideString& portName, std::uint32_t baudRate,
                                 std::uint32_t dataBitsIndex, std::uint32_t parityIndex,
                                 std::uint32_t stopBitsIndex, std::uint32_t flowControl) const;

  // The COM names to choose from, see ComNameList; empty when the database is not open or does not answer.
  // The caller opens and closes it.
  [[nodiscard]] std::vector<CWideString> BuildComNameList(HCOMDB comDb, const CWideString& currentName) const;
};
