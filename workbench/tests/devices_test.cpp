// Misuse of device sets is refused and reported, and places that disagree are seen.
#include <gmock/gmock.h>

#include "workbench/tests/probe_dll.h"
#include "workbench/text/device_text.h"

namespace workbench {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class DevicesOfMachine : public testing::Test {
 protected:
  Machine machine;
  DeviceServer server = AddDeviceServer(machine, {.comNumbers = {7, 5, 6}});
  ProbeDll probe{machine};

  HDEVINFO AllDevices(const GUID* classGuid, DWORD flags) {
    return probe.Call<HDEVINFO(const GUID*, DWORD)>("AllDevices", classGuid, flags);
  }
  BOOL Destroy(HDEVINFO set) { return probe.Call<BOOL(HDEVINFO)>("Destroy", set); }
};

TEST_F(DevicesOfMachine, MisuseOfSetsIsReported) {
  const HDEVINFO set = AllDevices(nullptr, DIGCF_ALLCLASSES);
  SP_DEVINFO_DATA data{};
  data.cbSize = 28;
  EXPECT_FALSE((probe.Call<BOOL(HDEVINFO, DWORD, SP_DEVINFO_DATA*)>("Enumerate", set, 0u, &data)));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_USER_BUFFER));
  DeviceElement element(machine, *server.ports[0]);
  EXPECT_EQ(
      (probe.Call<HKEY(HDEVINFO, SP_DEVINFO_DATA*, REGSAM)>("DeviceKey", set, element.Data(), KEY_READ)),
      INVALID_HANDLE_VALUE);
  EXPECT_TRUE(Destroy(set));
  EXPECT_FALSE(Destroy(set));
  EXPECT_EQ(AllDevices(nullptr, 0), INVALID_HANDLE_VALUE);
  EXPECT_THAT(
      machine.Calls().Violations(),
      ElementsAre(HasSubstr("wrong size 28"), HasSubstr("not of this set"),
                  HasSubstr("SetupDiDestroyDeviceInfoList: not a device"), HasSubstr("neither a class")));
}

TEST_F(DevicesOfMachine, ThePlacesOfAComNameAreCompared) {
  EXPECT_TRUE(PlacesOf(machine, *server.ports[0]).Agree());
  const std::wstring id = server.ports[0]->instanceId;
  const std::wstring kernel = server.ports[0]->port->kernelDevice;
  const std::pair<const char*, std::function<void()>> rows[] = {
      {"database", [&] { machine.ComNames().Release(7); }},
      {"SERIALCOMM", [&] { machine.Registry().SetText(kSerialCommKey, kernel, L"COM8"); }},
      {"DOS device", [&] { machine.DosNames().Define(L"COM8", kernel); }},
      {"friendly name", [&] { machine.Registry().SetText(EnumKeyOf(id), L"FriendlyName", L"Port (COM70)"); }},
      {"PortName", [&] { machine.Registry().DeleteValue(ParametersKeyOf(id), L"PortName"); }},
  };
  for (const auto& [place, disturb] : rows) {
    disturb();
    EXPECT_FALSE(PlacesOf(machine, *server.ports[0]).Agree()) << place;
  }
  EXPECT_THAT(Narrow(FormatPlaces(AllComPlaces(machine))), HasSubstr("<-- disagree"));
}

}  // namespace
}  // namespace workbench
