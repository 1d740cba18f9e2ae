// A host with one device server, the DLL loaded on it, and the exports that push settings into its second
// port.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <kdui10.h>

#include <cstdint>
#include <string>

#include "workbench/machine/machine.h"
#include "workbench/simulated_driver/port_driver.h"

using workbench::DriverFault;
using workbench::kBusSet;
using workbench::kPortSet;

class UpdateRig : public testing::Test {
 protected:
  // Numbers that tell each parameter apart.
  UpdateRig() {
    for (const std::uint32_t selector : {kPortSet, kBusSet}) {
      std::uint32_t number = selector == kPortSet ? 0x10 : 0x100;
      for (const workbench::Parameter& parameter : workbench::SetLayout(selector)) {
        if (!parameter.isText) driver_.Current(selector).SetNumber(parameter.name, number++);
      }
    }
  }
  // Whatever a test does: nothing stays open, and no interface was misused.
  ~UpdateRig() override {
    EXPECT_EQ(driver_.OpenSessions(), 0u);
    EXPECT_THAT(driver_.Violations(), testing::IsEmpty());
    EXPECT_THAT(otherDriver_.Records(), testing::IsEmpty()) << "another port's driver was opened";
    EXPECT_THAT(machine_.Calls().LeftOpen(), testing::IsEmpty());
    EXPECT_THAT(machine_.Calls().Violations(), testing::IsEmpty());
    EXPECT_TRUE(machine_.Screen().messageBoxes.empty());
  }

  [[nodiscard]] workbench::Device& Port() { return *server_.ports[1]; }
  [[nodiscard]] const wchar_t* Id() { return Port().instanceId.c_str(); }
  // Line settings: one read and one write of the port set. Network settings: both sets are read, then
  // written.
  std::uint64_t PushLine() { return settings_(Id(), nullptr, 9600, 3, 0, 0, 0); }
  std::uint64_t PushNetwork() { return networkInfo_(Id(), nullptr, 1, 2, 0, 3, 4, 5, 6, 1, 1); }
  // "size 0, read 0, write 1": what the drivers were asked, with the selectors, since the records were
  // cleared.
  [[nodiscard]] std::string Story() const {
    std::string story;
    for (const workbench::DriverRecord& record : driver_.Records()) {
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
    for (const auto& record : machine_.Devices().Events()) {
      if (record.instanceId != Port().instanceId) continue;
      if (record.event == workbench::DeviceEvent::Disabled) events += '-';
      if (record.event == workbench::DeviceEvent::Enabled) events += '+';
    }
    return events;
  }

  workbench::Machine machine_;
  workbench::PortDriver driver_;
  workbench::PortDriver otherDriver_;
  workbench::DeviceServer server_ = workbench::AddDeviceServer(
      machine_, {.comNumbers = {5, 6, 7},
                 .driver = [this](unsigned index) { return index == 1 ? &driver_ : &otherDriver_; }});
  workbench::Dll dll_{machine_};
  KdNPortNetworkInfoUpdateFn networkInfo_ = Export<KdNPortNetworkInfoUpdateFn>("KdNPortNetworkInfoUpdate");
  KdNPortSettingsUpdateFn settings_ = Export<KdNPortSettingsUpdateFn>("KdNPortSettingsUpdate");

 private:
  // As a management program looks them up.
  template <class Function>
  Function Export(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(dll_.Module(), name)));
  }
};
