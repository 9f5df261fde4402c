#include "display/overlay_routines_win32.h"

namespace qm::win32 {

namespace modTransparent {

bool MakeTransparent(HWND window, OleColor key) {
  // Looked up at run time: a system without layered windows lacks it.
  using SetLayeredAttributes = BOOL(WINAPI*)(HWND, COLORREF, BYTE, DWORD);
  const HMODULE user32 = ::GetModuleHandleA("user32.dll");
  const auto setAttributes = user32 ? reinterpret_cast<SetLayeredAttributes>(reinterpret_cast<void*>(
                                          ::GetProcAddress(user32, "SetLayeredWindowAttributes")))
                                    : nullptr;

  const LONG exStyle = ::GetWindowLongA(window, GWL_EXSTYLE);
  ::SetWindowLongA(window, GWL_EXSTYLE, exStyle | WS_EX_LAYERED);
  if (!setAttributes) return false;
  setAttributes(window, static_cast<COLORREF>(key), 0, LWA_COLORKEY);
  return true;
}

}  // namespace modTransparent

namespace modWindowsRoutines {

void MakeTopMost(HWND window) {
  ::SetWindowPos(window, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

}  // namespace modWindowsRoutines

}  // namespace qm::win32
