// Tables of text, as wide as what stands in them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace KdPort {

class CTable {
 public:
  explicit CTable(std::vector<std::string> titles);

  // One cell for each title.
  void Add(std::vector<std::string> row);
  // The titles and the rows, a line each, two blanks between columns and none at a line's end.
  [[nodiscard]] std::string Print() const;

 private:
  std::vector<std::vector<std::string>> rows_;  // the titles first
};

// Control characters, which names from a registry may hold, as question marks: a terminal obeys them.
[[nodiscard]] std::string Harmless(std::string_view text);

}  // namespace KdPort
