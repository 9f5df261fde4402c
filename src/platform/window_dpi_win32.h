// The dots per inch a window is drawn at. The program is aware of each
// monitor's own scaling: a window takes the dpi of the monitor it is on,
// and a top-level window told that it moved to another one (WM_DPICHANGED)
// lays itself out again at the new dpi. The per-monitor calls exist from
// Windows 10 (1607) on and are looked up in user32 at their first use;
// before that every window has the screen's logical dpi.
#pragma once

#include <windows.h>

namespace qm::win32 {

// The window's dpi (GetDpiForWindow), or the vertical logical dpi of its
// device context where that call is missing; 96 when neither answers.
int WindowDpi(HWND window);

// The outer rectangle of a window whose client area is `client`, at `dpi`
// (AdjustWindowRectExForDpi, or the screen's own measure where missing).
RECT OuterRectForDpi(RECT client, DWORD style, DWORD exStyle, int dpi);

}  // namespace qm::win32
