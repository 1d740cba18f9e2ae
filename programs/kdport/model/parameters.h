// Between kdport's fields and the drivers' two parameter sets.
#pragma once

#include "config/settings_rules.h"
#include "kdport/model/fields.h"

namespace KdPort {

// What the sets hold; a null set leaves its fields unset.
[[nodiscard]] CFieldValues FieldsOf(const CVcpParameters* port, const CKdNBusUserModeInterface* bus);

// The set's own values, but for those that `changes` has: what a settings update is called with, so that what
// nobody named stays as it is.
[[nodiscard]] LineSettings SettingsWith(const CVcpParameters& port, const CFieldValues& changes);
[[nodiscard]] NetworkInfo NetworkWith(const CVcpParameters& port, const CKdNBusUserModeInterface& bus,
                                      const CFieldValues& changes);

}  // namespace KdPort
