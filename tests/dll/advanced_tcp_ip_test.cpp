// The TCP/IP page: what it shows, which input it takes, what it writes and what a restore changes.
#include <cstdlib>

#include "page_test.h"

namespace {

class AdvancedTcpIp : public PageTest {
 protected:
  AdvancedTcpIp() {
    BusSet().SetNumber("PortNumber", 4002);
    BusSet().SetNumber("ConnectionAttemptTimeout", 5);
    PageOf();
  }
  // Edits the page and presses OK.
  Outcome Apply(const std::function<void(HWND)>& edit) { return PageTest::Apply(OpenSheet::kTcpIp, edit); }
};

TEST_F(AdvancedTcpIp, ShowsTheDriversConnection) {
  BusSet().SetNumber("AddressToConnect", 0xC0A80A64);
  BusSet().SetNumber("MACAddress1", 0x99112233);
  BusSet().SetNumber("MACAddress2", 0x99445566);
  BusSet().SetNumber("PortNumber", 70000);  // a driver may have what a user may not enter
  BusSet().SetNumber("IgnoreModelChecking", 1);
  Run([](const OpenSheet& sheet) {
    const HWND page = sheet.Turn(OpenSheet::kTcpIp);
    EXPECT_EQ(TextOf(page, IDC_TCPIP_MAC_ADDRESS), L"11:22:33:44:55:66");
    EXPECT_EQ(TextOf(page, IDC_TCPIP_ADDRESS), L"192.168.10.100");
    EXPECT_EQ(TextOf(page, IDC_TCPIP_PORT_NUMBER), L"70000");
    EXPECT_EQ(TextOf(page, IDC_TCPIP_ATTEMPT_TIMEOUT), L"5");
    EXPECT_TRUE(IsChecked(page, IDC_TCPIP_VERIFICATION)) << "one of the two checks is made";
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(page, IDC_TCPIP_IDLE_TIMEOUT)));
  });
}

TEST_F(AdvancedTcpIp, NumbersOutOfRangeKeepTheSheetAndGetTheFocus) {
  struct Row {
    const wchar_t *port, *timeout;
    int refused;  // the field that the user is pointed at; 0: taken
  };
  const Row rows[] = {
      {L"0", L"0", 0},
      {L"65535", L"20", 0},
      {L"80", L"20", 0},
      {L"80", L"19", 0},
      {L"65536", L"5", IDC_TCPIP_PORT_NUMBER},
      {L"", L"", IDC_TCPIP_PORT_NUMBER},
      {L"4294967297", L"5", IDC_TCPIP_PORT_NUMBER},
      {L"-1", L"5", IDC_TCPIP_PORT_NUMBER},
      {L"80abc", L"5", IDC_TCPIP_PORT_NUMBER},
      {L"4001", L"21", IDC_TCPIP_ATTEMPT_TIMEOUT},
      {L"4001", L"", IDC_TCPIP_ATTEMPT_TIMEOUT},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.port) + " " + testing::PrintToString(row.timeout));
    Boxes().clear();
    machine.Screen().beeps.clear();
    int focus = 0;
    machine.Screen().AnswerBy([&](const workbench::MessageBoxRecord&) {
      focus = GetDlgCtrlID(GetFocus());
      return IDOK;
    });
    const Outcome outcome = Apply([&](HWND page) {
      Enter(page, IDC_TCPIP_PORT_NUMBER, row.port);
      Enter(page, IDC_TCPIP_ATTEMPT_TIMEOUT, row.timeout);
    });
    EXPECT_EQ(outcome.stayedOpen, row.refused != 0);
    EXPECT_EQ(focus, row.refused);
    if (row.refused != 0) {
      EXPECT_THAT(BoxTexts(),
                  ElementsAre(L"Please enter connection attempt timeout between 0 and 20.|Connection "
                              L"attempt timeout - out of Range|16"));
      EXPECT_THAT(machine.Screen().beeps, ElementsAre(static_cast<UINT>(-1)));
    } else {
      EXPECT_THAT(Boxes(), IsEmpty());
      EXPECT_EQ(BusSet().Number("PortNumber"), static_cast<std::uint32_t>(_wtoi(row.port)));
      EXPECT_EQ(BusSet().Number("ConnectionAttemptTimeout"), static_cast<std::uint32_t>(_wtoi(row.timeout)));
    }
  }
}

// What another program has written in the meantime stays, except in the fields of this page.
TEST_F(AdvancedTcpIp, OnlyWhatChangedIsWrittenIntoTheDriversPresentSet) {
  Apply([](HWND) {});
  EXPECT_THAT(Written(), IsEmpty());
  const Outcome outcome = Apply([this](HWND page) {
    BusSet().SetNumber("ServerWebPort", 8080);
    NoteSets();
    Enter(page, IDC_TCPIP_PORT_NUMBER, L"5000");
    Click(page, IDC_TCPIP_VERIFICATION);
  });
  EXPECT_EQ(outcome.result, 1);
  EXPECT_THAT(Written(), ElementsAre("PortNumber 4002 -> 5000, IgnoreModelChecking 0 -> 1, "
                                     "IgnoreForceProtocol 0 -> 1"));
}

TEST_F(AdvancedTcpIp, ARestoreShowsTheDefaultsExceptTcpPortAndAddress) {
  workbench::ParameterValues& defaults = Driver().Default(kBusSet);
  for (const char* name : {"AddressToConnect", "PortNumber", "IgnoreModelChecking", "IgnoreForceProtocol"}) {
    defaults.SetNumber(name, 1);
  }
  defaults.SetNumber("ConnectionAttemptTimeout", 12);
  defaults.SetNumber("ConnectionIdleTimeout", 600);
  Apply([this](HWND page) {
    Enter(page, IDC_TCPIP_PORT_NUMBER, L"9999");
    Click(page, IDC_TCPIP_RESTORE_DEFAULTS);
    EXPECT_EQ(TextOf(page, IDC_TCPIP_ADDRESS), L"127.0.0.1");
    EXPECT_EQ(TextOf(page, IDC_TCPIP_PORT_NUMBER), L"4002");
    EXPECT_EQ(TextOf(page, IDC_TCPIP_ATTEMPT_TIMEOUT), L"12");
    EXPECT_FALSE(IsChecked(page, IDC_TCPIP_VERIFICATION));
    EXPECT_THAT(Driver().Writes(), IsEmpty()) << "a restore writes nothing";
  });
  EXPECT_THAT(Written(), ElementsAre("ConnectionIdleTimeout 0 -> 600, ConnectionAttemptTimeout 5 -> 12, "
                                     "IgnoreModelChecking 0 -> 1, IgnoreForceProtocol 0 -> 1"));
}

TEST_F(AdvancedTcpIp, AFailedRestoreChangesNothing) {
  Run([this](const OpenSheet& sheet) {
    const HWND page = sheet.Turn(OpenSheet::kTcpIp);
    Enter(page, IDC_TCPIP_ATTEMPT_TIMEOUT, L"9");
    Driver().Inject({.operation = DriverFault::Operation::Read});
    Click(page, IDC_TCPIP_RESTORE_DEFAULTS);
    EXPECT_EQ(TextOf(page, IDC_TCPIP_ATTEMPT_TIMEOUT), L"9");
  });
}

}  // namespace
