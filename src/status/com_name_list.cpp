#include "status/com_name_list.h"

namespace {

// The database has a byte for 256 too; it is never offered.
constexpr std::int32_t kLastOffered = 255;

}  // namespace

std::vector<CWideString> ComNameList(const ComUsage& usage, const CWideString& currentName) {
  std::vector<CWideString> list;
  list.reserve(kLastOffered);
  for (std::int32_t number = 1; number <= kLastOffered; ++number) {
    CWideString name = ComNameOf(number);
    const bool taken = usage[static_cast<std::size_t>(number) - 1] != 0;
    if (taken && !(name == currentName)) name += L" (in use)";
    list.push_back(name);
  }
  return list;
}
