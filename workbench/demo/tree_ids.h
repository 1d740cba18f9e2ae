// Resource ids of the device tree's window.
#pragma once

#define IDD_DEVICE_TREE 100
#define IDC_DEVICE_TREE 1001
#define IDC_STATUS_LINE 1002
