// A plain top-level window in the settings window's blue, to hold tab bars
// and buttons in the shell tests and the gallery; a way to let queued
// messages and painting happen, and the pixel a window then shows.
#pragma once

#include <windows.h>

#include "../../support/test_helpers_win32.h"
#include "platform/gdi_win32.h"
#include "platform/ole_color.h"
#include "platform/window_win32.h"

namespace qm::win32 {

class BlueHost : public Window {
 public:
  ~BlueHost() override { Destroy(); }

  // A borderless window at x, y of the given client size in pixels, above
  // the others so that its pixels can be read back from the screen.
  bool Create(const char* title, int x, int y, int width, int height) {
    CreateArgs args;
    args.className = "QmTabHost";
    args.title = title;
    args.style = WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN;
    args.exStyle = WS_EX_TOPMOST;
    args.x = x;
    args.y = y;
    args.width = width;
    args.height = height;
    return Window::Create(args);
  }

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) override {
    if (msg != WM_ERASEBKGND) return Window::HandleMessage(msg, wParam, lParam);
    RECT client{};
    ::GetClientRect(Hwnd(), &client);
    Brush blue(::CreateSolidBrush(static_cast<COLORREF>(kSettingsBlue)));
    ::FillRect(reinterpret_cast<HDC>(wParam), &client, blue.Get());
    return 1;
  }
};

// Runs the message loop for `ms` milliseconds, so that posted messages are
// handled and windows are painted and reach the screen.
inline void PumpMessages(DWORD ms) {
  test::WaitFor(
      [] {
        test::Pump();
        return false;
      },
      std::chrono::milliseconds(ms));
}

// The screen pixel at x, y of a window, once its painting is done.
inline COLORREF Painted(HWND hwnd, int x, int y) {
  ::UpdateWindow(hwnd);
  PumpMessages(100);
  POINT p{x, y};
  ::ClientToScreen(hwnd, &p);
  WindowDC screen(nullptr);
  return ::GetPixel(screen.Get(), p.x, p.y);
}

}  // namespace qm::win32
