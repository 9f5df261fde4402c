#include "platform/window_win32.h"

#include "platform/screen_win32.h"

#include <exception>

namespace qm::win32 {

HINSTANCE ThisModule() { return ::GetModuleHandleA(nullptr); }

Window::~Window() { Destroy(); }

void Window::Destroy() {
  if (hwnd_) ::DestroyWindow(hwnd_);
}

bool Window::Create(const CreateArgs& a) {
  WNDCLASSEXA existing{};
  existing.cbSize = sizeof existing;
  if (!::GetClassInfoExA(ThisModule(), a.className, &existing)) {
    WNDCLASSEXA wc{};
    wc.cbSize = sizeof wc;
    wc.style = a.classStyle;
    wc.lpfnWndProc = &Window::StaticProc;
    wc.hInstance = ThisModule();
    wc.hIcon = a.icon;
    wc.hIconSm = a.smallIcon;
    wc.hCursor = a.cursor ? a.cursor : ::LoadCursorA(nullptr, IDC_ARROW);
    wc.hbrBackground = a.background;
    wc.lpszClassName = a.className;
    if (!::RegisterClassExA(&wc)) return false;
  }
  ::CreateWindowExA(a.exStyle, a.className, a.title, a.style, a.x, a.y, a.width, a.height, a.parent, a.menuOrId,
                    ThisModule(), this);
  return hwnd_ != nullptr;
}

LRESULT Window::HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
  return ::DefWindowProcA(hwnd_, msg, wParam, lParam);
}

LRESULT CALLBACK Window::StaticProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  Window* self = nullptr;
  if (msg == WM_NCCREATE) {
    self = static_cast<Window*>(reinterpret_cast<CREATESTRUCTA*>(lParam)->lpCreateParams);
    self->hwnd_ = hwnd;
    ::SetWindowLongPtrA(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    // A top-level window is one of the program's forms while it exists.
    if ((reinterpret_cast<CREATESTRUCTA*>(lParam)->style & WS_CHILD) == 0) FormLoaded(hwnd);
  } else {
    self = reinterpret_cast<Window*>(::GetWindowLongPtrA(hwnd, GWLP_USERDATA));
  }
  if (!self) return ::DefWindowProcA(hwnd, msg, wParam, lParam);

  LRESULT result = 0;
  try {
    result = self->HandleMessage(msg, wParam, lParam);
  } catch (...) {
    result = ::DefWindowProcA(hwnd, msg, wParam, lParam);
  }
  if (msg == WM_NCDESTROY) {
    FormUnloaded(hwnd);
    ::SetWindowLongPtrA(hwnd, GWLP_USERDATA, 0);
    self->hwnd_ = nullptr;
    self->OnDestroyed();
  }
  return result;
}

}  // namespace qm::win32
