// The simulated host's device tree, sets and class installer, as the DLL sees them.
#include <gmock/gmock.h>

#include "workbench/machine/models/device_text.h"
#include "workbench/tests/probe_dll.h"

namespace workbench {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class DevicesOfMachine : public testing::Test {
 protected:
  Machine machine;
  DeviceServer server = AddDeviceServer(machine, {.comNumbers = {7, 5, 6}});
  ProbeDll probe{machine};

  std::vector<std::wstring> ChildrenOf(const Device& parent) {
    std::vector<std::wstring> ids;
    DEVINST node = 0;
    CONFIGRET result = probe.Call<CONFIGRET(DEVINST*, DEVINST)>("Child", &node, parent.node);
    while (result == CR_SUCCESS) {
      ids.push_back(machine.Devices().Find(node)->instanceId);
      result = probe.Call<CONFIGRET(DEVINST*, DEVINST)>("Sibling", &node, node);
    }
    return ids;
  }
  std::vector<std::wstring> IdsOf(HDEVINFO set) {
    std::vector<std::wstring> ids;
    SP_DEVINFO_DATA data{};
    data.cbSize = sizeof data;
    for (DWORD i = 0; probe.Call<BOOL(HDEVINFO, DWORD, SP_DEVINFO_DATA*)>("Enumerate", set, i, &data); ++i) {
      ids.push_back(machine.Devices().Find(data.DevInst)->instanceId);
    }
    return ids;
  }
  HDEVINFO AllDevices(const GUID* classGuid, DWORD flags) {
    return probe.Call<HDEVINFO(const GUID*, DWORD)>("AllDevices", classGuid, flags);
  }
  BOOL Destroy(HDEVINFO set) { return probe.Call<BOOL(HDEVINFO)>("Destroy", set); }
  BOOL Change(DeviceElement& element, DWORD state, DWORD scope, DWORD size = sizeof(SP_PROPCHANGE_PARAMS)) {
    SP_PROPCHANGE_PARAMS change{};
    change.ClassInstallHeader.cbSize = sizeof change.ClassInstallHeader;
    change.ClassInstallHeader.InstallFunction = DIF_PROPERTYCHANGE;
    change.StateChange = state;
    change.Scope = scope;
    if (!probe.Call<BOOL(HDEVINFO, SP_DEVINFO_DATA*, SP_CLASSINSTALL_HEADER*, DWORD)>(
            "ClassParams", element.Set(), element.Data(), &change.ClassInstallHeader, size)) {
      return FALSE;
    }
    return Install(DIF_PROPERTYCHANGE, element);
  }
  BOOL Install(DI_FUNCTION function, DeviceElement& element) {
    return probe.Call<BOOL(DI_FUNCTION, HDEVINFO, SP_DEVINFO_DATA*)>("ClassInstaller", function,
                                                                     element.Set(), element.Data());
  }
};

TEST_F(DevicesOfMachine, ChildrenAreWalkedInEnumerationOrder) {
  EXPECT_THAT(ChildrenOf(*server.card), ElementsAre(server.ports[0]->instanceId, server.ports[1]->instanceId,
                                                    server.ports[2]->instanceId));
  EXPECT_THAT(ChildrenOf(*server.ports[0]), IsEmpty());
  DEVINST parent = 0;
  EXPECT_EQ(probe.Call<CONFIGRET(DEVINST*, DEVINST)>("Parent", &parent, server.ports[1]->node), CR_SUCCESS);
  EXPECT_EQ(parent, server.card->node);
}

TEST_F(DevicesOfMachine, AWalkMayRemoveTheChildThatItStandsOn) {
  DEVINST node = 0;
  std::size_t removed = 0;
  CONFIGRET result = probe.Call<CONFIGRET(DEVINST*, DEVINST)>("Child", &node, server.card->node);
  while (result == CR_SUCCESS) {
    DeviceElement element(machine, *machine.Devices().Find(node));
    EXPECT_TRUE(Install(DIF_REMOVE, element));
    ++removed;
    result = probe.Call<CONFIGRET(DEVINST*, DEVINST)>("Sibling", &node, node);
  }
  EXPECT_EQ(removed, 3u);
  EXPECT_THAT(ChildrenOf(*server.card), IsEmpty());
}

TEST_F(DevicesOfMachine, SetsHoldTheDevicesThatTheFlagsAskFor) {
  server.ports[1]->present = false;
  AddForeignPort(machine, 1);
  struct Row {
    const GUID* classGuid;
    DWORD flags;
    std::size_t devices;
  };
  const Row rows[] = {{nullptr, DIGCF_ALLCLASSES, 5},
                      {nullptr, DIGCF_ALLCLASSES | DIGCF_PRESENT, 4},
                      {&kPortsClass, DIGCF_PRESENT, 3},
                      {&kPortsClass, 0, 4},
                      {&kPortsClass, DIGCF_ALLCLASSES, 5},
                      {&kConfigurationInterface, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE, 3}};
  for (const Row& row : rows) {
    const HDEVINFO set = AllDevices(row.classGuid, row.flags);
    EXPECT_EQ(IdsOf(set).size(), row.devices) << "flags " << row.flags;
    EXPECT_TRUE(Destroy(set));
  }
  EXPECT_THAT(machine.Calls().Violations(), IsEmpty());
  EXPECT_THAT(machine.Calls().OpenHandles(), IsEmpty());
}

TEST_F(DevicesOfMachine, MisuseOfSetsIsReported) {
  const HDEVINFO set = AllDevices(nullptr, DIGCF_ALLCLASSES);
  SP_DEVINFO_DATA data{};
  data.cbSize = 28;
  EXPECT_FALSE((probe.Call<BOOL(HDEVINFO, DWORD, SP_DEVINFO_DATA*)>("Enumerate", set, 0u, &data)));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_USER_BUFFER));
  EXPECT_TRUE(Destroy(set));
  EXPECT_FALSE(Destroy(set));
  EXPECT_FALSE((probe.Call<BOOL(HDEVINFO, DWORD, SP_DEVINFO_DATA*)>("Enumerate", set, 0u, &data)));
  EXPECT_EQ(AllDevices(nullptr, 0), INVALID_HANDLE_VALUE);
  EXPECT_THAT(machine.Calls().Violations(),
              ElementsAre(HasSubstr("wrong size 28"), HasSubstr("SetupDiDestroyDeviceInfoList: not a device"),
                          HasSubstr("SetupDiEnumDeviceInfo: not a device"), HasSubstr("neither a class")));
}

TEST_F(DevicesOfMachine, ElementsOfOneSetAreStrangersToAnother) {
  DeviceElement element(machine, *server.ports[0]);
  const HDEVINFO other = AllDevices(nullptr, DIGCF_ALLCLASSES);
  EXPECT_EQ(
      (probe.Call<HKEY(HDEVINFO, SP_DEVINFO_DATA*, REGSAM)>("DeviceKey", other, element.Data(), KEY_READ)),
      INVALID_HANDLE_VALUE);
  EXPECT_THAT(machine.Calls().Violations(), ElementsAre(HasSubstr("not of this set")));
  Destroy(other);
}

TEST_F(DevicesOfMachine, TheHardwareKeyIsInTheRegistry) {
  DeviceElement element(machine, *server.ports[0]);
  const HKEY key = probe.Call<HKEY(HDEVINFO, SP_DEVINFO_DATA*, REGSAM)>("DeviceKey", element.Set(),
                                                                        element.Data(), REGSAM{GENERIC_READ});
  ASSERT_NE(key, INVALID_HANDLE_VALUE);
  wchar_t name[16] = {};
  DWORD size = sizeof name;
  EXPECT_EQ(RegQueryValueExW(key, L"PortName", nullptr, nullptr, reinterpret_cast<BYTE*>(name), &size),
            ERROR_SUCCESS);
  EXPECT_STREQ(name, L"COM7");
  EXPECT_EQ(RegSetValueExW(key, L"PortName", 0, REG_SZ, reinterpret_cast<const BYTE*>(name), size),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(machine.Calls().OpenCount(HandleKind::RegistryKey), 1u);
  probe.CloseKey(key);
  EXPECT_THAT(machine.Calls().OpenHandles(), IsEmpty());
}

TEST_F(DevicesOfMachine, InterfacesLeadToTheirPath) {
  const HDEVINFO set = AllDevices(&kConfigurationInterface, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE);
  SP_DEVICE_INTERFACE_DATA data{};
  data.cbSize = sizeof data;
  const auto enumerate = [&](DWORD index) {
    return probe.Call<BOOL(HDEVINFO, const GUID*, DWORD, SP_DEVICE_INTERFACE_DATA*)>(
        "EnumerateInterfaces", set, &kConfigurationInterface, index, &data);
  };
  EXPECT_FALSE(enumerate(3));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_MORE_ITEMS));
  ASSERT_TRUE(enumerate(1));
  const auto detail = [&](SP_DEVICE_INTERFACE_DETAIL_DATA_W* buffer, DWORD size, DWORD* required) {
    return probe
        .Call<BOOL(HDEVINFO, SP_DEVICE_INTERFACE_DATA*, SP_DEVICE_INTERFACE_DETAIL_DATA_W*, DWORD, DWORD*)>(
            "InterfaceDetail", set, &data, buffer, size, required);
  };
  DWORD required = 0;
  EXPECT_FALSE(detail(nullptr, 0, &required));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
  std::vector<unsigned char> buffer(required);
  auto* path = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(buffer.data());
  path->cbSize = sizeof *path;
  EXPECT_TRUE(detail(path, required, nullptr));
  EXPECT_EQ(path->DevicePath, server.ports[1]->interfaces.at(0)->path);
  EXPECT_THAT(machine.Calls().Violations(), IsEmpty());
  path->cbSize = required;
  EXPECT_FALSE(detail(path, required, nullptr));
  EXPECT_THAT(machine.Calls().Violations(), ElementsAre(HasSubstr("wrong size")));
  Destroy(set);
}

TEST_F(DevicesOfMachine, APropertyChangeRestartsTheDeviceAndItsChildren) {
  DeviceElement card(machine, *server.card);
  machine.Devices().ClearEvents();
  EXPECT_TRUE(Change(card, DICS_DISABLE, DICS_FLAG_GLOBAL));
  EXPECT_FALSE(server.ports[0]->started);
  EXPECT_EQ(machine.DosNames().Target(L"COM7"), L"");
  machine.Registry().SetText(ParametersKeyOf(server.ports[0]->instanceId), L"PortName", L"COM20");
  EXPECT_TRUE(Change(card, DICS_ENABLE, DICS_FLAG_CONFIGSPECIFIC));
  EXPECT_EQ(machine.DosNames().Target(L"COM20"), server.ports[0]->port->kernelDevice);
  EXPECT_EQ(machine.Registry().Text(kSerialCommKey, server.ports[0]->port->kernelDevice), L"COM20");
  EXPECT_THAT(machine.Devices().EventsOf(DeviceEvent::Disabled), ElementsAre(server.card->instanceId));
  EXPECT_THAT(machine.Devices().EventsOf(DeviceEvent::Enabled), ElementsAre(server.card->instanceId));
  EXPECT_THAT(machine.Calls().Violations(), IsEmpty());
}

TEST_F(DevicesOfMachine, AMalformedPropertyChangeIsRefusedAndReported) {
  DeviceElement port(machine, *server.ports[0]);
  EXPECT_FALSE(Install(DIF_PROPERTYCHANGE, port));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_CLASSINSTALL_PARAMS));
  EXPECT_FALSE(Change(port, DICS_DISABLE, DICS_FLAG_GLOBAL, 16));
  EXPECT_FALSE(Change(port, DICS_DISABLE, 7));
  EXPECT_FALSE(Change(port, 9, DICS_FLAG_GLOBAL));
  EXPECT_FALSE(Change(port, DICS_STOP, DICS_FLAG_GLOBAL));
  EXPECT_TRUE(server.ports[0]->started);
  EXPECT_THAT(machine.Calls().Violations(),
              ElementsAre(HasSubstr("wrong size"), HasSubstr("unknown scope"), HasSubstr("unknown state"),
                          HasSubstr("one hardware profile")));
}

TEST_F(DevicesOfMachine, ARemovedDeviceIsGoneEverywhere) {
  DeviceElement port(machine, *server.ports[0]);
  EXPECT_TRUE(Install(DIF_REMOVE, port));
  EXPECT_FALSE(machine.Registry().HasKey(EnumKeyOf(server.ports[0]->instanceId)));
  EXPECT_EQ(machine.DosNames().Target(L"COM7"), L"");
  EXPECT_EQ(machine.Registry().Text(kSerialCommKey, server.ports[0]->port->kernelDevice), std::nullopt);
  EXPECT_FALSE((probe.Call<BOOL(HDEVINFO, const wchar_t*, SP_DEVINFO_DATA*)>(
      "OpenDevice", port.Set(), server.ports[0]->instanceId.c_str(),
      static_cast<SP_DEVINFO_DATA*>(nullptr))));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_SUCH_DEVINST));
  Device& again = AddServerPort(machine, *server.card, {.comNumbers = {}}, 0, 9);
  EXPECT_EQ(again.instanceId, server.ports[0]->instanceId);
  EXPECT_EQ(ChildrenOf(*server.card).size(), 3u);
}

TEST_F(DevicesOfMachine, ThePlacesOfAComNameAreCompared) {
  EXPECT_TRUE(PlacesOf(machine, *server.ports[0]).Agree());
  struct Row {
    const char* place;
    std::function<void()> disturb;
  };
  const std::wstring id = server.ports[0]->instanceId;
  const std::wstring kernel = server.ports[0]->port->kernelDevice;
  const Row rows[] = {
      {"database", [&] { machine.ComNames().Release(7); }},
      {"SERIALCOMM", [&] { machine.Registry().SetText(kSerialCommKey, kernel, L"COM8"); }},
      {"DOS device", [&] { machine.DosNames().Define(L"COM8", kernel); }},
      {"friendly name", [&] { machine.Registry().SetText(EnumKeyOf(id), L"FriendlyName", L"Port (COM70)"); }},
      {"PortName", [&] { machine.Registry().DeleteValue(ParametersKeyOf(id), L"PortName"); }},
  };
  for (const Row& row : rows) {
    row.disturb();
    EXPECT_FALSE(PlacesOf(machine, *server.ports[0]).Agree()) << row.place;
  }
  EXPECT_THAT(NarrowText(FormatPlaces(AllComPlaces(machine))), HasSubstr("<-- disagree"));
}

}  // namespace
}  // namespace workbench
