#include "display/flash_guard.h"

namespace qm {

bool PhraseSeen(std::optional<std::uint64_t> atShow, std::optional<std::uint64_t> now) {
  if (!atShow || !now) return true;
  return *now >= *atShow + kFramesUntilSeen;
}

namespace {

bool Covers(const ScreenRect& area, const ScreenRect& monitor) {
  const bool emptyMonitor = monitor.right <= monitor.left || monitor.bottom <= monitor.top;
  return !emptyMonitor && area.left <= monitor.left && area.top <= monitor.top &&
         area.right >= monitor.right && area.bottom >= monitor.bottom;
}

}  // namespace

bool StaysQuiet(std::optional<NotificationState> state, const ForegroundWindow& foreground) {
  if (state) {
    switch (*state) {
      case NotificationState::Busy:
      case NotificationState::RunningD3dFullScreen:
      case NotificationState::PresentationMode:
      case NotificationState::QuietTime:
        return true;
      default:
        break;
    }
  }
  return foreground.kind == ForegroundWindow::Kind::Other && Covers(foreground.client, foreground.monitor);
}

bool StaysQuiet(const UserAttention& attention) {
  return StaysQuiet(attention.UserNotificationState(), attention.Foreground());
}

}  // namespace qm
