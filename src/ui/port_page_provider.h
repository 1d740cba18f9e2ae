// Answers Device Manager's request for the pages of a port. Windows only.
#pragma once

#include <windows.h>

#include <prsht.h>
#include <setupapi.h>

// Adds the port page to the sheet that asks for advanced device properties; other requests are answered with
// true and nothing added. False when the port's settings cannot be read from its drivers, when memory runs
// out, when `addPage` refuses the page, or when request, its device or callback are null.
//
// From the moment in which `addPage` takes the page it belongs to the sheet. A page that it refuses is left
// alone: its handle was handed over, and may have been kept.
[[nodiscard]] bool AddPortPage(const SP_PROPSHEETPAGE_REQUEST* request, LPFNADDPROPSHEETPAGE addPage,
                               LPARAM lParam);
