#include "install/naming/sort_plan.h"

#include <algorithm>

#include "base/decimal.h"
#include "install/naming/com_names.h"

namespace {

std::vector<std::int32_t> NumbersOf(const std::vector<CWideString>& names) {
  std::vector<std::int32_t> numbers;
  numbers.reserve(names.size());
  for (const CWideString& name : names) numbers.push_back(ComNumberOf(name.View()));
  return numbers;
}

class CSorter {
 public:
  CSorter(std::vector<CWideString> names, CSortSteps& steps) : names_(std::move(names)), steps_(steps) {}

  [[nodiscard]] bool Run() {
    std::vector<std::int32_t> targets = NumbersOf(names_);
    std::ranges::sort(targets);
    for (std::size_t child = 0; child < names_.size(); ++child) {
      if (!Place(child, targets[child])) return false;
    }
    return true;
  }

 private:
  [[nodiscard]] bool Place(std::size_t child, std::int32_t target) {
    if (ComNumberOf(names_[child].View()) == target) return true;
    const CWideString targetName = ComNameOf(target);
    // By name, not by number: a holder called "COM07" has the number 7 and not the name "COM7".
    const auto holder = std::ranges::find(names_, targetName);
    if (holder == names_.end()) return Rename(child, targetName);
    return Swap(child, static_cast<std::size_t>(holder - names_.begin()), targetName);
  }

  [[nodiscard]] bool Swap(std::size_t child, std::size_t holder, const CWideString& targetName) {
    const std::optional<std::int32_t> aside = steps_.FreeNumber();
    if (!aside) return true;  // Kept on purpose: no free number
    const CWideString formerName = names_[child];
    return Rename(holder, ComNameOf(*aside)) && Rename(child, targetName) && Rename(holder, formerName);
  }

  [[nodiscard]] bool Rename(std::size_t child, const CWideString& newName) {
    if (!steps_.Rename(child, newName)) return false;
    // The rename may have been declined.
    steps_.ReadName(child, names_[child]);
    return true;
  }

  std::vector<CWideString> names_;
  CSortSteps& steps_;
};

}  // namespace

bool NeedsSorting(const std::vector<CWideString>& names) {
  return !std::ranges::is_sorted(NumbersOf(names));
}

bool SortNames(std::vector<CWideString> names, CSortSteps& steps) {
  return CSorter(std::move(names), steps).Run();
}
