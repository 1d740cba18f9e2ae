#include "kdport/plan/planner.h"

#include <algorithm>
#include <array>
#include <set>

#include "kdport/plan/rename_order.h"

namespace KdPort {

namespace {

class CPlanner {
 public:
  CPlanner(const Host& host, const std::vector<Wish>& wishes, bool force)
      : host_(host), holders_(host), force_(force) {
    for (const Wish& wish : wishes) wishes_.push_back(OnlyChanges(wish));
  }

  Plan Make() {
    CollectMoves();
    for (const Wish& wish : wishes_) CheckPort(wish);
    for (const Move& move : moves_) {
      CheckTarget(move);
      CheckDosDevice(move);
    }
    if (plan_.obstacles.empty()) PlanRenames();
    for (const Wish& wish : wishes_) PlanValues(wish);
    if (!plan_.obstacles.empty()) plan_.steps.clear();
    return std::move(plan_);
  }

 private:
  [[nodiscard]] const Port& PortOf(std::size_t i) const { return host_.ports[i]; }
  [[nodiscard]] bool Moves(const Holder& holder) const {
    return holder.port != nullptr &&
           moving_.contains(static_cast<std::size_t>(holder.port - host_.ports.data()));
  }
  Wish OnlyChanges(Wish wish) const;
  void CollectMoves();
  void CheckPort(const Wish& wish);
  void CheckTarget(const Move& move);
  void CheckDosDevice(const Move& move);
  [[nodiscard]] bool IsGhost(std::int32_t number) const;
  void CheckValues(const Wish& wish);
  void CheckBaud(const Wish& wish);
  void PlanRenames();
  void TakeMove(const Move& move);
  void MendWhoStays(std::int32_t number);
  void Mend(std::size_t port, Place place) {
    plan_.steps.push_back({.kind = StepKind::Mend, .port = port, .place = place});
  }
  void PlanValues(const Wish& wish);
  [[nodiscard]] HeldNumbers Held() const;
  void Hinder(std::size_t port, Text text, std::vector<std::string> more = {});

  const Host& host_;
  const CHolders holders_;
  const bool force_;
  std::vector<Wish> wishes_;
  std::vector<Move> moves_;
  std::set<std::size_t> moving_;
  std::array<const Move*, kHighestNumber + 1> wanting_{};
  std::vector<std::int32_t> numbers_;  // of the host's ports, as the steps so far leave them
  Plan plan_;
};

Wish CPlanner::OnlyChanges(Wish wish) const {
  const Port& port = PortOf(wish.port);
  if (wish.number == port.Number()) wish.number.reset();
  for (const Field field : kFields) {
    if (wish.values[field] == port.values[field]) wish.values[field].reset();
  }
  return wish;
}

void CPlanner::CollectMoves() {
  for (const Wish& wish : wishes_) {
    if (!wish.number) continue;
    moves_.push_back({wish.port, PortOf(wish.port).Number(), *wish.number});
    moving_.insert(wish.port);
    plan_.changes.push_back({wish.port, "name", PortOf(wish.port).name, ComName(*wish.number)});
  }
}

void CPlanner::CheckPort(const Wish& wish) {
  const Port& port = PortOf(wish.port);
  if (!wish.number && wish.values.IsEmpty()) return;
  if (!port.present) return Hinder(wish.port, Text::PortAbsent);
  if (port.open && !force_) Hinder(wish.port, Text::PortOpen);
  CheckValues(wish);
}

void CPlanner::CheckTarget(const Move& move) {
  const std::string target = ComName(move.to);
  if (move.from == 0) return Hinder(move.port, Text::PortNameless);
  if (!host_.claimed) return Hinder(move.port, Text::DatabaseUnread, {target});
  const Move*& wanting = wanting_[static_cast<std::size_t>(move.to)];
  if (wanting != nullptr) {
    return Hinder(move.port, Text::NumberWantedTwice, {target, PortOf(wanting->port).Key()});
  }
  wanting = &move;
  const std::span<const Holder> holders = holders_.Of(move.to);
  if (IsGhost(move.to)) return Hinder(move.port, Text::NumberGhost, {target, FormerHolders(holders)});
  for (const Holder& holder : holders) {
    if (!Moves(holder)) return Hinder(move.port, Text::NumberHeld, {target, DisplayName(holder)});
  }
}

// What `repair` would release.
bool CPlanner::IsGhost(std::int32_t number) const {
  return IsClaimed(host_, number) && std::ranges::none_of(holders_.Of(number), [](const Holder& holder) {
           return holder.foreign != nullptr || holder.IsPresent();
         });
}

void CPlanner::CheckValues(const Wish& wish) {
  for (const Field field : kFields) {
    const auto& value = wish.values[field];
    if (!value) continue;
    const std::string column(ColumnOf(field));
    if (!PortOf(wish.port).values[field]) {
      Hinder(wish.port, Text::ValueUnread, {column});
    } else if (!IsStorable(field, *value)) {
      Hinder(wish.port, Text::ValueNotStorable, {column, TextOf(field, *value)});
    }
  }
  CheckBaud(wish);
}

void CPlanner::CheckBaud(const Wish& wish) {
  const Port& port = PortOf(wish.port);
  const auto& baud = wish.values[Field::Baud];
  if (!baud || port.highestBaud == 0 || (*baud >= port.lowestBaud && *baud <= port.highestBaud)) return;
  Hinder(wish.port, Text::BaudUnsupported,
         {std::to_string(*baud), std::to_string(port.lowestBaud), std::to_string(port.highestBaud)});
}

// A rename takes the DOS device of the old name along, whosever it is.
void CPlanner::CheckDosDevice(const Move& move) {
  const Port& port = PortOf(move.port);
  if (!port.present || move.from == 0) return;
  if (!port.dosTarget && port.kernelDevice.empty()) return Hinder(move.port, Text::NoDosDevice);
  for (const ForeignDevice& device : host_.foreign) {
    const bool shares = device.present && ComNumber(device.name) == move.from;
    const bool points = !device.kernelDevice.empty() && port.dosTarget == device.kernelDevice;
    if (shares || points) Hinder(move.port, Text::SharedWithForeign, {DisplayName(Holder{nullptr, &device})});
  }
}

void CPlanner::PlanRenames() {
  for (const Port& port : host_.ports) numbers_.push_back(port.Number());
  const RenameOrder order = OrderRenames(moves_, Held());
  for (const Move& move : order.blocked) Hinder(move.port, Text::NoFreeNumber, {ComName(move.to)});
  for (const Move& move : order.moves) TakeMove(move);
}

// The port's own DOS device has to be there to be taken along.
void CPlanner::TakeMove(const Move& move) {
  const Port& port = PortOf(move.port);
  const bool isOwn = port.dosTarget && (port.kernelDevice.empty() || *port.dosTarget == port.kernelDevice);
  const bool first = move.from == port.Number();
  if (first && !isOwn) Mend(move.port, Place::DosDevice);
  plan_.steps.push_back({.kind = StepKind::Rename, .port = move.port, .from = move.from, .to = move.to});
  numbers_[move.port] = move.to;
  MendWhoStays(move.from);
}

// A rename releases the number and takes the DOS device away. Where another port has the same name, it needs
// both.
void CPlanner::MendWhoStays(std::int32_t number) {
  for (std::size_t i = 0; i < numbers_.size(); ++i) {
    if (numbers_[i] != number || !PortOf(i).present) continue;
    Mend(i, Place::Database);
    Mend(i, Place::DosDevice);
    Mend(i, Place::SerialMap);
  }
}

void CPlanner::PlanValues(const Wish& wish) {
  const Port& port = PortOf(wish.port);
  for (const Field field : kFields) {
    const auto& before = port.values[field];
    if (!wish.values[field]) continue;
    plan_.changes.push_back({wish.port, std::string(ColumnOf(field)),
                             before ? TextOf(field, *before) : std::string(),
                             TextOf(field, *wish.values[field])});
  }
  for (const FieldGroup group : {FieldGroup::Settings, FieldGroup::Network}) {
    const CFieldValues values = wish.values.Of(group);
    if (values.IsEmpty()) continue;
    plan_.steps.push_back({.kind = StepKind::Store, .port = wish.port, .values = values});
  }
}

HeldNumbers CPlanner::Held() const {
  HeldNumbers held{};
  for (std::int32_t number = 1; number <= kHighestNumber; ++number) {
    const std::size_t holders = holders_.Of(number).size();
    held[static_cast<std::size_t>(number)] = holders == 0 && IsClaimed(host_, number) ? 1 : holders;
  }
  return held;
}

void CPlanner::Hinder(std::size_t port, Text text, std::vector<std::string> more) {
  more.insert(more.begin(), DisplayName(PortOf(port)));
  plan_.obstacles.push_back({port, {text, std::move(more)}});
}

}  // namespace

Plan MakePlan(const Host& host, const std::vector<Wish>& wishes, bool force) {
  return CPlanner(host, wishes, force).Make();
}

}  // namespace KdPort
