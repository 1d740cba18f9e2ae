// What the tests of installation share: a computer without a device server, and the texts of its questions.
#pragma once

#include "rig_test.h"

using workbench::ComPlaces;
using workbench::DeviceEvent;
using workbench::HandleKind;

class InstallTest : public RigTest {
 protected:
  InstallTest() : RigTest({.comNumbers = {}, .web = false}) {}

  // Every port of the server in turn.
  void InstallAll() {
    for (Device* port : server.ports) EXPECT_EQ(installer.Install(*port), static_cast<DWORD>(NO_ERROR));
  }
  [[nodiscard]] std::wstring Parameters(const Device& device) const {
    return workbench::ParametersKeyOf(device.instanceId);
  }
  [[nodiscard]] std::wstring PortName(const Device& device) { return NameOf(device); }
  [[nodiscard]] std::vector<std::wstring> PortNames() {
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
    for (const auto& box : Boxes()) texts.push_back(box.text);
    return texts;
  }

  workbench::DeviceInstaller installer = Installer();
};

inline constexpr wchar_t kNameTaken[] =
    L"This COM name is being used by another device (such as another com port or modem).  Using duplicate "
    L"names can lead to inaccessible devices and changed settings.  Do you want to continue?";
inline constexpr wchar_t kPortOpen[] =
    L"The port has been opened by another application.  Renaming the port may have an unpredictable effect "
    L"on the other application.  Do you wish to continue?";
