// The message flasher as the program creates it, in one line: the overlay
// window, the two timers, the random generator and the frmMessage that
// drives them, loaded on construction (the screen service read, the window
// made transparent) and unloaded on destruction (the screen service
// released, which repaints the desktop).
//
// Timer periods before anything sets them: the interval timer 1 second,
// the display timer 1 millisecond (what the timing panel's wheels show
// before settings are applied). Both timers start disabled; Begin starts
// the cycle.
//
// The flasher keeps each raised phrase up until the compositor has shown it
// (asking again every kFrameCheck meanwhile), and shows none while the user
// is busy with the whole screen.
#pragma once

#include <chrono>
#include <memory>

#include "display/compositor_win32.h"
#include "display/lcg_random.h"
#include "display/message_flasher.h"
#include "display/overlay_window_win32.h"
#include "display/user_attention_win32.h"
#include "platform/message_loop_win32.h"
#include "platform/screen_win32.h"
#include "platform/timer_win32.h"

namespace qm::win32 {

class MessageWindow {
 public:
  static constexpr std::chrono::milliseconds kDefaultFrequency{1000};
  static constexpr std::chrono::milliseconds kDefaultDisplayLength{1};
  static constexpr std::chrono::milliseconds kFrameCheck{1};

  // The host answers whether the settings window is shown and the tray
  // menu open; it and the loop must outlive this object. The screen
  // service may show its critical message and fail: the screen's size
  // then comes from the system metrics.
  MessageWindow(const FlasherHost& host, MessageLoop& loop);
  ~MessageWindow();
  MessageWindow(const MessageWindow&) = delete;
  MessageWindow& operator=(const MessageWindow&) = delete;

  frmMessage& Form() { return form_; }
  OverlayWindow& Overlay() { return overlay_; }

 private:
  std::unique_ptr<clsScreen> screen_;  // first made, last released
  LcgRandom random_;
  OverlayWindow overlay_;
  WindowTimer timerFrequency_{kDefaultFrequency};
  PreciseTimer timerDisplayLength_;
  CompositorClock frames_;
  PreciseTimer frameWait_;
  ShellAttention attention_;
  frmMessage form_;
};

// The seconds since midnight, local time.
unsigned SecondsSinceMidnight();

}  // namespace qm::win32
