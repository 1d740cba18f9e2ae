// Two pieces of work compared within one run, and the lines of the table that docs/benchmarks.md shows.
//
// The two run in turn, so that whatever else the machine does falls on both alike; what counts is the ratio,
// never the time.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace bench {

// What is measured; called often. `run` and `tidy` together leave things as they found them, and `tidy`,
// where there is one, does not count.
struct Work {
  std::function<void()> run;
  std::function<void()> tidy = {};
};

struct Comparison {
  double here = 0;     // seconds for one run, median of the rounds
  double against = 0;  // the same of the other work
  double ratio = 0;    // median of the rounds' ratios
  double low = 0;      // their quartiles
  double high = 0;
  std::size_t rounds = 0;
};

struct Patience {
  double sampleSeconds = 0.002;  // each work is repeated for about that long in a round
  std::size_t batch = 31;        // rounds between two looks at the ratio
  std::size_t mostRounds = 620;
  double tolerance = 0.01;  // stable: two batches in a row moved the ratio by no more than this share
};

// Runs both in turn, in changing order, until the ratio is stable or patience ends.
[[nodiscard]] Comparison Compare(const Work& here, const Work& against, const Patience& patience = {});

// "412 ns", "1.35 ms".
[[nodiscard]] std::string TimeText(double seconds);

// One line of the table: what, here, against what, ratio and the bound that it is to keep, where it has one.
// `spread` says how sure the ratio is. Returns whether the bound is kept, and remembers it for ExitStatus.
bool PrintRow(const std::string& figure, const std::string& here, const std::string& against, double ratio,
              std::optional<double> bound = {}, const std::string& spread = {});
// The line of a comparison; `other` names the other work.
bool PrintRow(const std::string& figure, const std::string& other, const Comparison& comparison,
              std::optional<double> bound = {});

// 0 when every printed bound was kept.
[[nodiscard]] int ExitStatus();

// Makes the compiler believe that `value` is used and changed.
template <class T>
inline void Keep(T& value) {
  asm volatile("" : : "g"(&value) : "memory");
}

}  // namespace bench
