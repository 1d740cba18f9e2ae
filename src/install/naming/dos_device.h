// DOS device names: the kernel device behind a name such as "COM7". Windows only.
//
// A name has a stack of definitions, of which the newest counts. They last until Windows is restarted. Any
// thread.
#pragma once

#include "base/wide_string.h"

// The kernel path of the definition that counts, such as "\Device\KdPort0"; on failure `kernelPath` stays as
// it was. A name without a definition fails, and so does an empty one.
[[nodiscard]] bool ReadDosDevice(const CWideString& name, CWideString& kernelPath);

// Whether the name has a definition.
[[nodiscard]] bool HasDosDevice(const CWideString& name);

// Adds a definition of the name, over those that it has.
bool AddDosDevice(const CWideString& name, const CWideString& kernelPath);

// Removes the definition of the name with exactly this path; an older one counts again.
bool RemoveDosDevice(const CWideString& name, const CWideString& kernelPath);
