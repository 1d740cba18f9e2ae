// Whether a program has a port open. Windows only.
#pragma once

#include "base/wide_string.h"

// Opens "\\.\" and the name for exclusive use and closes it again. False when the open fails for whatever
// reason: a name without a DOS device counts as in use. `comName` may be empty. The driver sees the open and
// the close, and the call lasts as long as the driver takes. Any thread.
[[nodiscard]] bool IsPortOpenable(const CWideString& comName);
