// What kdport does to a host, in as few operations as it takes. On Windows they are made of the product's own
// rooms; tests have a host of their own.
#pragma once

#include <cstdint>
#include <string>

#include "kdport/model/host.h"
#include "kdport/plan/step.h"

namespace KdPort {

// How an operation ended. After one that was not done, the port counts as what it was before.
struct Outcome {
  enum Kind { Done, Failed, Gone, NoRights };
  Kind kind = Done;
  std::string detail;  // of Failed: what refused, and Windows' words for why
};

class CHostAccess {
 public:
  virtual ~CHostAccess() = default;

  // Reads the whole host. What one device does not answer stays unset and is no failure.
  [[nodiscard]] virtual Outcome Read(Host& host) = 0;
  // Gives the port another COM name, in all places and unasked. `port` is as it stands now.
  [[nodiscard]] virtual Outcome Rename(const Port& port, std::int32_t number) = 0;
  // Stores these values, all of one group, and keeps the driver's others.
  [[nodiscard]] virtual Outcome Store(const Port& port, const CFieldValues& values) = 0;
  // Makes one place agree with the port's "PortName".
  [[nodiscard]] virtual Outcome Mend(const Port& port, Place place) = 0;
  // Gives a number back to the COM name database.
  [[nodiscard]] virtual Outcome Release(std::int32_t number) = 0;
};

}  // namespace KdPort
