// The product's help file, shown by HTML Help. Windows only.
//
// HTML Help is an optional part of Windows: it is looked for at the first request. When it is not there,
// requests do nothing, that one and all later ones. It is never freed. Kept on purpose: open handles
//
// Both functions are called on the page's thread and return at once; failure is not reported.
#pragma once

#include <windows.h>

#include <span>

// Opens the help window. `topicFormat` names the topic, with "%s" for the help file's name:
// "%s::/Page.htm>mainwin". The owner may be null.
void ShowHelpTopic(HWND owner, const wchar_t* topicFormat);

// A control of a page and the help file's id for its pop-up. The layout is that of HTML Help's tables, which
// are DWORDs in pairs.
struct HelpId {
  DWORD control;
  DWORD help;
};
static_assert(sizeof(HelpId) == 2 * sizeof(DWORD));

// HTML Help reads a table up to this row.
inline constexpr HelpId kEndOfHelpIds{0, 0};

// Answers a request for help on a control of a page with a pop-up. `table` ends in kEndOfHelpIds. Nothing is
// shown when the request is not about a control of the table.
void ShowContextHelp(const HELPINFO& request, std::span<const HelpId> table);
