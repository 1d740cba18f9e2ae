// The string table: exact texts, because manuals, translations and users know them.
#include <windows.h>

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "workbench/machine/dll.h"

namespace {

const std::map<UINT, const wchar_t*> kTexts = {
    {5020, L"&CTS Always True - hardware state ignored:"},
    {5021, L"&DSR Always True - hardware state ignored:"},
    {5022,
     L"Settings selected for overriding will allways be used, regardless of what the application specifies."},
    {5023, L"Need More &Help? Click:"},
    {5024, L"Default / Override Settings"},
    {5025, L"COM Number"},
    {5026, L"Information"},
    {5027, L"Interface Type:"},
    {5028, L"Receive FIFO Size:"},
    {5029, L"Transmit FIFO Size:"},
    {5030, L"Maximum Baud Rate:"},
    {5038, L"&Advanced..."},
    {5039, L"Restore &Default"},
    {5043, L"Change selection to use a different COM number for this port."},
    {5047,
     L"This COM name is being used by another device (such as another com port or modem).  Using duplicate "
     L"names can lead to inaccessible devices and changed settings.  Do you want to continue?"},
    {5048,
     L"The port has been opened by another application.  Renaming the port may have an unpredictable effect "
     L"on the other application.  Do you wish to continue?"},
    {5049, L"There was an error renaming the COM port."},
    {5050,
     L"RS422 full-duplex mode,RS485 half-duplex autogating mode,Transmit only,Receive only,Transmitter and "
     L"Receiver both disabled"},
    {5051,
     L"422 / 485 cards have got different means of communication. By selecting the appropriate option from "
     L"this combo box, the port can be switched into one of these transmission modes."},
    {5052, L"Change selection to use different duplex mode settings for this port."},
    {5061,
     L"The port has been opened by another application. Changing the port settings may have an unpredictable "
     L"effect on the other application.  Do you wish to continue?"},
    {5062,
     L"Please update the Keldrin Veltranet driver found under 'Multi-port serial adapters' in Device Manager."
     L"\r\nThis will automatically initiate the port driver update.\r\n\r\nPlease see Product Manual for "
     L"further details."},
    {5063, L"Serial Port Status:"},
    {5064, L"Current Port Mode:"},
    {5065, L"Duplex Mode:"},
    {8001, L"Even,Odd,None,Mark,Space"},
    {8002, L"1,1.5,2"},
    {8006, L"Xon / Xoff,Hardware,None"},
    {8017, L"COM Port Number:"},
    {8018, L"Baud Rate:"},
    {8019, L"Data Bits:"},
    {8020, L"Parity:"},
    {8021, L"Flow Control:"},
    {8027, L"Stop Bits:"},
    {8035, L"Port Settings"},
    {8039, L"RS422/485 Settings"},
};

TEST(ModuleStrings, TextsAreExact) {
  workbench::Machine machine;
  const workbench::Dll dll(machine);
  for (const auto& [id, text] : kTexts) {
    wchar_t loaded[1024] = L"";
    LoadStringW(dll.Module(), id, loaded, ARRAYSIZE(loaded));
    EXPECT_STREQ(loaded, text) << "string " << id;
  }
}

}  // namespace
