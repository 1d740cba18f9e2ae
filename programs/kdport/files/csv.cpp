#include "kdport/files/csv.h"

#include <algorithm>
#include <utility>

namespace KdPort {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// How many bytes the well-formed character at the front has; 0 when there is none.
std::size_t CharacterSize(std::string_view text) noexcept {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < size) return 0;
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  // Overlong forms, surrogates and what lies past the last character.
  const unsigned char second = byte(1);
  const bool outside = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                       (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
  return outside ? 0 : size;
}

}  // namespace

bool IsUtf8(std::string_view text) noexcept {
  while (!text.empty()) {
    const std::size_t size = CharacterSize(text);
    if (size == 0) return false;
    text.remove_prefix(size);
  }
  return true;
}

CCsvReader::CCsvReader(std::string_view document) : rest_(document) {
  if (rest_.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
}

bool CCsvReader::Next(CsvRow& row) {
  if (!faults_.empty() || !SkipEmptyLines()) return false;
  rowNumber_ = line_;
  row.clear();
  if (!ReadRow(row)) return false;
  if (!std::exchange(begun_, true)) firstEndsQuoted_ = quoted_;
  column_ = 0;
  return Require(std::ranges::all_of(row, IsUtf8), Text::FileNotUtf8, 0);
}

bool CCsvReader::SkipEmptyLines() {
  while (!rest_.empty() && EatLineEnd()) {
  }
  return !rest_.empty();
}

bool CCsvReader::ReadRow(CsvRow& row) {
  for (column_ = 1;; ++column_) {
    if (!ReadCell(row.emplace_back())) return false;
    if (rest_.empty()) return EndsWhole();
    if (EatLineEnd()) return true;
    rest_.remove_prefix(1);  // the comma
  }
}

// The last row of what kdport has written ends with a quotation mark, so that a cell that was cut off shows.
// People's editors leave the last line end out.
bool CCsvReader::EndsWhole() {
  return Require(quoted_ || !firstEndsQuoted_, Text::FileNotEnded, 0);
}

bool CCsvReader::ReadCell(std::string& cell) {
  const bool quoted = quoted_ = rest_.starts_with('"');
  if (!Require(!quoted || ReadQuoted(cell), Text::QuoteNotClosed, column_)) return false;
  if (!quoted) ReadPlain(cell);
  // What follows is a comma, a line end or the end of the document; else a quotation mark stands amiss.
  return Require(rest_.empty() || rest_.front() == ',' || AtLineEnd(), Text::QuoteMisplaced, column_);
}

bool CCsvReader::ReadQuoted(std::string& cell) {
  rest_.remove_prefix(1);
  for (;;) {
    const std::size_t end = rest_.find('"');
    if (end == std::string_view::npos) return false;
    cell += rest_.substr(0, end);
    line_ += static_cast<std::size_t>(std::ranges::count(rest_.substr(0, end), '\n'));
    rest_.remove_prefix(end + 1);
    if (!rest_.starts_with('"')) return true;
    cell += '"';
    rest_.remove_prefix(1);
  }
}

void CCsvReader::ReadPlain(std::string& cell) {
  std::size_t end = std::min(rest_.find_first_of(",\"\n"), rest_.size());
  if (end < rest_.size() && rest_[end] == '\n' && end > 0 && rest_[end - 1] == '\r') --end;
  cell = rest_.substr(0, end);
  rest_.remove_prefix(end);
}

bool CCsvReader::AtLineEnd() const noexcept {
  return rest_.starts_with('\n') || rest_.starts_with("\r\n");
}

bool CCsvReader::EatLineEnd() {
  if (!AtLineEnd()) return false;
  rest_.remove_prefix(rest_.front() == '\r' ? 2 : 1);
  ++line_;
  return true;
}

bool CCsvReader::Require(bool holds, Text otherwise, std::size_t column) {
  if (!holds) faults_.push_back({otherwise, {std::to_string(rowNumber_), std::to_string(column)}});
  return holds;
}

std::string CsvLine(const CsvRow& row) {
  std::string line;
  for (const std::string& cell : row) {
    if (&cell != &row.front()) line += ',';
    if (&cell != &row.back() && cell.find_first_of(",\"\r\n") == std::string::npos) {
      line += cell;
      continue;
    }
    line += '"';
    for (const char c : cell) line += c == '"' ? std::string("\"\"") : std::string(1, c);
    line += '"';
  }
  return line + "\r\n";
}

}  // namespace KdPort
