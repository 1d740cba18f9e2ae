#include "kdport/output/table.h"

#include <algorithm>

namespace KdPort {

namespace {

// Characters, not bytes: those that continue a character take no room.
std::size_t WidthOf(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string PrintRow(const std::vector<std::string>& row, const std::vector<std::size_t>& widths) {
  constexpr std::size_t kGap = 2;
  std::string line;
  for (std::size_t i = 0; i < row.size(); ++i) {
    line += row[i];
    line.append(widths[i] - WidthOf(row[i]) + kGap, ' ');
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + "\n";
}

}  // namespace

std::string Harmless(std::string_view text) {
  std::string harmless(text);
  std::ranges::replace_if(
      harmless, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, '?');
  return harmless;
}

CTable::CTable(std::vector<std::string> titles) {
  rows_.push_back(std::move(titles));
}

void CTable::Add(std::vector<std::string> row) {
  row.resize(rows_.front().size());
  for (std::string& cell : row) cell = Harmless(cell);
  rows_.push_back(std::move(row));
}

std::string CTable::Print() const {
  std::vector<std::size_t> widths(rows_.front().size());
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], WidthOf(row[i]));
  }
  std::string text;
  for (const auto& row : rows_) text += PrintRow(row, widths);
  return text;
}

}  // namespace KdPort
