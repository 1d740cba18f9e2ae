// Bringing the COM names of a device server's ports into enumeration order. Portable.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/wide_string.h"

// The steps of sorting that reach the registry and Windows. Children are named by their place in enumeration order.
class CSortSteps {
 public:
  virtual ~CSortSteps() = default;

  // A number that nobody has, for a port that must stand aside for a moment.
  [[nodiscard]] virtual std::optional<std::int32_t> FreeNumber() = 0;
  // Renames a child; false when that failed.
  [[nodiscard]] virtual bool Rename(std::size_t child, const CWideString& newName) = 0;
  // Reads a child's present name; `name` stays as it was when it cannot be read.
  virtual void ReadName(std::size_t child, CWideString& name) = 0;
};

// Whether the numbers of these names, in enumeration order, fall anywhere.
[[nodiscard]] bool NeedsSorting(const std::vector<CWideString>& names);

// Gives the child at place i the i-th lowest of the numbers in `names`, by renames in a fixed order:
// a child whose number somebody else holds swaps names with the holder, which stands aside on a free number
// meanwhile. When there is no free number, that child stays as it is.
//
// A name is read again only after a rename that named its child, so the steps grow with the number of
// children and not with its square. Returns false as soon as a rename fails, leaving the names as far as
// they got; a holder that stood aside then keeps the number that it stands on.
[[nodiscard]] bool SortNames(std::vector<CWideString> names, CSortSteps& steps);
