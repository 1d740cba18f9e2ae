// Answers Device Manager's request for the pages of a port. Windows only.
#pragma once

#include <windows.h>

#include <prsht.h>
#include <setupapi.h>

// Adds the port page to the sheet that asks for advanced device properties; other requests are answered with
// true and nothing added. False when the port's settings cannot be read from its drivers, when the page
// cannot be made, when `addPage` refuses it, or when request, its device or `addPage` are null. Throws
// std::bad_alloc when memory runs out. The request is only borrowed, and `lParam` is passed on to `addPage`.
//
// A page that `addPage` takes belongs to the sheet. One that it refuses is not destroyed here, because
// `addPage` was given the handle and may have kept it.
[[nodiscard]] bool AddPortPage(const SP_PROPSHEETPAGE_REQUEST* request, LPFNADDPROPSHEETPAGE addPage,
                               LPARAM lParam);
