#include "workbench/text/text_table.h"

#include <algorithm>
#include <utility>

namespace workbench {

void TextTable::Add(std::vector<std::wstring> row) {
  row.resize(rows_.front().size());
  rows_.push_back(std::move(row));
}

std::wstring TextTable::Text() const {
  std::vector<std::size_t> widths(rows_.front().size());
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  std::wstring text;
  for (const auto& row : rows_) {
    std::wstring line = L"  ";
    for (std::size_t i = 0; i < row.size(); ++i)
      line += row[i] + std::wstring(widths[i] - row[i].size() + 2, L' ');
    text += line.substr(0, line.find_last_not_of(L' ') + 1) + L"\n";
    if (&row != &rows_.front()) continue;
    text += L"  ";
    for (const std::size_t width : widths) text += std::wstring(width, L'-') + L"  ";
    text.resize(text.find_last_not_of(L' ') + 1);
    text += L"\n";
  }
  return text;
}

}  // namespace workbench
