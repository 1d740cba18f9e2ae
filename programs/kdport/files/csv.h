// Comma-separated values as RFC 4180 has them, in UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kdport/model/texts.h"

namespace KdPort {

using CsvRow = std::vector<std::string>;

// Takes a document apart, line by line. Lines end with CR LF or LF; a byte order mark before the first and
// lines without any character are left out.
class CCsvReader {
 public:
  // The document has to outlive the reader.
  explicit CCsvReader(std::string_view document);

  // The next row; false at the end, and at the first fault. A last row without a line end is taken, except
  // where it may be cut off: in a file whose first row ends with a quotation mark and this one does not.
  [[nodiscard]] bool Next(CsvRow& row);
  // The row that Next gave last, counted from 1 with the empty lines, as an editor does.
  [[nodiscard]] std::size_t RowNumber() const noexcept { return rowNumber_; }
  // Empty unless Next ended at a fault.
  [[nodiscard]] const std::vector<Message>& Faults() const noexcept { return faults_; }

 private:
  bool SkipEmptyLines();
  bool ReadRow(CsvRow& row);
  bool EndsWhole();
  bool ReadCell(std::string& cell);
  bool ReadQuoted(std::string& cell);
  void ReadPlain(std::string& cell);
  [[nodiscard]] bool AtLineEnd() const noexcept;
  bool EatLineEnd();
  bool Require(bool holds, Text otherwise, std::size_t column);

  std::string_view rest_;
  std::size_t line_ = 1;  // of the first character of rest_
  std::size_t rowNumber_ = 0;
  std::vector<Message> faults_;
  std::size_t column_ = 0;
  bool quoted_ = false;  // the cell that was read last
  bool begun_ = false;
  bool firstEndsQuoted_ = false;
};

// One row with its line end; cells that need quotation marks get them, and the last one always.
[[nodiscard]] std::string CsvLine(const CsvRow& row);

// Whether every byte belongs to a well-formed character.
[[nodiscard]] bool IsUtf8(std::string_view text) noexcept;

}  // namespace KdPort
