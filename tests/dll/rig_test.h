// What the tests of the DLL share: the rig, the sheets on it, and a look at the end.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "workbench/rig/page_controls.h"
#include "workbench/rig/page_sheet.h"

using workbench::AskForHelp;
using workbench::Device;
using workbench::DeviceServer;
using workbench::kBusSet;
using workbench::kPortSet;
using workbench::PageRequest;
using workbench::PageSheet;
using workbench::PumpMessages;
using workbench::Rig;
using workbench::TipOf;

// Whatever a test does: nothing stays open, and no interface was misused.
class RigTest : public testing::Test, public Rig {
 protected:
  using Rig::Rig;
  ~RigTest() override {
    EXPECT_THAT(LeftOpen(), testing::IsEmpty());
    EXPECT_THAT(Misuse(), testing::IsEmpty()) << machine.Calls().LogText();
  }
};

// What is asked about a new COM name.
inline constexpr wchar_t kNameTaken[] =
    L"This COM name is being used by another device (such as another com port or modem).  Using duplicate "
    L"names can lead to inaccessible devices and changed settings.  Do you want to continue?";
inline constexpr wchar_t kPortOpen[] =
    L"The port has been opened by another application.  Renaming the port may have an unpredictable effect "
    L"on the other application.  Do you wish to continue?";
