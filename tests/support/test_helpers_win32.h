// Helpers the Windows shell and end-to-end tests share: a window's text,
// the waiting window messages run, waiting for a condition, a capture of
// the screen as the user sees it, the process's GDI objects, and the
// system's dialogs of this thread answered from a timer with OK, as a person
// would answer them.
#pragma once

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qm::test {

// The text with every character outside ASCII shown as "?".
inline std::string Ascii(std::wstring_view text) {
  std::string out;
  for (wchar_t c : text) out += c < 128 ? static_cast<char>(c) : '?';
  return out;
}

// The window's text, asked of it with a time limit (it may belong to
// another process), in ASCII.
inline std::string Text(HWND hwnd) {
  wchar_t text[8192] = {};
  ::SendMessageTimeoutW(hwnd, WM_GETTEXT, 8192, reinterpret_cast<LPARAM>(text), SMTO_ABORTIFHUNG, 2000,
                        nullptr);
  return Ascii(text);
}

// Runs the window messages that are waiting.
inline void Pump() {
  MSG msg;
  while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
    ::TranslateMessage(&msg);
    ::DispatchMessageW(&msg);
  }
}

// Polls until the condition holds or the time is up; whether it held. (It
// runs no window messages: a condition that needs this thread's windows
// served calls Pump.)
inline bool WaitFor(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
  const auto end = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    if (condition()) return true;
    if (std::chrono::steady_clock::now() >= end) return false;
    ::Sleep(10);
  }
}

// A capture of part of the screen as the user sees it (layered windows
// included), its pixels as COLORREF, row by row from the top.
inline std::vector<COLORREF> CaptureScreen(const RECT& area) {
  const int width = area.right - area.left, height = area.bottom - area.top;
  if (width <= 0 || height <= 0) return {};
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;  // top-down
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  const HDC screen = ::GetDC(nullptr);
  const HDC memory = ::CreateCompatibleDC(screen);
  const HBITMAP dib = ::CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  std::vector<COLORREF> pixels;
  if (dib) {
    const HGDIOBJ old = ::SelectObject(memory, dib);
    ::BitBlt(memory, 0, 0, width, height, screen, area.left, area.top, SRCCOPY | CAPTUREBLT);
    ::GdiFlush();
    const auto* p = static_cast<const std::uint32_t*>(bits);  // 0x00RRGGBB
    for (int i = 0; i < width * height; ++i)
      pixels.push_back(RGB((p[i] >> 16) & 0xFF, (p[i] >> 8) & 0xFF, p[i] & 0xFF));
    ::SelectObject(memory, old);
    ::DeleteObject(dib);
  }
  ::DeleteDC(memory);
  ::ReleaseDC(nullptr, screen);
  return pixels;
}

// Pixels of one colour in a rectangle of the screen.
inline int CountScreenColour(const RECT& area, COLORREF colour) {
  const std::vector<COLORREF> pixels = CaptureScreen(area);
  return static_cast<int>(std::count(pixels.begin(), pixels.end(), colour));
}

// GDI objects this process holds. Wine answers 0 to GetGuiResources; there
// the highest handle slot that fresh objects get stands in: freed slots are
// given out again first, so it climbs only with objects left alive.
inline unsigned GdiObjectsInUse() {
  if (const DWORD n = ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS)) return n;
  std::vector<HBRUSH> probes;
  unsigned highest = 0;
  for (int i = 0; i < 64; ++i) {
    probes.push_back(::CreateSolidBrush(0));
    highest = std::max<unsigned>(highest, LOWORD(reinterpret_cast<ULONG_PTR>(probes.back())));
  }
  for (HBRUSH probe : probes) ::DeleteObject(probe);
  return highest;
}

// A borderless window of one colour, top-most unless asked otherwise: the
// ground that drawings on the screen and the overlay are seen against
// (the bare display behind all windows is never repainted).
class ColourWindow {
 public:
  ColourWindow(COLORREF colour, const RECT& at, DWORD exStyle = WS_EX_TOPMOST) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = Proc;
    windowClass.hInstance = ::GetModuleHandleW(nullptr);
    windowClass.hCursor = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
    windowClass.lpszClassName = L"QmTestColourWindow";
    ::RegisterClassW(&windowClass);
    hwnd_ = ::CreateWindowExW(exStyle, windowClass.lpszClassName, L"", WS_POPUP, at.left, at.top,
                              at.right - at.left, at.bottom - at.top, nullptr, nullptr, windowClass.hInstance,
                              nullptr);
    ::SetWindowLongPtrW(hwnd_, GWLP_USERDATA, static_cast<LONG_PTR>(colour));
    ::ShowWindow(hwnd_, SW_SHOW);
    ::UpdateWindow(hwnd_);
  }
  ~ColourWindow() { ::DestroyWindow(hwnd_); }
  ColourWindow(const ColourWindow&) = delete;
  ColourWindow& operator=(const ColourWindow&) = delete;
  HWND Hwnd() const { return hwnd_; }

 private:
  static LRESULT CALLBACK Proc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
    if (msg != WM_ERASEBKGND) return ::DefWindowProcW(hwnd, msg, wParam, lParam);
    RECT client{};
    ::GetClientRect(hwnd, &client);
    const HBRUSH brush = ::CreateSolidBrush(static_cast<COLORREF>(::GetWindowLongPtrW(hwnd, GWLP_USERDATA)));
    ::FillRect(reinterpret_cast<HDC>(wParam), &client, brush);
    ::DeleteObject(brush);
    return 1;
  }
  HWND hwnd_ = nullptr;
};

// Presses OK in the first visible dialog box of this thread.
inline BOOL CALLBACK AnswerDialog(HWND hwnd, LPARAM) {
  char name[16] = {};
  if (!::IsWindowVisible(hwnd) || !::GetClassNameA(hwnd, name, sizeof name) || std::string(name) != "#32770")
    return TRUE;
  ::PostMessageW(hwnd, WM_COMMAND, IDOK, 0);
  return FALSE;
}

// A timer procedure that answers the open dialog at every tick.
inline void CALLBACK AnswerEveryTime(HWND, UINT, UINT_PTR, DWORD) {
  ::EnumThreadWindows(::GetCurrentThreadId(), AnswerDialog, 0);
}

}  // namespace qm::test
