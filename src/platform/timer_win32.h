// Timers of the user-interface thread (the Timer port), two kinds:
//
// - WindowTimer: SetTimer on a message-only window of its own. Periods of
//   10 ms and more (the system's floor): the interval timer, which counts
//   whole seconds, and the one-second watchdog.
// - PreciseTimer: periods down to 1 ms. A waitable timer (high resolution
//   where the system offers it) that MessageLoop waits on, so it ticks on
//   the same thread. Nested loops (menus, message boxes) wait on nothing but
//   messages, so each period also arms a SetTimer backup; whichever comes
//   first ticks, once, and starts the next period.
//
// Both are disabled when made and keep their interval until told another.
// As the port says: enabling an enabled timer changes nothing (its period
// runs on), and a new interval for an enabled timer starts a new period.
// An interval of 0 or less never ticks.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>

#include "platform/handle_win32.h"
#include "platform/message_loop_win32.h"
#include "platform/timer.h"
#include "platform/window_win32.h"

namespace qm::win32 {

// A message-only window that runs one callback at each of its WM_TIMERs.
class TimerWindow final : public Window {
 public:
  explicit TimerWindow(std::function<void()> onTimer);
  ~TimerWindow() override;
  // (Re)starts the system timer with the period; false when it failed.
  bool Start(std::chrono::milliseconds period);
  void Stop();

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;

 private:
  std::function<void()> onTimer_;
};

// The enabled flag and the interval with the port's rules, for both
// kinds; a derived timer only starts and stops its periods.
class SystemTimer : public Timer {
 public:
  void SetEnabled(bool enabled) final;
  bool Enabled() const final { return enabled_; }
  void SetInterval(std::chrono::milliseconds interval) final;
  std::chrono::milliseconds Interval() const final { return interval_; }

 protected:
  explicit SystemTimer(std::chrono::milliseconds interval) : interval_(interval) {}
  // Starts a new period, ending the one running (none for an interval of
  // 0 or less).
  virtual void StartPeriod() = 0;
  virtual void StopPeriods() = 0;

 private:
  bool enabled_ = false;
  std::chrono::milliseconds interval_;
};

class WindowTimer final : public SystemTimer {
 public:
  explicit WindowTimer(std::chrono::milliseconds interval = std::chrono::seconds(1));

 private:
  void StartPeriod() override;
  void StopPeriods() override { window_.Stop(); }
  void OnWmTimer();

  TimerWindow window_;
  std::chrono::steady_clock::time_point lastStart_{};
};

class PreciseTimer final : public SystemTimer {
 public:
  // The loop waits on the timer; it must outlive it.
  explicit PreciseTimer(MessageLoop& loop, std::chrono::milliseconds interval = std::chrono::milliseconds(1));
  ~PreciseTimer() override;
  PreciseTimer(const PreciseTimer&) = delete;
  PreciseTimer& operator=(const PreciseTimer&) = delete;

  // Whether the system gave a high-resolution waitable timer (otherwise
  // the system timer's resolution is raised to 1 ms while armed).
  bool HighResolution() const { return highResolution_; }

 private:
  using Clock = std::chrono::steady_clock;
  // A period: the waitable timer and the backup.
  void StartPeriod() override;
  // Stops the period; StopPeriods also gives the system's timer
  // resolution back.
  void Cancel();
  void StopPeriods() override;
  // The waitable timer was signalled (fromBackup false) or the backup's
  // WM_TIMER came (true).
  void OnDue(bool fromBackup);

  MessageLoop& loop_;
  KernelHandle waitable_;
  bool highResolution_ = false;
  bool resolutionRaised_ = false;
  TimerWindow backup_;
  bool armed_ = false;
  Clock::time_point due_{};
};

}  // namespace qm::win32
