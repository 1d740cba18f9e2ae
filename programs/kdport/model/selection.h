// Which ports the words of a command line mean.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "kdport/model/host.h"

namespace KdPort {

struct Selection {
  std::vector<std::size_t> ports;      // places in the host's list, rising, each once
  std::vector<std::string> unmatched;  // words that no port answers to
};

// A word is a COM name, a device instance id, SERVER/INDEX, a wildcard (* and ?) over COM names, or `all`;
// upper and lower case are the same. The last two mean ports that are present; the others find an absent one
// too, where no present one answers to them.
[[nodiscard]] Selection Select(const Host& host, const std::vector<std::string>& words);

}  // namespace KdPort
