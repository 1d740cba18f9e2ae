#include "kdport/windows/com_places.h"

#include "base/decimal.h"
#include "install/devices/ports_class.h"
#include "install/devices/registry_values.h"
#include "install/naming/dos_device.h"
#include "install/naming/serial_map.h"
#include "kdport/model/com_name.h"
#include "kdport/windows/text.h"

namespace KdPort {

namespace {

constexpr Place kPlaces[] = {Place::DosDevice, Place::SerialMap, Place::Database, Place::FriendlyName};

// The COM name in the last brackets of a friendly name.
std::wstring_view BracketedName(std::wstring_view friendlyName) {
  const std::size_t open = friendlyName.rfind(L"(COM");
  const std::size_t close = friendlyName.find(L')', open == std::wstring_view::npos ? 0 : open);
  if (open == std::wstring_view::npos || close == std::wstring_view::npos) return {};
  return friendlyName.substr(open + 1, close - open - 1);
}

}  // namespace

CComPlaces::CComPlaces(CCOMPortUtil& port, const std::string& kernelDevice)
    : port_(port), kernelDevice_(Wide(kernelDevice)) {
  static_cast<void>(port_.GetRegString(kPortName, name_));
  if (kernelDevice_.IsEmpty()) static_cast<void>(ReadDosDevice(name_, kernelDevice_));
}

bool CComPlaces::Mend(Place place) {
  if (Agrees(place)) return true;
  if (place == Place::FriendlyName) static_cast<void>(MendFriendlyName());
  if (place == Place::DosDevice) static_cast<void>(MendDosDevice());
  if (place == Place::SerialMap) static_cast<void>(MapKernelDevice(kernelDevice_, name_));
  if (place == Place::Database) {
    const CComDatabaseScope database(port_);
    port_.ClaimComNumber(static_cast<DWORD>(ComNumberOf(name_.View())), true, nullptr);
  }
  return Agrees(place);
}

Place CComPlaces::FirstWrong() {
  for (const Place place : kPlaces) {
    if (!Agrees(place)) return place;
  }
  return Place::None;
}

bool CComPlaces::Agrees(Place place) {
  CWideString target;
  switch (place) {
    case Place::FriendlyName:
      return HasFriendlyName();
    case Place::DosDevice:
      return ReadDosDevice(name_, target) && target == kernelDevice_;
    case Place::SerialMap:
      return IsMapped();
    case Place::Database:
      return IsClaimed(ComNumberOf(name_.View()));
    case Place::None:
      break;
  }
  return true;
}

// A friendly name without a COM name is somebody's own.
bool CComPlaces::HasFriendlyName() {
  CWideString friendlyName;
  if (!port_.GetFriendlyName(friendlyName)) return false;
  const std::wstring_view shown = BracketedName(friendlyName.View());
  return shown.empty() || shown == name_.View();
}

bool CComPlaces::IsMapped() {
  const CRegistryKey map = OpenKey(HKEY_LOCAL_MACHINE, L"Hardware\\DeviceMap\\SERIALCOMM", KEY_READ);
  CWideString mapped;
  return map && ReadString(map.Get(), kernelDevice_, mapped) && mapped == name_;
}

bool CComPlaces::MendFriendlyName() {
  CWideString friendlyName;
  if (!port_.GetFriendlyName(friendlyName)) return false;
  const std::wstring_view all = friendlyName.View(), shown = BracketedName(all);
  if (shown.empty()) return true;
  const auto at = static_cast<std::size_t>(shown.data() - all.data());
  const std::wstring mended =
      std::wstring(all.substr(0, at)).append(name_.View()).append(all.substr(at + shown.size()));
  return port_.SetFriendlyName(CWideString(mended));
}

// A definition that leads elsewhere goes first: a name is not to have two.
bool CComPlaces::MendDosDevice() {
  CWideString other;
  const bool leadsElsewhere = ReadDosDevice(name_, other) && other != kernelDevice_;
  if (leadsElsewhere) RemoveDosDevice(name_, other);
  if (AddDosDevice(name_, kernelDevice_)) return true;
  if (leadsElsewhere) AddDosDevice(name_, other);
  return false;
}

bool CComPlaces::RemoveStray(const CWideString& other) {
  CWideString target;
  if (other == name_ || !ReadDosDevice(other, target) || target != kernelDevice_) return true;
  return RemoveDosDevice(other, kernelDevice_);
}

bool CComPlaces::RemoveStrays() {
  bool removed = true;
  for (std::int32_t number = 1; number <= kHighestNumber; ++number) {
    removed = RemoveStray(ComNameOf(number)) && removed;
  }
  return removed;
}

bool CComPlaces::IsFree(std::int32_t number) {
  const CComDatabaseScope database(port_);
  return port_.IsComNumberFree(static_cast<DWORD>(number));
}

bool CComPlaces::IsClaimed(std::int32_t number) {
  const CComDatabaseScope database(port_);
  const std::optional<ComUsage> usage = port_.ReadComUsage();
  return usage && !IsNumberFree(*usage, static_cast<std::uint32_t>(number));
}

bool CComPlaces::Release(std::int32_t number) {
  const CComDatabaseScope database(port_);
  return port_.ReleaseComNumber(static_cast<DWORD>(number));
}

std::string PlaceText(Place place) {
  constexpr const char* kTexts[] = {"PortName", "the friendly name", "the DOS device", "the serial map",
                                    "the COM name database"};
  return kTexts[static_cast<std::size_t>(place)];
}

}  // namespace KdPort
