// One base for the program's windows. The static window procedure takes
// `this` from lpCreateParams at WM_NCCREATE, keeps it in GWLP_USERDATA and
// clears it at WM_NCDESTROY; every message then goes to HandleMessage.
// Nothing escapes a window procedure: an exception thrown by a handler is
// caught at the boundary and the message gets its default handling.
// A derived window that must see its own WM_DESTROY calls Destroy() in its
// destructor; the base destructor only sees the base's handling.
#pragma once

#include <windows.h>

namespace qm::win32 {

// What a window is made of; one place shows it.
struct CreateArgs {
  const char* className = nullptr;  // registered on first use
  UINT classStyle = 0;
  HBRUSH background = nullptr;  // class background brush (not owned)
  HICON icon = nullptr;
  HICON smallIcon = nullptr;
  HCURSOR cursor = nullptr;  // nullptr: the arrow
  const char* title = "";
  DWORD style = WS_OVERLAPPEDWINDOW;
  DWORD exStyle = 0;
  int x = CW_USEDEFAULT;
  int y = CW_USEDEFAULT;
  int width = CW_USEDEFAULT;
  int height = CW_USEDEFAULT;
  HWND parent = nullptr;
  HMENU menuOrId = nullptr;

  // A child control's place in its parent and its id.
  void Child(HWND parentWindow, const RECT& bounds, int id) {
    x = bounds.left;
    y = bounds.top;
    width = bounds.right - bounds.left;
    height = bounds.bottom - bounds.top;
    parent = parentWindow;
    menuOrId = reinterpret_cast<HMENU>(static_cast<INT_PTR>(id));
  }
};

class Window {
 public:
  Window() = default;
  virtual ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  HWND Hwnd() const { return hwnd_; }
  // Destroys the window now (also done by the destructor).
  void Destroy();

 protected:
  // Registers the class (once per name) and creates the window; false when
  // either fails.
  bool Create(const CreateArgs& args);

  // Handles one message; the default is DefWindowProcA.
  virtual LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam);
  // Called during WM_NCDESTROY, after which Hwnd() is null.
  virtual void OnDestroyed() {}

 private:
  static LRESULT CALLBACK StaticProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam);
  HWND hwnd_ = nullptr;
};

// The module the program runs from.
HINSTANCE ThisModule();

}  // namespace qm::win32
