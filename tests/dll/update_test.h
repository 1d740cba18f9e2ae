// What the tests of the exports that push settings share: three ports, of which the second is pushed into.
#pragma once

#include <kdui10.h>

#include <cstdint>

#include "rig_test.h"

using workbench::DriverFault;

class UpdateTest : public RigTest {
 protected:
  // Numbers that tell each parameter apart.
  UpdateTest() : RigTest({.comNumbers = {5, 6, 7}, .web = false}) {
    for (const std::uint32_t selector : {kPortSet, kBusSet}) {
      std::uint32_t number = selector == kPortSet ? 0x10 : 0x100;
      for (const workbench::Parameter& parameter : workbench::SetLayout(selector)) {
        if (!parameter.isText) driver.Current(selector).SetNumber(parameter.name, number++);
      }
    }
  }
  ~UpdateTest() override {
    for (const unsigned other : {0u, 2u})
      EXPECT_THAT(Driver(other).Records(), testing::IsEmpty()) << "another port's driver was opened";
    EXPECT_TRUE(Boxes().empty());
  }

  [[nodiscard]] Device& Port() { return *server.ports[1]; }
  [[nodiscard]] const wchar_t* Id() { return Port().instanceId.c_str(); }
  // Line settings: one read and one write of the port set. Network settings: both sets are read, then
  // written.
  std::uint64_t PushLine() { return settings_(Id(), nullptr, 9600, 3, 0, 0, 0); }
  std::uint64_t PushNetwork() { return networkInfo_(Id(), nullptr, 1, 2, 0, 3, 4, 5, 6, 1, 1); }
  // "size 0, read 0, write 1": what the drivers were asked, with the selectors, since the records were
  // cleared.
  [[nodiscard]] std::string Story() const {
    std::string story;
    for (const workbench::DriverRecord& record : driver.Records()) {
      if (record.code == 0) continue;  // an open
      constexpr const char* kWords[] = {"size ", "read ", "write "};
      story +=
          (story.empty() ? "" : ", ") + std::string(kWords[(record.code - workbench::kGetCurrentSize) / 4]);
      story += std::to_string(record.selector.value_or(9));
    }
    return story;
  }
  // The disables and enables of the port, in order: "-+" is a restart.
  [[nodiscard]] std::string Restarts() {
    std::string events;
    for (const auto& record : machine.Devices().Events()) {
      if (record.instanceId != Port().instanceId) continue;
      if (record.event == workbench::DeviceEvent::Disabled) events += '-';
      if (record.event == workbench::DeviceEvent::Enabled) events += '+';
    }
    return events;
  }

  workbench::PortDriver& driver = Driver(1);
  KdNPortNetworkInfoUpdateFn networkInfo_ = Export<KdNPortNetworkInfoUpdateFn>("KdNPortNetworkInfoUpdate");
  KdNPortSettingsUpdateFn settings_ = Export<KdNPortSettingsUpdateFn>("KdNPortSettingsUpdate");

 private:
  // As a management program looks them up.
  template <class Function>
  Function Export(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(dll->Module(), name)));
  }
};
