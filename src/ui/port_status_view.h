// The port page's controls for the state of the port. Windows only.
#pragma once

#include <windows.h>

#include "status/port_status.h"

// All three change only those controls that show something else, so that a tick of the timer does not
// flicker. `page` is the page's window; a control that its template lacks is skipped. On the page's thread
// only.

// Fills the texts of the state and shows or hides the duplex row.
void ShowStatusTexts(HWND page, const PortStatus& status);

// Sets the check boxes of the handshake lines; what a change leaves empty stays as it is.
void ShowHandshake(HWND page, const HandshakeChange& change);

// Shows or hides the note on overridden lines. Kept on purpose: missing controls
void ShowOverrideMarks(HWND page, bool visible);
