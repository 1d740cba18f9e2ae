// The driver channel through the platform's own SetupAPI and I/O manager, down to a real kernel driver:
// nothing of the workbench's machine is between them.
#include <windows.h>

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>

#include "config/nbus_parameters.h"
#include "config/user_mode_config.h"
#include "config/vcp_parameters.h"
#include "root_device.h"

namespace {

constexpr wchar_t kHardwareId[] = L"Root\\KdWorkbenchPort";

// Marks the interfaces of the class as enabled where SetupAPI looks for it. Wine 8.0 does not do it for
// interfaces that have a reference string.
void MarkInterfacesEnabled() {
  const std::wstring instances =
      L"SYSTEM\\CurrentControlSet\\Control\\DeviceClasses\\{6E2B9D14-7A3C-4F85-9B21-C4D07E5A1F93}";
  for (const std::wstring& instance : RegistryKeys(HKEY_LOCAL_MACHINE, instances)) {
    for (const std::wstring& reference : RegistryKeys(HKEY_LOCAL_MACHINE, instances + L"\\" + instance)) {
      const DWORD linked = 1;
      RegSetKeyValueW(HKEY_LOCAL_MACHINE,
                      (instances + L"\\" + instance + L"\\" + reference + L"\\Control").c_str(), L"Linked",
                      REG_DWORD, &linked, sizeof linked);
    }
  }
}

// Two ports of the kernel driver, installed once for all tests.
class KernelDriver : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (!InThrowAwayPrefix()) return;
    for (std::unique_ptr<RootDevice>& port : ports_) {
      port = std::make_unique<RootDevice>(kPortsClass, L"KDWORKBENCHPORT", kHardwareId);
    }
    installed_ = Install(ProgramFolder() / L"driver" / L"kdworkbench.inf", kHardwareId);
    MarkInterfacesEnabled();
  }
  static void TearDownTestSuite() { ports_ = {}; }
  void SetUp() override {
    SKIP_OUTSIDE_THROW_AWAY_PREFIX();
    ASSERT_TRUE(installed_);
    channel_.emplace(Port(0).Set(), Port(0).Element());
    ASSERT_TRUE(channel_->FindDeviceInterface());
  }

  static RootDevice& Port(std::size_t index) { return *ports_.at(index); }

  std::optional<CKdUserModeConfig> channel_;

 private:
  static inline std::array<std::unique_ptr<RootDevice>, 2> ports_;
  static inline bool installed_ = false;
};

TEST_F(KernelDriver, SetsComAndGoWhole) {
  CKdNBusUserModeInterface bus;
  ASSERT_TRUE(channel_->GetParameterSet(bus, bus.kSelector));
  EXPECT_EQ(bus.InterfaceType, L"TCP");
  EXPECT_EQ(bus.Model, L"QX-582");
  EXPECT_EQ(bus.TelnetNegotiationTimeout, 5000u);
  bus.Model = CWideString(L"Another model");
  bus.AddressToConnect = 0xC0A80102;
  ASSERT_TRUE(channel_->SetParameterSet(bus, bus.kSelector));
  CKdNBusUserModeInterface again;
  ASSERT_TRUE(channel_->GetParameterSet(again, again.kSelector));
  EXPECT_EQ(again.Model, L"Another model");
  EXPECT_EQ(again.AddressToConnect, 0xC0A80102);
  ASSERT_TRUE(channel_->GetDefaultParameterSet(again, again.kSelector));
  EXPECT_EQ(again.Model, L"QX-582") << "the defaults stay";
}

// The DLL that ships, unchanged and not redirected: a management program's call, down to the driver of the
// port that is named. The two are told apart by the references of their interfaces.
TEST_F(KernelDriver, SettingsOfAManagementProgramReachThePortThatIsNamed) {
  Port(1).SetText(DIREG_DEV, L"PortName", L"COM77");
  const HMODULE module = LoadLibraryW((ProgramFolder() / L"KdUUI10.DLL").c_str());
  ASSERT_NE(module, nullptr);
  using Update = std::uint64_t(WINAPI*)(const wchar_t*, void*, DWORD, DWORD, DWORD, DWORD, DWORD);
  const auto update =
      reinterpret_cast<Update>(reinterpret_cast<void (*)()>(GetProcAddress(module, "KdNPortSettingsUpdate")));
  EXPECT_EQ(update(Port(1).InstanceId().c_str(), nullptr, 57600, 2, 1, 2, 4), 1u);
  FreeLibrary(module);
  CKdUserModeConfig named(Port(1).Set(), Port(1).Element());
  ASSERT_TRUE(named.FindDeviceInterface());
  CKdUVcpUserModeInterface set;
  ASSERT_TRUE(named.GetParameterSet(set, set.kSelector));
  EXPECT_EQ(set.Baudrate, 57600u);
  EXPECT_EQ(set.Databits, 2u);
  ASSERT_TRUE(channel_->GetParameterSet(set, set.kSelector));
  EXPECT_EQ(set.Baudrate, 9600u);
}

}  // namespace
