// DOS device names: what "COM7" stands for. Windows only.
#pragma once

#include "base/wide_string.h"

// The kernel path that the name stands for; on failure `kernelPath` stays as it was. An empty name, for
// which Windows has no device, fails.
[[nodiscard]] bool ReadDosDevice(const CWideString& name, CWideString& kernelPath);
[[nodiscard]] bool HasDosDevice(const CWideString& name);

// Adds a definition of the name.
bool AddDosDevice(const CWideString& name, const CWideString& kernelPath);

// Takes away the definition of the name that stands for exactly this path.
bool RemoveDosDevice(const CWideString& name, const CWideString& kernelPath);
