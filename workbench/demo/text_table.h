// Tables and text on the standard output.
#pragma once

#include <string>
#include <vector>

namespace workbench {

// A table for people: columns as wide as their widest cell, a line under the heading.
class TextTable {
 public:
  explicit TextTable(std::vector<std::wstring> heading) : rows_{std::move(heading)} {}
  // A row shorter than the heading ends in empty cells.
  void Add(std::vector<std::wstring> row);
  [[nodiscard]] std::wstring Text() const;

 private:
  std::vector<std::vector<std::wstring>> rows_;
};

// Writes UTF-8 to the standard output.
void Print(const std::wstring& text);

// UTF-8 to UTF-16.
[[nodiscard]] std::wstring Widen(const std::string& text);

}  // namespace workbench
