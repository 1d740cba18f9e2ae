#include "ui/tcp_ip_rules.h"

namespace {

bool Adopt(std::uint32_t& parameter, std::uint32_t value) noexcept {
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

bool AdoptFields(CKdNBusUserModeInterface& set, const TcpIpFields& fields) noexcept {
  const std::uint32_t ignore = fields.verification ? 0 : 1;
  bool changed = Adopt(set.PortNumber, fields.tcpPort);
  changed = Adopt(set.ConnectionAttemptTimeout, fields.attemptTimeout) || changed;
  changed = Adopt(set.ConnectionIdleTimeout, fields.idleTimeout) || changed;
  changed = Adopt(set.IgnoreModelChecking, ignore) || changed;
  changed = Adopt(set.IgnoreForceProtocol, ignore) || changed;
  return changed;
}
