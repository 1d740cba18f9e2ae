// What the tests of installation share: a computer without a device server.
#pragma once

#include "rig_test.h"

using workbench::ComPlaces;
using workbench::DeviceEvent;
using workbench::Fault;
using workbench::HandleKind;
using workbench::ParametersKeyOf;

// Whatever is installed on it: in the end nothing is open, and no interface was misused.
class InstallHost : public Rig {
 public:
  InstallHost() : Rig({.comNumbers = {}, .web = false}) {}
  ~InstallHost() {
    EXPECT_THAT(LeftOpen(), testing::IsEmpty());
    EXPECT_THAT(Misuse(), testing::IsEmpty()) << machine.Calls().LogText();
  }

  // Every port of the server in turn.
  void InstallAll() {
    for (Device* port : server.ports) EXPECT_EQ(installer.Install(*port), static_cast<DWORD>(NO_ERROR));
  }
  // One pass of the co-installer.
  DWORD Call(Device& device, DI_FUNCTION function, bool post, DWORD result = NO_ERROR) {
    COINSTALLER_CONTEXT_DATA context{};
    context.PostProcessing = post ? TRUE : FALSE;
    context.InstallResult = result;
    return installer.Call(device, function, context);
  }
  [[nodiscard]] std::wstring Parameters(const Device& device) const {
    return ParametersKeyOf(device.instanceId);
  }
  [[nodiscard]] std::vector<std::wstring> PortNames() {
    std::vector<std::wstring> names;
    for (const Device* port : server.ports) names.push_back(NameOf(*port));
    return names;
  }
  // Every place of every name says the same.
  void ExpectAgreement() {
    const std::wstring table = FormatPlaces(AllComPlaces(machine));
    for (const ComPlaces& places : AllComPlaces(machine))
      EXPECT_TRUE(places.Agree()) << std::string(table.begin(), table.end());
  }
  [[nodiscard]] std::vector<std::wstring> Restarts() {
    return machine.Devices().EventsOf(DeviceEvent::Enabled);
  }
  // The message boxes' texts so far.
  [[nodiscard]] std::vector<std::wstring> Questions() {
    std::vector<std::wstring> texts;
    for (const auto& box : Boxes()) texts.push_back(box.text);
    return texts;
  }

  workbench::DeviceInstaller installer = Installer();
};

class InstallTest : public testing::Test, public InstallHost {};
