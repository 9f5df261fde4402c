#include "display/user_attention_win32.h"

#include <windows.h>

#include <cstring>

#include "platform/system_dll_win32.h"

namespace qm::win32 {
namespace {

ScreenRect ToScreenRect(const RECT& r) {
  return {static_cast<int>(r.left), static_cast<int>(r.top), static_cast<int>(r.right),
          static_cast<int>(r.bottom)};
}

ForegroundWindow::Kind KindOf(HWND window) {
  using Kind = ForegroundWindow::Kind;
  if (window == ::GetDesktopWindow() || window == ::GetShellWindow()) return Kind::Desktop;
  char name[64] = {};
  ::GetClassNameA(window, name, sizeof name);
  if (std::strcmp(name, "Progman") == 0 || std::strcmp(name, "WorkerW") == 0) return Kind::Desktop;
  if (std::strcmp(name, "Shell_TrayWnd") == 0 || std::strcmp(name, "Shell_SecondaryTrayWnd") == 0)
    return Kind::Shell;
  DWORD process = 0;
  ::GetWindowThreadProcessId(window, &process);
  return process == ::GetCurrentProcessId() ? Kind::Own : Kind::Other;
}

}  // namespace

std::optional<NotificationState> ShellAttention::UserNotificationState() const {
  QUERY_USER_NOTIFICATION_STATE state{};
  if (FAILED(sys::SHQueryUserNotificationState(&state))) return std::nullopt;
  const int value = static_cast<int>(state);
  if (value < static_cast<int>(NotificationState::NotPresent) ||
      value > static_cast<int>(NotificationState::App))
    return std::nullopt;
  return static_cast<NotificationState>(value);
}

ForegroundWindow ShellAttention::Foreground() const {
  const HWND window = ::GetForegroundWindow();
  if (!window || !::IsWindowVisible(window) || ::IsIconic(window)) return {};
  ForegroundWindow foreground;
  foreground.kind = KindOf(window);
  RECT client{};
  ::GetClientRect(window, &client);
  ::MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&client), 2);
  foreground.client = ToScreenRect(client);
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  if (::GetMonitorInfoW(::MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor))
    foreground.monitor = ToScreenRect(monitor.rcMonitor);
  return foreground;
}

}  // namespace qm::win32
