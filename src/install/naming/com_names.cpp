#include "install/naming/com_names.h"

#include <algorithm>

namespace {

struct FixedNumberRow {
  std::wstring_view parentHardwareId;
  std::int32_t number;
};
constexpr FixedNumberRow kFixedNumbers[] = {
    {L"USB\\VID_3A7E&PID_1015", 2},
    {L"USB\\VID_3A7E&PID_5002&MI_00", 2},
    {L"USB\\VID_3A7E&PID_5002&MI_01", 4},
    {L"USB\\VID_3A7E&PID_1089", 89},
};

// The last row equals no id, because ids are compared in upper case. Kept on purpose: lower-case Vid
constexpr std::wstring_view kUnaskedModels[] = {
    L"USB\\VID_3A7E&PID_1015",
    L"USB\\VID_3A7E&PID_5002&MI_00",
    L"USB\\VID_3A7E&PID_5002&MI_01",
    L"USB\\Vid_3A7E&PID_1089",
};

// One less than the last number that sorting uses for a swap, so that a holder, which moves for good, leaves
// it one number.
constexpr std::uint32_t kLastForMovedHolder = 254;

}  // namespace

CWideString ComNameOf(std::int32_t number) {
  return CWideString::Format(L"COM%d", number);
}

bool IsNumberFree(const ComUsage& usage, std::uint32_t number) noexcept {
  return number >= 1 && number <= usage.size() && usage[number - 1] == 0;
}

std::optional<std::uint32_t> FirstFreeNumber(const ComUsage& usage, std::uint32_t first,
                                             std::uint32_t last) noexcept {
  for (std::uint32_t number = first; number <= last; ++number) {
    if (IsNumberFree(usage, number)) return number;
  }
  return std::nullopt;
}

std::uint32_t NumberForMovedHolder(const ComUsage* usage, std::uint32_t first,
                                   const CWideString& name) noexcept {
  const auto free = usage != nullptr ? FirstFreeNumber(*usage, first, kLastForMovedHolder) : std::nullopt;
  if (free) return *free;
  // Kept on purpose: number from a length
  constexpr std::uint32_t kBytesPerCharacter = 2;
  return kBytesPerCharacter * (static_cast<std::uint32_t>(name.Length()) + 1);
}

CWideString HardwareIdOf(const CWideString& instanceId) {
  CWideString id = instanceId;
  const std::size_t first = id.Find(L"\\");
  const std::size_t second = first == CWideString::kNotFound ? first : id.Find(L"\\", first + 1);
  if (second != CWideString::kNotFound) id = id.Left(second);
  id.MakeUpper();
  return id;
}

std::optional<std::int32_t> FixedComNumber(const CWideString& parentHardwareId) {
  const auto* row =
      std::ranges::find(kFixedNumbers, parentHardwareId.View(), &FixedNumberRow::parentHardwareId);
  return row != std::end(kFixedNumbers) ? std::optional(row->number) : std::nullopt;
}

bool TakesNumberUnasked(const CWideString& parentHardwareId) {
  return std::ranges::find(kUnaskedModels, parentHardwareId.View()) != std::end(kUnaskedModels);
}
