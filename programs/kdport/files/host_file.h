// The text file of names and settings that `export` writes and `apply` reads: one row for a port, the key
// columns server and index first.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kdport/model/exit_code.h"
#include "kdport/model/host.h"
#include "kdport/model/texts.h"
#include "kdport/plan/wish.h"

namespace KdPort {

struct WishFile {
  ExitCode exit = ExitCode::Done;  // BadUse for a bad file, NoSuchPort when a row's port is not on the host
  std::vector<Message> faults;     // each with its row, at most a hundred
  std::vector<Wish> wishes;        // none unless the whole file is good
};

// Reads a file. Only columns that are there are wished for, and an empty cell wishes for nothing.
[[nodiscard]] WishFile ReadHostFile(std::string_view document, const Host& host);

// The present names and values of these ports, in UTF-8 with CR LF. A cell stays empty where reading it back
// could not bring the value back: without a well-formed name, without an answer of the driver.
[[nodiscard]] std::string WriteHostFile(const Host& host, std::span<const std::size_t> ports);

}  // namespace KdPort
