// A host with one device server, whose second port has a scripted driver, and the DLL loaded on it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <kdui10.h>

#include <cstdint>
#include <string>

#include "scripted_driver.h"
#include "workbench/machine/machine.h"

class UpdateRig : public testing::Test {
 protected:
  // Whatever a test does: nothing stays open, and no interface was misused.
  ~UpdateRig() override {
    EXPECT_TRUE(driver_.openSessions.empty()) << "a driver handle stayed open";
    EXPECT_TRUE(otherDriver_.opens.empty()) << "another port's driver was opened";
    EXPECT_EQ(LeftOpen(), "");
    EXPECT_THAT(machine_.Calls().Violations(), testing::IsEmpty());
    EXPECT_TRUE(machine_.Screen().messageBoxes.empty());
  }

  // What the DLL has not given back, without the few synchronisation objects that the language runtime
  // makes once for each process and keeps.
  [[nodiscard]] std::string LeftOpen() {
    std::string text;
    for (const auto& handle : machine_.Calls().OpenHandles()) {
      if (handle.kind == workbench::HandleKind::Event || handle.kind == workbench::HandleKind::Thread)
        continue;
      text += std::string(workbench::NameOf(handle.kind)).append(" of ").append(handle.function).append("; ");
    }
    return text;
  }

  [[nodiscard]] workbench::Device& Port() { return *server_.ports[1]; }
  [[nodiscard]] const wchar_t* Id() { return Port().instanceId.c_str(); }
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
  scripted::Driver driver_;
  scripted::Driver otherDriver_;
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
