// The places of one port's COM name: what they hold, and making them agree with "PortName".
#pragma once

#include <cstdint>
#include <string>

#include "install/naming/com_port_util.h"
#include "kdport/plan/step.h"

namespace KdPort {

class CComPlaces {
 public:
  // `kernelDevice`: what the DOS device has to point at; empty when unknown.
  CComPlaces(CCOMPortUtil& port, const std::string& kernelDevice);

  // "PortName"; empty when it cannot be read.
  [[nodiscard]] const CWideString& Name() const noexcept { return name_; }
  // Makes one place agree; true when it does afterwards.
  [[nodiscard]] bool Mend(Place place);
  // The first place that does not agree; Place::None when all do.
  [[nodiscard]] Place FirstWrong();
  // Takes another name away that still leads to the port's kernel device; false when that is refused.
  [[nodiscard]] bool RemoveStray(const CWideString& other);
  // The same for all COM names.
  [[nodiscard]] bool RemoveStrays();

  // Whether the COM name database answers, and has a number free, respectively claimed.
  [[nodiscard]] bool IsFree(std::int32_t number);
  [[nodiscard]] bool IsClaimed(std::int32_t number);
  [[nodiscard]] bool Release(std::int32_t number);

 private:
  [[nodiscard]] bool Agrees(Place place);
  [[nodiscard]] bool HasFriendlyName();
  [[nodiscard]] bool IsMapped();
  [[nodiscard]] bool MendFriendlyName();
  [[nodiscard]] bool MendDosDevice();

  CCOMPortUtil& port_;
  CWideString name_;
  CWideString kernelDevice_;
};

// The text that messages call a place by.
[[nodiscard]] std::string PlaceText(Place place);

}  // namespace KdPort
