#include "kdport/plan/check.h"

#include <algorithm>

namespace KdPort {

namespace {

// The COM name in the last brackets of a friendly name; empty when there is none.
std::string BracketedName(const std::string& friendlyName) {
  const std::size_t open = friendlyName.rfind("(COM");
  const std::size_t close = friendlyName.find(')', open == std::string::npos ? 0 : open);
  if (open == std::string::npos || close == std::string::npos) return {};
  return friendlyName.substr(open + 1, close - open - 1);
}

class CChecker {
 public:
  explicit CChecker(const Host& host) : host_(host), holders_(host) {}

  void CheckReadable();
  void CheckPort(std::size_t i);
  void FindGhosts();
  std::vector<Finding> Take() { return std::move(findings_); }

 private:
  void CheckShared(std::size_t i);
  void CheckFriendlyName(std::size_t i);
  void CheckDosDevice(std::size_t i);
  void CheckSerialMap(std::size_t i);
  void CheckDatabase(std::size_t i);
  void Find(std::size_t i, Text text, Place mend, std::vector<std::string> more);
  [[nodiscard]] bool IsForeign(const std::string& kernelDevice) const;
  [[nodiscard]] bool IsShared(const Port& port) const;

  const Host& host_;
  const CHolders holders_;
  std::vector<Finding> findings_;
};

void CChecker::CheckReadable() {
  if (!host_.claimed) findings_.push_back({.message = {Text::DatabaseClosed, {}}, .port = {}, .mend = {}});
}

void CChecker::CheckPort(std::size_t i) {
  const Port& port = host_.ports[i];
  if (!port.present) return;
  if (port.Number() == 0) return Find(i, Text::NameMissing, Place::None, {port.name});
  CheckShared(i);
  CheckFriendlyName(i);
  CheckDosDevice(i);
  CheckSerialMap(i);
  CheckDatabase(i);
}

void CChecker::CheckShared(std::size_t i) {
  const Port& port = host_.ports[i];
  for (const Holder& holder : holders_.Of(port.Number())) {
    if (holder.port == &port || !holder.IsPresent()) continue;
    Find(i, Text::NameShared, Place::None, {DisplayName(holder), port.name, port.Key()});
  }
}

// A friendly name without a COM name is somebody's own and disagrees with nothing.
void CChecker::CheckFriendlyName(std::size_t i) {
  const Port& port = host_.ports[i];
  const std::string shown = BracketedName(port.friendlyName);
  if (shown.empty() || Folded(shown) == Folded(port.name)) return;
  Find(i, Text::FriendlyNameDiffers, Place::FriendlyName, {port.friendlyName});
}

void CChecker::CheckDosDevice(std::size_t i) {
  const Port& port = host_.ports[i];
  if (!port.dosTarget) return Find(i, Text::DosDeviceMissing, Place::DosDevice, {port.name});
  if (port.kernelDevice.empty() || *port.dosTarget == port.kernelDevice) return;
  const Place mend = IsForeign(*port.dosTarget) ? Place::None : Place::DosDevice;
  Find(i, Text::DosDeviceElsewhere, mend, {port.name, *port.dosTarget, port.kernelDevice});
}

void CChecker::CheckSerialMap(std::size_t i) {
  const Port& port = host_.ports[i];
  if (port.kernelDevice.empty()) return;
  if (!port.mapName) return Find(i, Text::SerialMapMissing, Place::SerialMap, {port.kernelDevice});
  if (Folded(*port.mapName) == Folded(port.name)) return;
  Find(i, Text::SerialMapDiffers, Place::SerialMap, {port.kernelDevice, *port.mapName});
}

void CChecker::CheckDatabase(std::size_t i) {
  const Port& port = host_.ports[i];
  if (!host_.claimed || IsClaimed(host_, port.Number())) return;
  Find(i, Text::NumberUnclaimed, Place::Database, {port.name});
}

void CChecker::FindGhosts() {
  for (std::int32_t number = 1; number <= kHighestNumber; ++number) {
    const std::span<const Holder> holders = holders_.Of(number);
    if (!IsClaimed(host_, number) || std::ranges::any_of(holders, &Holder::IsPresent)) continue;
    Finding& finding = findings_.emplace_back();
    finding.message = {Text::Ghost, {ComName(number), FormerHolders(holders)}};
    const bool foreign = std::ranges::any_of(holders, [](const Holder& h) { return h.foreign != nullptr; });
    if (!foreign) finding.mend = Step{.kind = StepKind::Release, .to = number};
  }
}

// A name that two present devices have is mended by renaming one of them: until then, which of them the other
// places belong to is open.
void CChecker::Find(std::size_t i, Text text, Place mend, std::vector<std::string> more) {
  const Port& port = host_.ports[i];
  more.insert(more.begin(), DisplayName(port));
  Finding& finding = findings_.emplace_back();
  finding.message = {text, std::move(more)};
  finding.port = i;
  const bool decided = mend == Place::FriendlyName || !IsShared(port);
  const bool known = mend != Place::DosDevice || !port.kernelDevice.empty();
  if (mend != Place::None && decided && known) {
    finding.mend = Step{.kind = StepKind::Mend, .port = i, .place = mend};
  }
}

bool CChecker::IsForeign(const std::string& kernelDevice) const {
  return std::ranges::find(host_.foreign, kernelDevice, &ForeignDevice::kernelDevice) != host_.foreign.end();
}

bool CChecker::IsShared(const Port& port) const {
  return std::ranges::count_if(holders_.Of(port.Number()), &Holder::IsPresent) > 1;
}

}  // namespace

std::vector<Finding> CheckHost(const Host& host, std::span<const std::size_t> ports, bool ghosts) {
  CChecker checker(host);
  checker.CheckReadable();
  for (const std::size_t i : ports) checker.CheckPort(i);
  if (ghosts) checker.FindGhosts();
  return checker.Take();
}

std::vector<Step> RepairSteps(std::span<const Finding> findings, bool releaseGhosts) {
  std::vector<Step> steps;
  for (const Finding& finding : findings) {
    if (!finding.mend || (finding.mend->kind == StepKind::Release && !releaseGhosts)) continue;
    steps.push_back(*finding.mend);
  }
  return steps;
}

}  // namespace KdPort
