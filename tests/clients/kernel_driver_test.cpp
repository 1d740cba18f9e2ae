// The driver channel through the platform's own SetupAPI and I/O manager, down to a real kernel driver:
// nothing of the workbench's machine is between them.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <memory>
#include <optional>

#include "base/unique_handle.h"
#include "config/nbus_parameters.h"
#include "config/user_mode_config.h"
#include "config/vcp_parameters.h"
#include "root_device.h"
#include "workbench/kernel_driver/driver_control.h"
#include "workbench/simulated_driver/port_driver.h"
#include "workbench/tests/device/driver_requests.h"

namespace {

namespace fs = std::filesystem;
using namespace workbench;

constexpr wchar_t kHardwareId[] = L"Root\\KdWorkbenchPort";
constexpr LONG kRefused = static_cast<LONG>(0xC0000001);  // STATUS_UNSUCCESSFUL
constexpr DWORD kAnOpen = 0;                              // where a control code would stand

bool Ask(HANDLE device, DWORD code, const void* input, DWORD inputLength, void* output, DWORD outputLength) {
  DWORD returned = 0;
  return DeviceIoControl(device, code, const_cast<void*>(input), inputLength, output, outputLength, &returned,
                         nullptr) != FALSE;
}

// The kernel driver behind one device, for the requests that the simulated one is sent too.
class KernelPort : public DriverEndpoint {
 public:
  explicit KernelPort(std::wstring path) : path_(std::move(path)) {}

  DWORD Open(std::uint64_t session, const DriverOpen& open) override {
    CFileHandle file(
        CreateFileW(path_.c_str(), open.access, open.share, nullptr, open.disposition, open.flags, nullptr));
    if (!file) return GetLastError();
    files_[session] = std::move(file);
    return ERROR_SUCCESS;
  }
  DriverAnswer Control(std::uint64_t session, const DriverRequest& request) override {
    DriverAnswer answer;
    const BOOL taken =
        DeviceIoControl(files_[session].Get(), request.code, const_cast<std::byte*>(request.input.data()),
                        static_cast<DWORD>(request.input.size()), request.output.data(),
                        static_cast<DWORD>(request.output.size()), &answer.returned, nullptr);
    if (!taken) answer.error = GetLastError();
    return answer;
  }
  void Close(std::uint64_t session) override { files_.erase(session); }

 private:
  std::wstring path_;
  std::map<std::uint64_t, CFileHandle> files_;
};

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

// Two ports of the kernel driver, installed once for all tests, and the driver's back door.
class KernelDriver : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (!InThrowAwayPrefix()) return;
    for (std::unique_ptr<RootDevice>& port : ports_) {
      port = std::make_unique<RootDevice>(kPortsClass, L"KDWORKBENCHPORT", kHardwareId);
    }
    installed_ = Install(ProgramFolder() / L"driver" / L"kdworkbench.inf", kHardwareId);
    MarkInterfacesEnabled();
    control_.Reset(
        CreateFileW(KD_CONTROL_PATH, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  }
  static void TearDownTestSuite() {
    control_.Reset();
    ports_ = {};
  }
  void SetUp() override {
    SKIP_OUTSIDE_THROW_AWAY_PREFIX();
    ASSERT_TRUE(installed_);
    ASSERT_TRUE(control_) << "the driver does not run";
    ASSERT_TRUE(Ask(control_.Get(), KD_CONTROL_RESET, nullptr, 0, nullptr, 0));
    channel_.emplace(Port().Set(), Port().Element());
    ASSERT_TRUE(channel_->FindDeviceInterface());
  }

  static RootDevice& Port(std::size_t index = 0) { return *ports_.at(index); }
  std::wstring Path() const { return channel_->InterfacePath().Text(); }

  // From now on the driver answers requests of this code so.
  static void Script(DWORD code, LONG status, std::span<const std::byte> bytes = {}) {
    kd_scripted_answer answer{};
    answer.code = code;
    answer.status = status;
    answer.length = static_cast<std::uint32_t>(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) answer.bytes[i] = std::to_integer<std::uint8_t>(bytes[i]);
    ASSERT_TRUE(Ask(control_.Get(), KD_CONTROL_SCRIPT, &answer, sizeof answer, nullptr, 0));
  }
  // What the driver was asked since the start of the test, opens included.
  static std::vector<kd_record> Records() {
    const auto records = std::make_unique<kd_records>();
    EXPECT_TRUE(Ask(control_.Get(), KD_CONTROL_RECORDS, nullptr, 0, records.get(), sizeof *records));
    EXPECT_LE(records->count, std::uint32_t{KD_MOST_RECORDS});
    return {records->records, records->records + records->count};
  }
  static std::vector<DWORD> Codes() {
    std::vector<DWORD> codes;
    for (const kd_record& record : Records()) codes.push_back(record.code);
    return codes;
  }

  std::optional<CKdUserModeConfig> channel_;

 private:
  static inline std::array<std::unique_ptr<RootDevice>, 2> ports_;
  static inline bool installed_ = false;
  static inline CFileHandle control_;
};

TEST_F(KernelDriver, EachPortIsFoundByItsOwnReference) {
  CKdUserModeConfig other(Port(1).Set(), Port(1).Element());
  ASSERT_TRUE(other.FindDeviceInterface());
  EXPECT_NE(other.InterfacePath().View(), channel_->InterfacePath().View());

  CKdUVcpUserModeInterface set;
  ASSERT_TRUE(channel_->GetParameterSet(set, set.kSelector));
  set.Baudrate = 1200;
  ASSERT_TRUE(channel_->SetParameterSet(set, set.kSelector));
  ASSERT_TRUE(other.GetParameterSet(set, set.kSelector));
  EXPECT_EQ(set.Baudrate, 9600u) << "the other port is another device";
}

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

Bytes Size(std::uint8_t size) {
  return {std::byte{size}, std::byte{0}, std::byte{0}, std::byte{0}};
}

TEST_F(KernelDriver, AnswersThatAreNotAsTheyShouldBeEndTheRead) {
  const Bytes whole(132, std::byte{7}), tooLong(140, std::byte{7}), tooShort(131, std::byte{7});
  const struct {
    const char* name;
    std::map<DWORD, Bytes> answers;  // no bytes: refused
    bool succeeds;
    std::vector<DWORD> codes;
  } rows[] = {
      {"size refused", {{kGetCurrentSize, {}}}, false, {kAnOpen, kGetCurrentSize}},
      {"half a size", {{kGetCurrentSize, Bytes(2)}}, false, {kAnOpen, kGetCurrentSize}},
      {"size 0", {{kGetCurrentSize, Size(0)}}, false, {kAnOpen, kGetCurrentSize, kGetCurrent}},
      {"size too small", {{kGetCurrentSize, Size(131)}}, false, {kAnOpen, kGetCurrentSize, kGetCurrent}},
      {"read refused", {{kGetCurrent, {}}}, false, {kAnOpen, kGetCurrentSize, kGetCurrent}},
      {"a byte short", {{kGetCurrent, tooShort}}, false, {kAnOpen, kGetCurrentSize, kGetCurrent}},
      {"exactly one set", {{kGetCurrent, whole}}, true, {kAnOpen, kGetCurrentSize, kGetCurrent}},
      {"surplus behind the set",
       {{kGetCurrentSize, Size(140)}, {kGetCurrent, tooLong}},
       true,
       {kAnOpen, kGetCurrentSize, kGetCurrent}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    SetUp();
    for (const auto& [code, bytes] : row.answers) Script(code, bytes.empty() ? kRefused : 0, bytes);
    CKdUVcpUserModeInterface set;
    EXPECT_EQ(channel_->GetParameterSet(set, set.kSelector), row.succeeds);
    EXPECT_EQ(Codes(), row.codes);
    if (row.succeeds) {
      EXPECT_EQ(set.RiSupported, 0x07070707u);
    }
  }
  SetUp();
  Script(kSetCurrent, kRefused);
  CKdUVcpUserModeInterface set;
  EXPECT_FALSE(channel_->SetParameterSet(set, set.kSelector));
  EXPECT_EQ(Codes(), (std::vector<DWORD>{kAnOpen, kSetCurrent}));
}

// The DLL that ships, unchanged and not redirected: a management program's call, down to the driver.
TEST_F(KernelDriver, ProductWritesSettingsToIt) {
  Port().SetText(DIREG_DEV, L"PortName", L"COM77");
  const HMODULE module = LoadLibraryW((ProgramFolder() / L"KdUUI10.DLL").c_str());
  ASSERT_NE(module, nullptr);
  using Update = std::uint64_t(WINAPI*)(const wchar_t*, void*, DWORD, DWORD, DWORD, DWORD, DWORD);
  const auto update =
      reinterpret_cast<Update>(reinterpret_cast<void (*)()>(GetProcAddress(module, "KdNPortSettingsUpdate")));
  EXPECT_EQ(update(Port().InstanceId().c_str(), nullptr, 57600, 2, 1, 2, 4), 1u);
  FreeLibrary(module);
  CKdUVcpUserModeInterface set;
  ASSERT_TRUE(channel_->GetParameterSet(set, set.kSelector));
  EXPECT_EQ(set.Baudrate, 57600u);
  EXPECT_EQ(set.Databits, 2u);
}

// ---- the simulated driver and this one, sent the same requests

struct Outcome {
  DWORD error;
  DWORD returned;
  Bytes output;
  bool operator==(const Outcome&) const = default;
};
void PrintTo(const Outcome& outcome, std::ostream* out) {
  *out << "error " << outcome.error << ", " << outcome.returned << " bytes returned";
}

Outcome Send(DriverEndpoint& driver, const RequestRow& row) {
  static std::uint64_t session = 0;
  EXPECT_EQ(driver.Open(++session, kAgreedOpen), DWORD{ERROR_SUCCESS});
  if (row.sizeOf) {
    Bytes size(4);
    const Bytes header = Header(*row.sizeOf);
    EXPECT_EQ(driver.Control(session, {.code = kGetCurrentSize, .input = header, .output = size}).error, 0u);
  }
  Outcome outcome{.error = 0, .returned = 0, .output = Bytes(row.outputLength, std::byte{0xCC})};
  const DriverAnswer answer =
      driver.Control(session, {.code = row.code, .input = row.input, .output = outcome.output});
  driver.Close(session);
  outcome.error = answer.error;
  outcome.returned = answer.returned;
  return outcome;
}

TEST_F(KernelDriver, AcceptsAndRefusesWhatTheSimulatedDriverDoes) {
  KernelPort kernel(Path());
  PortDriver simulated;
  for (const RequestRow& row : RequestRows()) {
    SCOPED_TRACE(row.name);
    const Outcome real = Send(kernel, row);
    EXPECT_EQ(real, Send(simulated, row));
    EXPECT_EQ(real.error, row.accepted ? DWORD{ERROR_SUCCESS} : DWORD{ERROR_INVALID_PARAMETER});
  }
}

// Wine 8.0 opens a device whatever its driver answers, so the driver is asked what it has answered.
TEST_F(KernelDriver, JudgesAnOpenAsTheSimulatedDriverDoes) {
  constexpr LONG kInvalidParameter = static_cast<LONG>(0xC000000D);
  const struct {
    const char* name;
    void (*change)(DriverOpen&);
    bool accepted;
  } rows[] = {
      {"as agreed", [](DriverOpen&) {}, true},
      {"shared", [](DriverOpen& open) { open.share = FILE_SHARE_READ; }, false},
      {"not overlapped", [](DriverOpen& open) { open.flags = 0; }, false},
  };
  KernelPort kernel(Path());
  PortDriver simulated;
  std::uint64_t session = 0;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    DriverOpen open = kAgreedOpen;
    row.change(open);
    static_cast<void>(kernel.Open(++session, open));
    EXPECT_EQ(Records().back().status, row.accepted ? 0 : kInvalidParameter);
    EXPECT_EQ(simulated.Open(session, open),
              row.accepted ? DWORD{ERROR_SUCCESS} : DWORD{ERROR_INVALID_PARAMETER});
    if (row.accepted) {
      static_cast<void>(kernel.Open(session + 100, open));
      EXPECT_EQ(Records().back().status, kInvalidParameter) << "open already";
      EXPECT_EQ(simulated.Open(session + 100, open), DWORD{ERROR_INVALID_PARAMETER});
      kernel.Close(session + 100);
      simulated.Close(session);
    }
    kernel.Close(session);
  }
}

}  // namespace
