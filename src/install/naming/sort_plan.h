// Bringing the COM names of a device server's ports into enumeration order. Portable.
//
// The order of the renames is decided here; what a rename does is behind CSortSteps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/wide_string.h"

// The steps of sorting that reach the registry and Windows. A child is given by its place in enumeration
// order, from 0. The steps may throw; sorting then ends there.
class CSortSteps {
 public:
  virtual ~CSortSteps() = default;

  // A free number, for a port that needs one during a swap; nothing when there is none.
  [[nodiscard]] virtual std::optional<std::int32_t> FreeNumber() = 0;
  // Renames a child; false when that failed. A rename that the user declined is no failure.
  [[nodiscard]] virtual bool Rename(std::size_t child, const CWideString& newName) = 0;
  // Reads a child's present name; `name` stays as it was when it cannot be read.
  virtual void ReadName(std::size_t child, CWideString& name) = 0;
};

// Whether a number among these names, in enumeration order, is lower than the one before it.
[[nodiscard]] bool NeedsSorting(const std::vector<CWideString>& names);

// Gives the child at place i the i-th lowest of the numbers in `names`, by renames in a fixed order: a child
// whose number another child holds swaps names with it, by way of a free number. When there is no free
// number, that child keeps its name. Kept on purpose: no free number
//
// A child's name is read again only after its own rename, so the number of steps grows with the number of
// children and not with its square. Returns false as soon as a rename fails; the renames before it stay, and
// a child that was on a free number stays there.
[[nodiscard]] bool SortNames(std::vector<CWideString> names, CSortSteps& steps);
