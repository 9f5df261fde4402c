#include "platform/timer_win32.h"

#include "platform/system_dll_win32.h"

#include <mmsystem.h>

#include <algorithm>

namespace qm::win32 {
namespace {

using std::chrono::milliseconds;

constexpr UINT_PTR kTimerId = 1;
// Not in every SDK's headers; systems that lack it refuse the flag.
constexpr DWORD kHighResolutionFlag = 0x00000002;  // CREATE_WAITABLE_TIMER_HIGH_RESOLUTION

CreateArgs TimerWindowArgs() {
  CreateArgs args;
  args.className = "QuillmereTimerWindow";
  args.style = 0;
  args.x = args.y = args.width = args.height = 0;
  args.parent = HWND_MESSAGE;
  return args;
}

}  // namespace

TimerWindow::TimerWindow(std::function<void()> onTimer) : onTimer_(std::move(onTimer)) {
  Create(TimerWindowArgs());
}

TimerWindow::~TimerWindow() {
  Destroy();
}

bool TimerWindow::Start(milliseconds period) {
  const auto ms = std::clamp<long long>(period.count(), USER_TIMER_MINIMUM, USER_TIMER_MAXIMUM);
  return Hwnd() && ::SetTimer(Hwnd(), kTimerId, static_cast<UINT>(ms), nullptr) != 0;
}

void TimerWindow::Stop() {
  if (Hwnd()) ::KillTimer(Hwnd(), kTimerId);
}

LRESULT TimerWindow::HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == WM_TIMER && wParam == kTimerId) {
    if (onTimer_) onTimer_();
    return 0;
  }
  if (msg == WM_DESTROY) Stop();
  return Window::HandleMessage(msg, wParam, lParam);
}

// --- SystemTimer ---

void SystemTimer::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  if (enabled_) {
    StartPeriod();
  } else {
    StopPeriods();
  }
}

void SystemTimer::SetInterval(milliseconds interval) {
  interval_ = interval;
  if (enabled_) StartPeriod();
}

// --- WindowTimer ---

WindowTimer::WindowTimer(milliseconds interval) : SystemTimer(interval), window_([this] { OnWmTimer(); }) {}

void WindowTimer::StartPeriod() {
  if (Interval().count() <= 0) {
    window_.Stop();
    return;
  }
  lastStart_ = std::chrono::steady_clock::now();
  window_.Start(Interval());
}

void WindowTimer::OnWmTimer() {
  if (!Enabled() || Interval().count() <= 0) return;
  // A WM_TIMER of an earlier period may still wait in the queue after the
  // timer was stopped and started again: one that comes well before this
  // period could have ended is that one.
  const auto now = std::chrono::steady_clock::now();
  if (now - lastStart_ < Interval() / 2) return;
  lastStart_ = now;
  FireTick();
}

// --- PreciseTimer ---

PreciseTimer::PreciseTimer(MessageLoop& loop, milliseconds interval)
    : SystemTimer(interval), loop_(loop), backup_([this] { OnDue(true); }) {
  waitable_.Reset(::CreateWaitableTimerExW(nullptr, nullptr, kHighResolutionFlag, TIMER_ALL_ACCESS));
  highResolution_ = waitable_.Valid();
  if (!waitable_) waitable_.Reset(::CreateWaitableTimerExW(nullptr, nullptr, 0, TIMER_ALL_ACCESS));
  // Without a waitable timer the backup alone ticks, at SetTimer's pace.
  if (waitable_) loop_.Watch(waitable_.Get(), [this] { OnDue(false); });
}

PreciseTimer::~PreciseTimer() {
  PreciseTimer::StopPeriods();
  // The loop lets go of the handle before it is closed.
  if (waitable_) loop_.Unwatch(waitable_.Get());
  waitable_.Reset();
}

void PreciseTimer::StartPeriod() {
  Cancel();
  const milliseconds interval = Interval();
  if (interval.count() <= 0) return;
  if (!highResolution_ && !resolutionRaised_) resolutionRaised_ = sys::timeBeginPeriod(1) == TIMERR_NOERROR;
  due_ = Clock::now() + interval;
  if (waitable_) {
    LARGE_INTEGER dueTime;
    dueTime.QuadPart = -static_cast<LONGLONG>(interval.count()) * 10000;  // relative, in 100 ns
    ::SetWaitableTimer(waitable_.Get(), &dueTime, 0, nullptr, nullptr, FALSE);
  }
  backup_.Start(interval);
  armed_ = true;
}

void PreciseTimer::Cancel() {
  armed_ = false;
  backup_.Stop();
  if (waitable_) {
    ::CancelWaitableTimer(waitable_.Get());
    // A signal of the cancelled period must not tick the next one: a
    // synchronization timer is reset by a wait that finds it signalled.
    ::WaitForSingleObject(waitable_.Get(), 0);
  }
}

void PreciseTimer::StopPeriods() {
  Cancel();
  if (resolutionRaised_) {
    sys::timeEndPeriod(1);
    resolutionRaised_ = false;
  }
}

void PreciseTimer::OnDue(bool fromBackup) {
  if (!Enabled() || !armed_) return;
  // A backup WM_TIMER of an earlier period may still wait in the queue;
  // one that comes before this period's end (less a little slack for the
  // two clocks) is that one.
  if (fromBackup) {
    const auto slack = std::min<Clock::duration>(Interval() / 4, milliseconds(2));
    if (Clock::now() < due_ - slack) return;
  }
  StartPeriod();  // the next period, which the tick may end
  FireTick();
}

}  // namespace qm::win32
