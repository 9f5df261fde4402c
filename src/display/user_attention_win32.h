// What the user is doing, on Windows: the shell's user notification state
// (SHQueryUserNotificationState, where the shell offers it) and the window
// in front with its monitor.
#pragma once

#include "platform/user_attention.h"

namespace qm::win32 {

class ShellAttention final : public UserAttention {
 public:
  std::optional<NotificationState> UserNotificationState() const override;
  // The desktop is the desktop window, the shell's window or its desktop
  // layers ("Progman", "WorkerW"); the shell's taskbars are "Shell_TrayWnd"
  // and "Shell_SecondaryTrayWnd"; a hidden or minimised window in front is
  // none.
  ForegroundWindow Foreground() const override;
};

}  // namespace qm::win32
