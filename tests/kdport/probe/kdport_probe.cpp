#include "tests/kdport/probe/kdport_probe.h"

#include <algorithm>
#include <exception>
#include <string>
#include <vector>

#include "kdport/commands/kdport.h"
#include "kdport/windows/windows_surroundings.h"

namespace {

// The host is the real one, which is the workbench's; the rest is the test's.
class CProbeSurroundings : public KdPort::CWindowsSurroundings {
 public:
  explicit CProbeSurroundings(ProbeRun& run) : run_(run) {}

  [[nodiscard]] bool IsAdministrator() override { return run_.administrator; }
  [[nodiscard]] bool ReadFile(const std::string&, std::string& content) override {
    if (run_.file == nullptr) return false;
    content = run_.file;
    return true;
  }
  [[nodiscard]] KdPort::FileResult WriteFile(const std::string&, std::string_view content, bool) override {
    if (!run_.filesAreWritable) return KdPort::FileResult::Failed;
    std::ranges::copy(content.substr(0, ProbeRun::kRoom - 1), run_.written.begin());
    return KdPort::FileResult::Done;
  }
  void Print(std::string_view text) override {
    const std::size_t room = ProbeRun::kRoom - 1 - length_;
    std::ranges::copy(text.substr(0, room), run_.printed.begin() + static_cast<std::ptrdiff_t>(length_));
    length_ += std::min(room, text.size());
  }
  void PrintError(std::string_view text) override { Print(text); }
  [[nodiscard]] bool IsInterrupted() override { return step_++ == run_.interruptAt; }

 private:
  ProbeRun& run_;
  std::size_t length_ = 0;
  int step_ = 0;
};

}  // namespace

extern "C" __declspec(dllexport) int RunKdPortProbe(ProbeRun* run) {
  CProbeSurroundings surroundings(*run);
  try {
    return KdPort::RunKdPort(std::vector<std::string>(run->words, run->words + run->count), surroundings);
  } catch (const std::exception&) {
    return -1;
  }
}
