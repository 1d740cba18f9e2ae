// A picture that is a link. Windows only.
#pragma once

#include <windows.h>

// Gives the keyboard what the mouse has of a static control with a picture (SS_NOTIFY, and WS_TABSTOP, so
// that it is reached): Enter and Space send the dialog what a click does, and a focus rectangle shows where
// the user is. The picture takes the text of the control before it, its label, as its own: that is what a
// screen reader says when the picture gets the focus.
//
// To be called once, on the control's thread; what is added goes with the window. Null is left alone.
void MakePictureLink(HWND picture) noexcept;
