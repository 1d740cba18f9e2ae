// The names of a device of the setup class "Ports". Windows only.
#pragma once

#include <windows.h>

// The setup class itself: GUID_DEVCLASS_PORTS of devguid.h.
inline constexpr GUID kPortsClass = {
    0x4D36E978, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};

// The value of a port's hardware key that holds its COM name, "COM7". Of the five places of a name
// (naming/rename_com_port.h) it is the one that counts.
inline constexpr wchar_t kPortName[] = L"PortName";
