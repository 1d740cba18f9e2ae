#include "ui/tcp_ip_rules.h"

namespace {

bool Store(std::uint32_t& parameter, std::uint32_t value) noexcept {
  if (parameter == value) return false;
  parameter = value;
  return true;
}

bool IsVerifying(const CKdNBusUserModeInterface& set) noexcept {
  return set.IgnoreModelChecking == 0 || set.IgnoreForceProtocol == 0;
}

}  // namespace

TcpIpFields FieldsOf(const CKdNBusUserModeInterface& set) noexcept {
  return {.tcpPort = set.PortNumber,
          .attemptTimeout = set.ConnectionAttemptTimeout,
          .idleTimeout = set.ConnectionIdleTimeout,
          .verification = IsVerifying(set)};
}

TcpIpFields RestoredFields(const CKdNBusUserModeInterface& current,
                           const CKdNBusUserModeInterface& defaults) noexcept {
  TcpIpFields fields = FieldsOf(defaults);
  fields.tcpPort = current.PortNumber;
  return fields;
}

bool ApplyFields(CKdNBusUserModeInterface& set, const TcpIpFields& fields) noexcept {
  const std::uint32_t ignore = fields.verification ? 0 : 1;
  bool changed = Store(set.PortNumber, fields.tcpPort);
  changed = Store(set.ConnectionAttemptTimeout, fields.attemptTimeout) || changed;
  changed = Store(set.ConnectionIdleTimeout, fields.idleTimeout) || changed;
  changed = Store(set.IgnoreModelChecking, ignore) || changed;
  changed = Store(set.IgnoreForceProtocol, ignore) || changed;
  return changed;
}
