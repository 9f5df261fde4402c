// The two routines that make the flasher's window an overlay.
#pragma once

#include <windows.h>

#include "platform/ole_color.h"

namespace qm::win32 {

namespace modTransparent {

// Makes the window layered, with every pixel of exactly the key colour
// (0x00BBGGRR) left undrawn and the rest opaque (colour key only, no
// alpha). True when every step could be called: the calls' own results are
// not looked at; false only on a system without layered windows.
bool MakeTransparent(HWND window, OleColor key);

}  // namespace modTransparent

namespace modWindowsRoutines {

// Moves the window to the top of the top-most band, keeping its place and
// size, without activating it (the overlay never takes the focus from the
// window the user works in). Reports nothing.
void MakeTopMost(HWND window);

}  // namespace modWindowsRoutines

}  // namespace qm::win32
