#include "kdport/files/host_file.h"

#include <charconv>
#include <map>
#include <unordered_map>

#include "kdport/files/csv.h"

namespace KdPort {

namespace {

constexpr std::string_view kServer = "server";
constexpr std::string_view kIndex = "index";
constexpr std::string_view kName = "name";
constexpr std::size_t kMostFaults = 100;

// Reads a file's rows and collects what is wrong with them, each message with its row.
class CHostFileReader {
 public:
  CHostFileReader(std::string_view document, const Host& host) : csv_(document) {
    for (std::size_t i = 0; i < host.ports.size(); ++i) {
      const Port& port = host.ports[i];
      ports_[Folded(port.server + "/" + std::to_string(port.index))].push_back(i);
    }
  }

  WishFile Read();

 private:
  bool ReadHeader();
  void ReadBody();
  void ReadRow(const CsvRow& row);
  bool ReadCell(std::string_view column, const std::string& cell, Wish& wish);
  void FindPort(const std::string& key, Wish& wish);
  bool Require(bool holds, std::string_view column, const std::string& cell, std::string_view range);
  void Fault(Text text, std::vector<std::string> arguments, ExitCode exit = ExitCode::BadUse);
  [[nodiscard]] std::string Row() const { return std::to_string(csv_.RowNumber()); }
  [[nodiscard]] std::string Cell(const CsvRow& row, std::string_view column) const {
    return row[places_.at(column)];
  }

  CCsvReader csv_;
  std::unordered_map<std::string, std::vector<std::size_t>> ports_;  // by folded key
  std::vector<std::string_view> columns_;                            // of the header, in its order
  std::map<std::string_view, std::size_t> places_;
  std::unordered_map<std::string, std::string> seen_;  // the row that a key is in
  WishFile file_;
  std::size_t faultCount_ = 0;
};

// The column's own text, which lasts; empty for a name that no column has.
std::string_view KnownColumn(std::string_view name) {
  for (const std::string_view key : {kServer, kIndex, kName}) {
    if (name == key) return key;
  }
  for (const Field field : kFields) {
    if (name == ColumnOf(field)) return ColumnOf(field);
  }
  return {};
}

bool IsIndex(std::string_view text) {
  std::uint32_t index = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), index);
  return error == std::errc() && end == text.data() + text.size() && std::to_string(index) == text;
}

WishFile CHostFileReader::Read() {
  if (ReadHeader()) ReadBody();
  for (const Message& fault : csv_.Faults()) Fault(fault.text, fault.arguments);
  if (faultCount_ > kMostFaults) {
    file_.faults.push_back({Text::MoreFaults, {std::to_string(faultCount_ - kMostFaults)}});
  }
  if (faultCount_ > 0) file_.wishes.clear();
  return std::move(file_);
}

bool CHostFileReader::ReadHeader() {
  CsvRow header;
  if (!csv_.Next(header)) {
    if (csv_.Faults().empty()) Fault(Text::FileEmpty, {});
    return false;
  }
  for (const std::string& name : header) {
    const std::string_view column = KnownColumn(name);
    const std::string place = std::to_string(columns_.size() + 1);
    columns_.push_back(column);
    if (column.empty()) {
      Fault(Text::ColumnUnknown, {place, name});
    } else if (!places_.emplace(column, columns_.size() - 1).second) {
      Fault(Text::ColumnTwice, {place, name});
    }
  }
  for (const std::string_view key : {kServer, kIndex}) {
    if (!places_.contains(key)) Fault(Text::ColumnMissing, {std::string(key)});
  }
  return faultCount_ == 0;
}

void CHostFileReader::ReadBody() {
  for (CsvRow row; csv_.Next(row);) ReadRow(row);
}

void CHostFileReader::ReadRow(const CsvRow& row) {
  if (row.size() != columns_.size()) {
    return Fault(Text::RowLength, {Row(), std::to_string(row.size()), std::to_string(columns_.size())});
  }
  Wish wish;
  bool good = true;
  for (std::size_t i = 0; i < row.size(); ++i) good = ReadCell(columns_[i], row[i], wish) && good;
  if (good) FindPort(Cell(row, kServer) + "/" + Cell(row, kIndex), wish);
}

bool CHostFileReader::ReadCell(std::string_view column, const std::string& cell, Wish& wish) {
  if (column == kServer) return Require(!cell.empty(), column, cell, "a device server's instance id");
  if (column == kIndex) return Require(IsIndex(cell), column, cell, "a port number");
  if (cell.empty()) return true;
  if (column == kName) {
    wish.number = ComNumber(cell);
    return Require(*wish.number != 0, column, cell, "a COM name from COM1 to COM255");
  }
  for (const Field field : kFields) {
    if (column != ColumnOf(field)) continue;
    wish.values[field] = ValueOf(field, cell);
    return Require(wish.values[field].has_value(), column, cell, RangeOf(field));
  }
  return true;
}

void CHostFileReader::FindPort(const std::string& key, Wish& wish) {
  const std::string folded = Folded(key);
  const auto [earlier, isNew] = seen_.emplace(folded, Row());
  if (!isNew) return Fault(Text::RowTwice, {Row(), key, earlier->second});
  const auto found = ports_.find(folded);
  if (found == ports_.end()) {
    return Fault(Text::NoSuchPort, {key + " (row " + Row() + ")"}, ExitCode::NoSuchPort);
  }
  if (found->second.size() > 1) return Fault(Text::RowAmbiguous, {Row(), key});
  wish.port = found->second.front();
  file_.wishes.push_back(wish);
}

bool CHostFileReader::Require(bool holds, std::string_view column, const std::string& cell,
                              std::string_view range) {
  if (!holds) Fault(Text::CellBad, {Row(), std::string(column), cell, std::string(range)});
  return holds;
}

// A bad file is the graver fault: what it says about ports is not to be trusted.
void CHostFileReader::Fault(Text text, std::vector<std::string> arguments, ExitCode exit) {
  if (file_.exit != ExitCode::BadUse) file_.exit = exit;
  if (faultCount_++ < kMostFaults) file_.faults.push_back({text, std::move(arguments)});
}

std::string ReadableText(Field field, const std::optional<std::uint32_t>& value) {
  return value && IsStorable(field, *value) ? TextOf(field, *value) : std::string();
}

}  // namespace

WishFile ReadHostFile(std::string_view document, const Host& host) {
  return CHostFileReader(document, host).Read();
}

std::string WriteHostFile(const Host& host, std::span<const std::size_t> ports) {
  CsvRow header = {std::string(kServer), std::string(kIndex), std::string(kName)};
  for (const Field field : kFields) header.emplace_back(ColumnOf(field));
  std::string document = CsvLine(header);
  for (const std::size_t i : ports) {
    const Port& port = host.ports[i];
    CsvRow row = {port.server, std::to_string(port.index), port.Number() != 0 ? port.name : std::string()};
    for (const Field field : kFields) row.push_back(ReadableText(field, port.values[field]));
    document += CsvLine(row);
  }
  return document;
}

}  // namespace KdPort
