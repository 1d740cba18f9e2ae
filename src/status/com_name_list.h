// The COM names that a user can choose from. Portable.
#pragma once

#include <vector>

#include "base/wide_string.h"
#include "install/naming/com_names.h"

// The names of numbers 1 to 255 in order, with " (in use)" behind those that the usage map has as taken, but
// for `currentName` (compared exactly), which is taken by the port itself.
[[nodiscard]] std::vector<CWideString> ComNameList(const ComUsage& usage, const CWideString& currentName);
