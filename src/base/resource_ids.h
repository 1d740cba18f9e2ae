// Ids of the module's resources: dialogs, controls, strings, pictures, scripts.
//
// Read by the resource compiler as well as by C++, so plain #defines only. Ids are grouped by dialog and
// never given to something else: other programs, translations and screen readers' scripts can know the
// controls by number. Below a page's id are its controls, in the order of their numbers; a label, a note or a
// group that the code only fills has an id too. The help link (246), its label (247) and "Restore Default"
// (892) have the same ids on every page that has them.
#pragma once

// Port page, "Port Settings": ui/port_page.h and ui/port_status_view.h -------------------------------------
#define IDD_PORT_PAGE 107

#define IDC_PORT_DSR_ALWAYS_TRUE 205
#define IDC_PORT_CTS_ALWAYS_TRUE 211
#define IDC_PORT_BAUD_RATE_LABEL 222
#define IDC_PORT_DATA_BITS_LABEL 223
#define IDC_PORT_PARITY_LABEL 224
#define IDC_PORT_STOP_BITS_LABEL 225
#define IDC_PORT_FLOW_CONTROL_LABEL 226
#define IDC_PORT_CTS_LABEL 227
#define IDC_PORT_DSR_LABEL 228
#define IDC_PORT_STATE_LABEL 229
#define IDC_PORT_MODE_LABEL 230
#define IDC_PORT_DUPLEX_LABEL 231
// The dialog has no controls with these three ids; the page still addresses them.
#define IDC_PORT_OVERRIDE_MARK 239
#define IDC_PORT_OVERRIDE_NOTE 240
#define IDC_PORT_OVERRIDE_ICON 241
#define IDC_PORT_ICON 242
#define IDC_PORT_HELP_LINK 246
#define IDC_PORT_HELP_LABEL 247
#define IDC_PORT_SETTINGS_GROUP 248
#define IDC_PORT_STATE 294
#define IDC_PORT_MODE 295
#define IDC_PORT_BAUD_RATE 296
#define IDC_PORT_DATA_BITS 297
#define IDC_PORT_PARITY 298
#define IDC_PORT_STOP_BITS 299
#define IDC_PORT_FLOW_CONTROL 300
#define IDC_PORT_DUPLEX 301
#define IDC_PORT_SETTINGS_NOTE 302
#define IDC_PORT_ADVANCED 840
#define IDC_PORT_CONFIGURE 841
#define IDC_PORT_RESTORE_DEFAULTS 892

// Device page of the advanced sheet: ui/device_page.h -----------------------------------------------------
#define IDD_DEVICE_PAGE 115

#define IDC_DEVICE_COM_NUMBER 200
#define IDC_DEVICE_COM_NUMBER_LABEL 220
#define IDC_DEVICE_COM_NUMBER_NOTE 235
#define IDC_DEVICE_HELP_LINK 246
#define IDC_DEVICE_HELP_LABEL 247
#define IDC_DEVICE_COM_NUMBER_GROUP 249
#define IDC_DEVICE_INFORMATION_GROUP 250
#define IDC_DEVICE_INTERFACE_TYPE_LABEL 251
#define IDC_DEVICE_RX_FIFO_SIZE_LABEL 252
#define IDC_DEVICE_TX_FIFO_SIZE_LABEL 253
#define IDC_DEVICE_MAX_BAUD_RATE_LABEL 254
#define IDC_DEVICE_MAX_BAUD_RATE 255
#define IDC_DEVICE_TX_FIFO_SIZE 256
#define IDC_DEVICE_RX_FIFO_SIZE 257
#define IDC_DEVICE_INTERFACE_TYPE 258
// The dialog has no control with this id; the page still addresses it.
#define IDC_DEVICE_DUPLEX_NOTE 271
#define IDC_DEVICE_CONNECT_OFFLINE 290
#define IDC_DEVICE_HIGH_PERFORMANCE 9000

// RS422/485 page: ui/rs422485_page.h ----------------------------------------------------------------------
#define IDD_RS422485_PAGE 147

#define IDC_RS422485_DUPLEX_LABEL 220
#define IDC_RS422485_HELP_LINK 246
#define IDC_RS422485_HELP_LABEL 247
#define IDC_RS422485_DUPLEX_GROUP 249
#define IDC_RS422485_DUPLEX 259
#define IDC_RS422485_NOTE 271
#define IDC_RS422485_RESTORE_DEFAULTS 892

// TCP/IP page of the advanced sheet: ui/tcp_ip_page.h -----------------------------------------------------
#define IDD_TCPIP_PAGE 150

#define IDC_TCPIP_PORT_NUMBER 237
#define IDC_TCPIP_ATTEMPT_TIMEOUT 239
#define IDC_TCPIP_IDLE_TIMEOUT 240
#define IDC_TCPIP_HELP_LINK 246
#define IDC_TCPIP_HELP_LABEL 247
#define IDC_TCPIP_ADDRESS 283
#define IDC_TCPIP_VERIFICATION 288
#define IDC_TCPIP_MAC_ADDRESS 289
#define IDC_TCPIP_RESTORE_DEFAULTS 892

// About page of the advanced sheet: ui/about_page.h -------------------------------------------------------
#define IDD_ABOUT_PAGE 146

#define IDC_ABOUT_WEBSITE 1035

// Pictures -------------------------------------------------------------------------------------------
#define IDI_PRODUCT 219
#define IDB_HELP 227
#define IDB_BANNER 904

// Registration: the type library and the two scripts, module/com_resources.rc -----------------------------
#define IDR_TYPE_LIBRARY 1
#define IDR_APPLICATION_SCRIPT 101
#define IDR_PROPERTY_PAGE_SCRIPT 106

// Manifest of the module itself (common controls version 6);
// ISOLATIONAWARE_NOSTATICIMPORT_MANIFEST_RESOURCE_ID: none of the module's imports comes from an assembly.
// With number 2 Windows would look the assemblies up whenever the module is loaded.
#define IDR_MANIFEST 3

// Strings: module/strings.rc has the texts ----------------------------------------------------------------
// Tips of the port page's settings.
#define IDS_TIP_BAUD_RATE 5007
#define IDS_TIP_DATA_BITS 5008
#define IDS_TIP_PARITY 5009
#define IDS_TIP_STOP_BITS 5010
#define IDS_TIP_FLOW_CONTROL 5011
// Labels of the port page and the device page, which are set again when a page opens.
#define IDS_CTS_ALWAYS_TRUE 5020
#define IDS_DSR_ALWAYS_TRUE 5021
#define IDS_OVERRIDE_NOTE 5022
#define IDS_NEED_MORE_HELP 5023
#define IDS_SETTINGS_GROUP 5024
#define IDS_COM_NUMBER_GROUP 5025
#define IDS_INFORMATION_GROUP 5026
#define IDS_INTERFACE_TYPE 5027
#define IDS_RX_FIFO_SIZE 5028
#define IDS_TX_FIFO_SIZE 5029
#define IDS_MAX_BAUD_RATE 5030
#define IDS_ADVANCED 5038
#define IDS_RESTORE_DEFAULT 5039
#define IDS_TIP_COM_NUMBER 5043
// Questions and messages, also those of the installation (install/naming/rename_com_port.h).
#define IDS_COM_NAME_TAKEN 5047
#define IDS_PORT_OPEN_RENAME 5048
#define IDS_RENAME_FAILED 5049
// The RS422/485 page and further tips.
#define IDS_DUPLEX_CHOICES 5050
#define IDS_TIP_DUPLEX 5051
#define IDS_DUPLEX_NOTE 5052
#define IDS_TIP_RESTORE_DEFAULTS 5059
#define IDS_TIP_ADVANCED 5060
#define IDS_PORT_OPEN_SETTINGS 5061
#define IDS_UPDATE_CARD_DRIVER 5062
#define IDS_PORT_STATE 5063
#define IDS_PORT_MODE 5064
#define IDS_DUPLEX_MODE 5065
// Lists of choices that nothing loads. Kept on purpose: unused lists
#define IDS_PARITY_CHOICES 8001
#define IDS_STOP_BITS_CHOICES 8002
#define IDS_FLOW_CONTROL_CHOICES 8006
// Labels of settings, and the titles of two pages.
#define IDS_COM_PORT_NUMBER 8017
#define IDS_BAUD_RATE 8018
#define IDS_DATA_BITS 8019
#define IDS_PARITY 8020
#define IDS_FLOW_CONTROL 8021
#define IDS_STOP_BITS 8027
#define IDS_PORT_SETTINGS_TITLE 8035
#define IDS_RS422485_TITLE 8039
