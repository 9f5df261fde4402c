// What the user is doing, as far as it decides whether a phrase may appear:
// the shell's own word on whether notifications are welcome now, and the
// window in front and the monitor it is on. The rule that turns these into
// "stay quiet" is the display's (display/flash_guard.h); this port only
// reports.
#pragma once

#include <optional>

namespace qm {

// The shell's user notification state, numbered as the shell numbers it.
enum class NotificationState {
  NotPresent = 1,            // no user signed in, or the screen is locked
  Busy = 2,                  // a full-screen program that is not a game
  RunningD3dFullScreen = 3,  // a full-screen game or video
  PresentationMode = 4,      // the user asked for presentation settings
  AcceptsNotifications = 5,
  QuietTime = 6,  // the first hour after a new installation, or "do not disturb"
  App = 7,        // a full-screen app of the new kind
};

// A rectangle on the virtual screen, in pixels; right and bottom outside.
struct ScreenRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
};

// The window in front, told apart from what never counts as a program the
// user works in: the desktop, the shell's taskbar, the program's own
// windows.
struct ForegroundWindow {
  enum class Kind { None, Desktop, Shell, Own, Other };
  Kind kind = Kind::None;
  // Its client area (a maximised window's caption is not part of it), and
  // the whole monitor it is on.
  ScreenRect client;
  ScreenRect monitor;
};

class UserAttention {
 public:
  virtual ~UserAttention() = default;
  // Nothing when the system does not tell.
  virtual std::optional<NotificationState> UserNotificationState() const = 0;
  virtual ForegroundWindow Foreground() const = 0;
};

}  // namespace qm
