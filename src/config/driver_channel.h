// The exchanges with a driver through its configuration interface. Windows only.
//
// Each opens the interface at `path`, makes its requests and closes it. They fail, without an error code,
// when the path is empty or cannot be opened, when a request fails, and when memory runs out.
#pragma once

#include <cstdint>

#include "base/wide_string.h"
#include "config/information_set.h"

// Read the driver's current, respectively default, set into the members that `set` is bound to. The selector
// says which set is asked for. A driver that answers less than it announced fails; the members that were read
// by then have their new values.
[[nodiscard]] bool ReadCurrentSet(const CWideString& path, CSsInformationSet& set, std::uint32_t selector);
[[nodiscard]] bool ReadDefaultSet(const CWideString& path, CSsInformationSet& set, std::uint32_t selector);

// Writes the set into the driver.
[[nodiscard]] bool WriteSet(const CWideString& path, CSsInformationSet& set, std::uint32_t selector);
