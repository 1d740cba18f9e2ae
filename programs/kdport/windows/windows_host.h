// kdport's host: the computer that it runs on, by way of the product's own rooms, so that names and settings
// change as everywhere else in the product. Nothing here shows a window. One object serves one thread.
#pragma once

#include <map>
#include <string>

#include "base/wide_string.h"
#include "kdport/run/host_access.h"

namespace KdPort {

class CWindowsHost : public CHostAccess {
 public:
  [[nodiscard]] Outcome Read(Host& host) override;
  // After a rename that is not done, the port's places are made to agree with the name that it still has.
  [[nodiscard]] Outcome Rename(const Port& port, std::int32_t number) override;
  // Read back afterwards. A port that is open is restarted.
  [[nodiscard]] Outcome Store(const Port& port, const CFieldValues& values) override;
  [[nodiscard]] Outcome Mend(const Port& port, Place place) override;
  [[nodiscard]] Outcome Release(std::int32_t number) override;

  // The path of the port's configuration interface; empty for a port without one.
  [[nodiscard]] CWideString InterfaceOf(const Port& port) const;

 private:
  [[nodiscard]] Outcome StoreSettings(const Port& port, const CFieldValues& values);
  [[nodiscard]] Outcome StoreNetwork(const Port& port, const CFieldValues& values);
  [[nodiscard]] Outcome CheckStored(const Port& port, const CFieldValues& values) const;

  std::map<std::string, CWideString> interfaces_;  // by the ports' instance ids
};

}  // namespace KdPort
