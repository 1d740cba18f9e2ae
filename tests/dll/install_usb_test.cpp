// USB models whose port sits on a fixed COM number.
#include "install_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InstallUsb : public InstallTest {};

TEST_F(InstallUsb, PortsTakeTheirModelsNumber) {
  const struct {
    const wchar_t* hardwareId;
    unsigned from;
    const wchar_t* name;
    bool restarts;
  } cases[] = {
      {L"USB\\VID_3A7E&PID_1015", 9, L"COM2", true},
      {L"usb\\vid_3a7e&pid_5002&mi_00", 9, L"COM2", true},
      {L"USB\\VID_3A7E&PID_5002&MI_01", 9, L"COM4", true},
      {L"USB\\VID_3A7E&PID_1089", 9, L"COM89", true},
      {L"USB\\VID_3A7E&PID_1015", 2, L"COM2", false},
      {L"USB\\VID_3A7E&PID_2000", 9, L"COM9", false},
  };
  for (const auto& row : cases) {
    const auto made = AddUsbDevice(machine, {.hardwareId = row.hardwareId, .comNumber = row.from});
    machine.Devices().ClearEvents();
    EXPECT_EQ(installer.Install(*made.port), static_cast<DWORD>(NO_ERROR));
    EXPECT_EQ(PortName(*made.port), row.name) << row.hardwareId;
    ExpectAgreement();
    if (row.restarts) {
      EXPECT_THAT(Restarts(), ElementsAre(made.usb->instanceId)) << "the device, not the port";
    } else {
      EXPECT_THAT(Restarts(), IsEmpty()) << row.hardwareId;
    }
    installer.Remove(*made.port);
    machine.Devices().Remove(*made.usb);
  }
  EXPECT_THAT(Questions(), IsEmpty());
}

TEST_F(InstallUsb, AnotherDeviceOnTheNumberMovesAway) {
  Device& modem = AddForeignPort(machine, 4);
  AddForeignPort(machine, 5);
  const auto made = AddUsbDevice(machine, {.hardwareId = L"USB\\VID_3A7E&PID_5002&MI_01", .comNumber = 9});
  installer.Install(*made.port);
  EXPECT_EQ(PortName(modem), L"COM6");
  EXPECT_EQ(PortName(*made.port), L"COM4");
  ExpectAgreement();
  EXPECT_THAT(Questions(), IsEmpty());
  EXPECT_THAT(Restarts(), ElementsAre(made.usb->instanceId));
  const auto scan = machine.Calls().CallsOf("SetupDiGetClassDevsW").at(0);
  EXPECT_EQ(scan.Number(3), 4u) << "every class";
}

// The holder's class does not matter, and of two holders the first one moves.
TEST_F(InstallUsb, HoldersOfEveryClassAreFound) {
  Device& odd = machine.Devices().Add({.instanceId = L"MODEMS\\ODD\\1",
                                       .classGuid = workbench::kUsbClass,
                                       .className = L"USB",
                                       .description = L"Modem",
                                       .friendlyName = L"Modem (COM2)",
                                       .started = false});
  odd.port = workbench::SerialPort{.kernelDevice = L"\\Device\\Modem0"};
  machine.Registry().SetText(Parameters(odd), L"PortName", L"COM2");
  machine.Devices().Start(odd);
  machine.ComNames().Claim(2);
  const auto made = AddUsbDevice(machine, {.hardwareId = L"USB\\VID_3A7E&PID_1015", .comNumber = 9});
  installer.Install(*made.port);
  EXPECT_EQ(PortName(odd), L"COM5");
  EXPECT_EQ(PortName(*made.port), L"COM2");
  ExpectAgreement();
}

TEST_F(InstallUsb, ANumberThatNobodyHoldsButTheDatabaseIsTakenOver) {
  machine.ComNames().Claim(2);
  const auto made = AddUsbDevice(machine, {.hardwareId = L"USB\\VID_3A7E&PID_1015", .comNumber = 9});
  installer.Install(*made.port);
  EXPECT_EQ(PortName(*made.port), L"COM2");
  EXPECT_THAT(Questions(), IsEmpty());
  ExpectAgreement();
}

// The one model that has to ask: its number is not taken from another without a question.
TEST_F(InstallUsb, TheFourthModelAsksForANumberThatOnlyTheDatabaseHolds) {
  machine.ComNames().Claim(89);
  const auto made = AddUsbDevice(machine, {.hardwareId = L"USB\\VID_3A7E&PID_1089", .comNumber = 9});
  machine.Screen().Answer(IDNO);
  installer.Install(*made.port);
  EXPECT_THAT(Questions(), ElementsAre(kNameTaken));
  EXPECT_EQ(PortName(*made.port), L"COM9");
}

TEST_F(InstallUsb, WithEveryNumberTakenTheHolderGoesToTheSizeOfItsName) {
  Device& modem = AddForeignPort(machine, 4);
  for (DWORD number = 1; number <= 254; ++number) machine.ComNames().Claim(number);
  machine.Screen().Answer(IDYES);  // COM10 is taken too
  const auto made = AddUsbDevice(machine, {.hardwareId = L"USB\\VID_3A7E&PID_5002&MI_01", .comNumber = 9});
  installer.Install(*made.port);
  EXPECT_EQ(PortName(modem), L"COM10");
  EXPECT_EQ(PortName(*made.port), L"COM4");
}

TEST_F(InstallUsb, AnUnreadableParentEndsTheRule) {
  const auto made = AddUsbDevice(machine, {.hardwareId = L"USB\\VID_3A7E&PID_1015", .comNumber = 9});
  machine.Calls().Inject({.function = "CM_Get_Parent", .count = workbench::Fault::kEveryLater});
  EXPECT_EQ(installer.Install(*made.port), static_cast<DWORD>(NO_ERROR));
  EXPECT_EQ(PortName(*made.port), L"COM9");
  EXPECT_THAT(Restarts(), IsEmpty());
}

}  // namespace
