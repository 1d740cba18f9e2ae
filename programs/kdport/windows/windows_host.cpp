#include "kdport/windows/windows_host.h"

#include "config/driver_channel.h"
#include "config/settings_update.h"
#include "install/naming/com_database.h"
#include "install/naming/rename_com_port.h"
#include "kdport/model/parameters.h"
#include "kdport/windows/com_places.h"
#include "kdport/windows/host_reader.h"
#include "kdport/windows/open_device.h"
#include "kdport/windows/text.h"

namespace KdPort {

namespace {

Outcome Failure(std::string what) {
  return {Outcome::Failed, std::move(what)};
}

Outcome Unanswered() {
  return Failure("its driver does not answer");
}

Outcome Refused() {
  return Failure("its driver refused the values");
}

// What a rename that has ended leaves to be done, and how it counts.
class CSettlement {
 public:
  CSettlement(CCOMPortUtil& util, const Port& port, std::int32_t wanted)
      : places_(util, port.kernelDevice.empty() ? port.dosTarget.value_or("") : port.kernelDevice),
        before_(port.Number()),
        wanted_(wanted),
        renamed_(places_.Name() == ComNameOf(wanted)) {}

  [[nodiscard]] Outcome Settle() {
    if (places_.Name().IsEmpty()) return Failure("PortName cannot be read any more");
    if (!renamed_) what_ = PlaceText(places_.FirstWrong()) + " cannot be changed";
    // Only who had given the old number up has taken the new one.
    const bool leftBehind = renamed_ || places_.IsFree(before_);
    for (const Place place : {Place::DosDevice, Place::SerialMap, Place::Database, Place::FriendlyName}) {
      if (!places_.Mend(place)) what_ = PlaceText(place) + " cannot be changed: kdport repair mends it";
    }
    const std::int32_t left = renamed_ ? before_ : wanted_;
    if (!places_.RemoveStray(ComNameOf(left)))
      what_ = "the DOS device " + ComName(left) + " cannot be removed";
    if (leftBehind) Release(left);
    return what_.empty() ? Outcome() : Failure(what_);
  }

 private:
  void Release(std::int32_t number) {
    if (places_.IsFree(number) || (places_.Release(number) && places_.IsFree(number))) return;
    what_ = ComName(number) + " cannot be released in the COM name database";
  }

  CComPlaces places_;
  const std::int32_t before_;
  const std::int32_t wanted_;
  const bool renamed_;
  std::string what_;
};

}  // namespace

Outcome CWindowsHost::Read(Host& host) {
  return ReadWindowsHost(host, interfaces_);
}

Outcome CWindowsHost::Rename(const Port& port, std::int32_t number) {
  COpenDevice device;
  if (Outcome opened = device.Open(port.instanceId); opened.kind != Outcome::Done) return opened;
  CCOMPortUtil util(device.Set(), device.Element());
  CComPlaces before(util, port.kernelDevice);
  if (Folded(Utf8(before.Name())) != Folded(port.name)) {
    return Failure("it is called " + Utf8(before.Name()) + " by now");
  }
  if (!before.IsFree(number)) {
    return Failure(ComName(number) + " is taken in the COM name database, or that cannot be read");
  }
  static_cast<void>(RenameComPortUnasked(util, ComNameOf(number)));
  return CSettlement(util, port, number).Settle();
}

Outcome CWindowsHost::Store(const Port& port, const CFieldValues& values) {
  COpenDevice device;
  if (Outcome opened = device.Open(port.instanceId); opened.kind != Outcome::Done) return opened;
  const bool settings = !values.Of(FieldGroup::Settings).IsEmpty();
  if (Outcome stored = settings ? StoreSettings(port, values) : StoreNetwork(port, values);
      stored.kind != Outcome::Done) {
    return stored;
  }
  if (!device.IsStarted()) return Failure("the values are stored, but the device did not start again");
  return CheckStored(port, values);
}

Outcome CWindowsHost::StoreSettings(const Port& port, const CFieldValues& values) {
  CKdUVcpUserModeInterface set;
  if (!ReadCurrentSet(InterfaceOf(port), set, set.kSelector)) return Unanswered();
  const bool done = UpdateLineSettings(Wide(port.instanceId).c_str(), SettingsWith(set, values)) != 0;
  return done ? Outcome() : Refused();
}

// Two sets are written: when the second is refused, the first is put back.
Outcome CWindowsHost::StoreNetwork(const Port& port, const CFieldValues& values) {
  CKdUVcpUserModeInterface set;
  CKdNBusUserModeInterface bus;
  const CWideString path = InterfaceOf(port);
  if (!ReadCurrentSet(path, set, set.kSelector) || !ReadCurrentSet(path, bus, bus.kSelector)) {
    return Unanswered();
  }
  const std::wstring id = Wide(port.instanceId);
  if (UpdateNetworkInfo(id.c_str(), NetworkWith(set, bus, values)) != 0) return {};
  static_cast<void>(UpdateNetworkInfo(id.c_str(), NetworkWith(set, bus, {})));
  return Refused();
}

Outcome CWindowsHost::CheckStored(const Port& port, const CFieldValues& values) const {
  CKdUVcpUserModeInterface set;
  CKdNBusUserModeInterface bus;
  const CWideString path = InterfaceOf(port);
  const bool hasSet = ReadCurrentSet(path, set, set.kSelector);
  const bool hasBus = ReadCurrentSet(path, bus, bus.kSelector);
  const CFieldValues now = FieldsOf(hasSet ? &set : nullptr, hasBus ? &bus : nullptr);
  for (const Field field : kFields) {
    if (!values[field] || values[field] == now[field]) continue;
    const std::string column(ColumnOf(field));
    if (!now[field]) return Failure("its driver does not report " + column + " any more");
    return Failure("its driver keeps " + column + " " + TextOf(field, *now[field]));
  }
  return {};
}

Outcome CWindowsHost::Mend(const Port& port, Place place) {
  COpenDevice device;
  if (Outcome opened = device.Open(port.instanceId); opened.kind != Outcome::Done) return opened;
  CCOMPortUtil util(device.Set(), device.Element());
  CComPlaces places(util, port.kernelDevice);
  if (Utf8(places.Name()) != port.name) return Failure("PortName cannot be read, or has changed");
  if (!places.Mend(place)) return Failure(PlaceText(place) + " cannot be changed");
  if (place == Place::DosDevice && !places.RemoveStrays())
    return Failure("another DOS device of it cannot be removed");
  return {};
}

Outcome CWindowsHost::Release(std::int32_t number) {
  const CComDatabase database = OpenComDatabase();
  if (!database) return Failure("the COM name database cannot be opened");
  const LONG error = ComDBReleasePort(database.Get(), static_cast<DWORD>(number));
  return error == ERROR_SUCCESS ? Outcome()
                                : Failure("the COM name database: " + ErrorWords(static_cast<DWORD>(error)));
}

CWideString CWindowsHost::InterfaceOf(const Port& port) const {
  const auto found = interfaces_.find(port.instanceId);
  return found != interfaces_.end() ? found->second : CWideString();
}

}  // namespace KdPort
