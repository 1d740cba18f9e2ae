// USB models whose port sits on a fixed COM number.
#include <numeric>

#include "install_test.h"

namespace {

std::vector<DWORD> EveryNumber() {
  std::vector<DWORD> all(254);
  std::iota(all.begin(), all.end(), 1);
  return all;
}

const struct {
  const char* what;
  const wchar_t* hardwareId;
  unsigned from;  // its number so far
  const wchar_t* name;
  bool restarts = true;             // the device, not the port
  std::vector<DWORD> claimed{};     // in the database alone
  int answer = 0;                   // to the one question; 0: there is none
  unsigned holder = 0;              // the number of another device; 0: there is none
  const wchar_t* holderName = L"";  // in the end
  GUID holderClass = workbench::kPortsClass;
} kModels[] = {
    {"a model with a number", L"USB\\VID_3A7E&PID_1015", 9, L"COM2"},
    {"an id in lower case", L"usb\\vid_3a7e&pid_5002&mi_00", 9, L"COM2"},
    {"a port on its number", L"USB\\VID_3A7E&PID_1015", 2, L"COM2", false},
    {"a model without a number", L"USB\\VID_3A7E&PID_2000", 9, L"COM9", false},
    {"only the database holds it", L"USB\\VID_3A7E&PID_1015", 9, L"COM2", true, {2}},
    {"and the model has to ask", L"USB\\VID_3A7E&PID_1089", 9, L"COM9", true, {89}, IDNO},
    {"a port holds it", L"USB\\VID_3A7E&PID_5002&MI_01", 9, L"COM4", true, {5}, 0, 4, L"COM6"},
    {"a device of another class holds it",
     L"USB\\VID_3A7E&PID_1015",
     9,
     L"COM2",
     true,
     {},
     0,
     2,
     L"COM5",
     workbench::kUsbClass},
    {"no number is free for its holder", L"USB\\VID_3A7E&PID_5002&MI_01", 9, L"COM4", true, EveryNumber(),
     IDYES, 4, L"COM10"},
};

TEST(InstallUsb, PortTakesItsModelsNumberAndItsHolderMovesAway) {
  for (const auto& row : kModels) {
    SCOPED_TRACE(row.what);
    InstallHost host;
    Device* holder = row.holder != 0 ? &AddForeignPort(host.machine, row.holder) : nullptr;
    if (holder != nullptr) holder->classGuid = row.holderClass;
    for (const DWORD number : row.claimed) host.machine.ComNames().Claim(number);
    const auto made = AddUsbDevice(host.machine, {.hardwareId = row.hardwareId, .comNumber = row.from});
    if (row.answer != 0) host.machine.Screen().Answer(row.answer);
    EXPECT_EQ(host.installer.Install(*made.port), static_cast<DWORD>(NO_ERROR));
    EXPECT_EQ(host.NameOf(*made.port), row.name);
    EXPECT_EQ(holder != nullptr ? host.NameOf(*holder) : L"", row.holderName);
    host.ExpectAgreement();
    using Texts = std::vector<std::wstring>;
    EXPECT_EQ(host.Questions(), row.answer != 0 ? Texts{kNameTaken} : Texts{});
    EXPECT_EQ(host.Restarts(), row.restarts ? Texts{made.usb->instanceId} : Texts{});
  }
}

}  // namespace
