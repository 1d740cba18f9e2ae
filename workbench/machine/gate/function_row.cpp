#include "workbench/machine/gate/function_row.h"

#include <stdexcept>
#include <string>
#include <unordered_map>

namespace workbench {
namespace {

std::unordered_map<std::string_view, const FunctionRow*>& KnownRows() {
  static std::unordered_map<std::string_view, const FunctionRow*> rows;
  return rows;
}

}  // namespace

void AddRows(std::span<const FunctionRow> rows) {
  for (const FunctionRow& row : rows) {
    if (!KnownRows().emplace(row.name, &row).second)
      throw std::logic_error(std::string("two rows for ") + row.name);
  }
}

const FunctionRow* FindRow(std::string_view name) {
  const auto found = KnownRows().find(name);
  return found == KnownRows().end() ? nullptr : found->second;
}

}  // namespace workbench
