// What the tests of installation share: a machine, the DLL on it, and a look at the end.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "workbench/machine/machine.h"
#include "workbench/rig/device_installer.h"

using workbench::ComPlaces;
using workbench::Device;
using workbench::DeviceEvent;
using workbench::DeviceServer;
using workbench::HandleKind;
using workbench::ServerSpec;

class InstallFixture : public testing::Test {
 protected:
  // Whatever a test does: no misuse of Windows, and nothing left open.
  void TearDown() override {
    EXPECT_THAT(machine.Calls().Violations(), testing::IsEmpty()) << machine.Calls().LogText();
    EXPECT_THAT(machine.Calls().LeftOpen(), testing::IsEmpty());
  }

  DeviceServer AddServer(std::vector<unsigned> comNumbers) {
    wanted.comNumbers = std::move(comNumbers);
    return AddDeviceServer(machine, wanted);
  }
  void InstallAll(const DeviceServer& server) {
    for (Device* port : server.ports) EXPECT_EQ(installer.Install(*port), static_cast<DWORD>(NO_ERROR));
  }
  [[nodiscard]] std::wstring Parameters(const Device& device) const {
    return workbench::ParametersKeyOf(device.instanceId);
  }
  [[nodiscard]] std::wstring PortName(const Device& device) {
    return machine.Registry().Text(Parameters(device), L"PortName").value_or(L"");
  }
  [[nodiscard]] std::vector<std::wstring> PortNames(const DeviceServer& server) {
    std::vector<std::wstring> names;
    for (const Device* port : server.ports) names.push_back(PortName(*port));
    return names;
  }
  // Every place of every name says the same.
  void ExpectAgreement() {
    for (const ComPlaces& places : AllComPlaces(machine)) EXPECT_TRUE(places.Agree()) << Table();
  }
  [[nodiscard]] std::string Table() {
    const std::wstring table = FormatPlaces(AllComPlaces(machine));
    return {table.begin(), table.end()};
  }
  [[nodiscard]] std::vector<std::wstring> Restarts() {
    return machine.Devices().EventsOf(DeviceEvent::Enabled);
  }
  void SetRaw(const Device& device, const wchar_t* name, DWORD type, const std::wstring& text) {
    machine.Registry().SetRaw(Parameters(device), name, type, text.data(),
                              static_cast<DWORD>(text.size() * sizeof(wchar_t)));
  }
  // The message boxes' texts so far.
  [[nodiscard]] std::vector<std::wstring> Questions() {
    std::vector<std::wstring> texts;
    for (const auto& box : machine.Screen().messageBoxes) texts.push_back(box.text);
    return texts;
  }

  workbench::Machine machine;
  workbench::Dll dll{machine};
  workbench::DeviceInstaller installer{machine, dll};
  ServerSpec wanted;
};

inline constexpr wchar_t kNameTaken[] =
    L"This COM name is being used by another device (such as another com port or modem).  Using duplicate "
    L"names can lead to inaccessible devices and changed settings.  Do you want to continue?";
inline constexpr wchar_t kPortOpen[] =
    L"The port has been opened by another application.  Renaming the port may have an unpredictable effect "
    L"on the other application.  Do you wish to continue?";
