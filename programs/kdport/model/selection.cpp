#include "kdport/model/selection.h"

#include <set>

namespace KdPort {

namespace {

// Both folded. Steps back to the last star only, so that the time stays in bounds whatever the pattern.
bool Matches(std::string_view pattern, std::string_view name) {
  constexpr std::size_t kNone = std::string_view::npos;
  std::size_t p = 0, n = 0, star = kNone, resume = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      resume = n;
    } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
      ++p;
      ++n;
    } else if (star != kNone) {
      p = star + 1;
      n = ++resume;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == kNone;
}

bool IsNamed(const Port& port, const std::string& word) {
  return word == Folded(port.name) || word == Folded(port.instanceId) || word == Folded(port.Key());
}

bool IsMeant(const Port& port, const std::string& word) {
  if (word == "ALL") return port.present;
  if (!word.empty() && IsNamed(port, word)) return true;
  const bool wildcard = word.find_first_of("*?") != std::string::npos;
  return wildcard && port.present && port.Number() != 0 && Matches(word, Folded(port.name));
}

// The absent only where nobody present answers: many have the name of their successor.
std::vector<std::size_t> PlacesOf(const Host& host, const std::string& word) {
  std::vector<std::size_t> present, absent;
  for (std::size_t i = 0; i < host.ports.size(); ++i) {
    if (IsMeant(host.ports[i], word)) (host.ports[i].present ? present : absent).push_back(i);
  }
  return present.empty() ? absent : present;
}

}  // namespace

Selection Select(const Host& host, const std::vector<std::string>& words) {
  Selection selection;
  std::set<std::size_t> chosen;
  for (const std::string& word : words) {
    const std::vector<std::size_t> meant = PlacesOf(host, Folded(word));
    if (meant.empty()) selection.unmatched.push_back(word);
    chosen.insert(meant.begin(), meant.end());
  }
  selection.ports.assign(chosen.begin(), chosen.end());
  return selection;
}

}  // namespace KdPort
