// The COM names that a user can choose from. Portable.
#pragma once

#include <vector>

#include "base/wide_string.h"
#include "install/naming/com_names.h"

// The names of the numbers 1 to 255 in order, with " (in use)" behind the taken ones. `currentName`, compared
// exactly, is left plain: its number is taken by the port itself. ChosenComName (ui/device_rules.h) reads an
// entry back.
[[nodiscard]] std::vector<CWideString> ComNameList(const ComUsage& usage, const CWideString& currentName);
