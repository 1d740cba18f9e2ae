#include "measure.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <vector>

namespace bench {
namespace {

bool allKept = true;

// Natively it is the thread's processor time, which other work on the machine does not touch. What a Windows
// program does is partly done by other processes, so there it is the time that passes.
double Now() {
#ifdef _WIN32
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
#else
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
#endif
}

// Seconds that one of `times` runs takes. Without anything to tidy the clock is read only twice.
double Sample(const Work& work, std::size_t times) {
  double seconds = 0;
  const std::size_t runs = work.tidy ? 1 : times;
  for (std::size_t done = 0; done < times; done += runs) {
    const double start = Now();
    for (std::size_t i = 0; i < runs; ++i) work.run();
    seconds += Now() - start;
    if (work.tidy) work.tidy();
  }
  return seconds / static_cast<double>(times);
}

// How many runs fill a sample.
std::size_t TimesFor(const Work& work, double sampleSeconds) {
  std::size_t times = 1;
  double one = Sample(work, times);
  while (one * static_cast<double>(times) < sampleSeconds / 4 && times < (std::size_t{1} << 30)) {
    times *= 4;
    one = Sample(work, times);
  }
  return std::max<std::size_t>(1, static_cast<std::size_t>(sampleSeconds / one));
}

double Quantile(std::vector<double> values, double share) {
  std::ranges::sort(values);
  return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1) + 0.5)];
}

}  // namespace

Comparison Compare(const Work& here, const Work& against, const Patience& patience) {
  const std::size_t timesHere = TimesFor(here, patience.sampleSeconds);
  const std::size_t timesAgainst = TimesFor(against, patience.sampleSeconds);
  std::vector<double> samplesHere, samplesAgainst, ratios;
  double last = 0;
  for (int calm = 0; calm < 2 && ratios.size() < patience.mostRounds;) {
    for (std::size_t i = 0; i < patience.batch; ++i) {
      const bool first = i % 2 == 0;
      const double one = first ? Sample(here, timesHere) : Sample(against, timesAgainst);
      const double two = first ? Sample(against, timesAgainst) : Sample(here, timesHere);
      samplesHere.push_back(first ? one : two);
      samplesAgainst.push_back(first ? two : one);
      ratios.push_back(samplesHere.back() / samplesAgainst.back());
    }
    const double ratio = Quantile(ratios, 0.5);
    calm = std::abs(ratio - last) <= patience.tolerance * ratio ? calm + 1 : 0;
    last = ratio;
  }
  return {.here = Quantile(samplesHere, 0.5),
          .against = Quantile(samplesAgainst, 0.5),
          .ratio = last,
          .low = Quantile(ratios, 0.25),
          .high = Quantile(ratios, 0.75),
          .rounds = ratios.size()};
}

std::string TimeText(double seconds) {
  const struct {
    double least;
    double unit;
    const char* name;
  } units[] = {{1, 1, "s"}, {1e-3, 1e-3, "ms"}, {1e-6, 1e-6, "us"}, {0, 1e-9, "ns"}};
  for (const auto& unit : units) {
    if (seconds < unit.least) continue;
    char text[32];
    std::snprintf(text, sizeof text, "%.3g %s", seconds / unit.unit, unit.name);
    return text;
  }
  return "?";
}

bool PrintRow(const std::string& figure, const std::string& here, const std::string& against, double ratio,
              std::optional<double> bound, const std::string& spread) {
  const bool kept = !bound || ratio <= *bound;
  allKept = allKept && kept;
  char limit[32] = "";
  if (bound) std::snprintf(limit, sizeof limit, kept ? "%.2f" : "%.2f **exceeded**", *bound);
  std::printf("| %s | %s | %s | %.2f%s | %s |\n", figure.c_str(), here.c_str(), against.c_str(), ratio,
              spread.c_str(), limit);
  std::fflush(stdout);
  return kept;
}

bool PrintRow(const std::string& figure, const std::string& other, const Comparison& comparison,
              std::optional<double> bound) {
  char spread[64];
  std::snprintf(spread, sizeof spread, " (%.2f to %.2f, %zu rounds)", comparison.low, comparison.high,
                comparison.rounds);
  return PrintRow(figure, TimeText(comparison.here), other + ": " + TimeText(comparison.against),
                  comparison.ratio, bound, spread);
}

int ExitStatus() {
  return allKept ? 0 : 1;
}

}  // namespace bench
