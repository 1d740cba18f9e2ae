// The SERIALCOMM map: kernel device to COM name. Windows only.
#pragma once

#include "base/wide_string.h"

// Enters the COM name of a kernel device, over the one that it had. Programs list the computer's ports from
// this key; Windows makes it anew at each start. The key is not created: without it, or without administrator
// rights, the result is false.
[[nodiscard]] bool MapKernelDevice(const CWideString& kernelPath, const CWideString& comName);
