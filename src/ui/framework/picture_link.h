// A picture that is a link. Windows only.
#pragma once

#include <windows.h>

// Makes a link of a static control with the help picture (SS_NOTIFY, and WS_TABSTOP for the keyboard): Enter
// and Space send the dialog the same STN_CLICKED as a click, and a focus rectangle shows where the focus is.
// The picture is drawn over the background that the dialog gives its labels, in the size of the control. Its
// text becomes that of the control before it, its label, which a screen reader says when the picture gets the
// focus.
//
// To be called once, on the control's thread; what is added is removed with the window. For null nothing
// happens.
void MakePictureLink(HWND picture) noexcept;
