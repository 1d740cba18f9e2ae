// The exchanges with a driver through its configuration interface. Windows only.
//
// Each opens the interface at `path`, makes its requests and closes it, on the calling thread and without a
// time-out of its own: the call lasts as long as the driver takes. They fail, without an error code, when the
// path is empty or cannot be opened, when a request fails, and when memory runs out.
//
// `selector` says which of the driver's sets is meant: kSelector of the two parameter classes.
#pragma once

#include <cstdint>

#include "base/wide_string.h"
#include "config/information_set.h"

// Read the driver's current, respectively default, set into the members that `set` is bound to. The driver is
// first asked for the size and then for the bytes. A driver that answers less than it announced is a failure;
// the members that were read by then have their new values, the others keep theirs.
[[nodiscard]] bool ReadCurrentSet(const CWideString& path, CSsInformationSet& set, std::uint32_t selector);
[[nodiscard]] bool ReadDefaultSet(const CWideString& path, CSsInformationSet& set, std::uint32_t selector);

// Writes all parameters of the set into the driver in one request. A driver that refuses keeps what it has.
[[nodiscard]] bool WriteSet(const CWideString& path, CSsInformationSet& set, std::uint32_t selector);
