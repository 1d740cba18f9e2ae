// Tables for people.
#pragma once

#include <string>
#include <vector>

namespace workbench {

// Columns as wide as their widest cell, a line under the heading.
class TextTable {
 public:
  explicit TextTable(std::vector<std::wstring> heading) : rows_{std::move(heading)} {}
  // A row shorter than the heading ends in empty cells.
  void Add(std::vector<std::wstring> row);
  [[nodiscard]] std::wstring Text() const;

 private:
  std::vector<std::vector<std::wstring>> rows_;
};

}  // namespace workbench
