// The product's help file, shown by HTML Help. Windows only.
//
// HTML Help is an optional part of Windows: it is looked for at the first request. When it is not there,
// requests do nothing, that one and all later ones.
#pragma once

#include <windows.h>

#include <span>

// Opens the help window. `topicFormat` names the topic, with "%s" for the help file's name:
// "%s::/Page.htm>mainwin". The owner may be null.
void ShowHelpTopic(HWND owner, const wchar_t* topicFormat);

// Answers a request for help on a control of a page with a pop-up. `table` holds pairs of control id and help
// id and ends in (0, 0). Nothing is shown when the request is not about a control of the table.
void ShowContextHelp(const HELPINFO& request, std::span<const DWORD> table);
