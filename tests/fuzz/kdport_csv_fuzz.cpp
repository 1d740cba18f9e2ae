// Hostile files for `kdport apply`: read in bounded time and space, refused whole or understood whole, and
// what is written reads back as what it was.
#include "../kdport_machine.h"
#include "fuzz_checks.h"
#include "kdport/files/csv.h"
#include "kdport/files/host_file.h"

namespace {

using namespace KdPort;

void CheckRows(std::string_view document) {
  CCsvReader reader(document);
  std::size_t last = 0;
  for (CsvRow row; reader.Next(row);) {
    Require(!row.empty(), "a row has cells");
    Require(reader.RowNumber() > last, "row numbers rise");
    last = reader.RowNumber();
    if (row.size() == 1 && row.front().empty())
      continue;  // a quoted empty cell, which is written as an empty line
    const std::string line = "a byte order mark counts in the first row only\n" + CsvLine(row);
    CCsvReader again(line);
    CsvRow copy;
    Require(again.Next(copy) && again.Next(copy) && copy == row, "a row that is written reads back");
  }
  Require(reader.Faults().size() <= 1, "reading ends at the first fault");
}

void CheckWishes(std::string_view document) {
  Host host = MakeHost({5, 6, 7});
  const WishFile file = ReadHostFile(document, host);
  Require(file.faults.empty() == (file.exit == ExitCode::Done), "a file is good, or its faults are named");
  Require(file.faults.empty() || file.wishes.empty(), "nothing is wished for by a bad file");
  Require(file.faults.size() <= 101, "faults are bounded");
  std::vector<std::size_t> ports;
  for (const Wish& wish : file.wishes) {
    Require(wish.port < host.ports.size() && wish.number.value_or(1) >= 1 &&
                wish.number.value_or(1) <= kHighestNumber,
            "a wish is for a port and a number that there are");
    Port& port = host.ports[wish.port];
    if (wish.number) port.name = ComName(*wish.number);
    for (const Field field : kFields) {
      if (wish.values[field]) port.values[field] = wish.values[field];
    }
    ports.push_back(wish.port);
  }
  const WishFile again = ReadHostFile(WriteHostFile(host, ports), host);
  Require(again.exit == ExitCode::Done && again.wishes.size() == ports.size(),
          "what is written is a good file");
  for (const Wish& wish : again.wishes) {
    for (const Field field : kFields) {
      const auto& value = host.ports[wish.port].values[field];
      Require(!value || !IsStorable(field, *value) || wish.values[field] == value,
              "values survive in a file");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string document(data, data + size);
  CheckRows(document);
  CheckWishes(document);
  return 0;
}
