#include "platform/window_dpi_win32.h"

#include "platform/twips.h"

namespace qm::win32 {
namespace {

using GetDpiForWindowFn = UINT(WINAPI*)(HWND);
using AdjustWindowRectExForDpiFn = BOOL(WINAPI*)(RECT*, DWORD, BOOL, DWORD, UINT);

// user32 is loaded with every window program; only its newer functions
// are looked up.
template <class F>
F User32Function(const char* name) {
  const HMODULE user32 = ::GetModuleHandleW(L"user32.dll");
  return user32 ? reinterpret_cast<F>(reinterpret_cast<void*>(::GetProcAddress(user32, name))) : nullptr;
}

}  // namespace

int WindowDpi(HWND window) {
  static const auto getDpiForWindow = User32Function<GetDpiForWindowFn>("GetDpiForWindow");
  if (getDpiForWindow && window) {
    const UINT dpi = getDpiForWindow(window);
    if (dpi > 0) return static_cast<int>(dpi);
  }
  int dpi = 0;
  if (const HDC dc = ::GetDC(window)) {
    dpi = ::GetDeviceCaps(dc, LOGPIXELSY);
    ::ReleaseDC(window, dc);
  }
  return UsableDpi(dpi);
}

RECT OuterRectForDpi(RECT client, DWORD style, DWORD exStyle, int dpi) {
  static const auto adjustForDpi = User32Function<AdjustWindowRectExForDpiFn>("AdjustWindowRectExForDpi");
  if (!adjustForDpi || !adjustForDpi(&client, style, FALSE, exStyle, static_cast<UINT>(UsableDpi(dpi))))
    ::AdjustWindowRectEx(&client, style, FALSE, exStyle);
  return client;
}

}  // namespace qm::win32
