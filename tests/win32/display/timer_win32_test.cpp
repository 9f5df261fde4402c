// The timers and the message loop under Wine. Nothing here asserts how
// long anything took; the benchmark measures that.
#include "platform/timer_win32.h"

#include <gtest/gtest.h>

#include <chrono>

#include "platform/message_loop_win32.h"

namespace qm::win32 {
namespace {

using namespace std::chrono_literals;

// Runs a plain GetMessage loop, as a message box or a popup menu does,
// for about the time given: it knows nothing of MessageLoop's handles.
void RunNestedLoop(std::chrono::milliseconds time) {
  const UINT_PTR end = ::SetTimer(nullptr, 0, static_cast<UINT>(time.count()), nullptr);
  MSG msg;
  while (::GetMessageA(&msg, nullptr, 0, 0) > 0) {
    if (msg.message == WM_TIMER && msg.hwnd == nullptr && msg.wParam == end) break;
    ::TranslateMessage(&msg);
    ::DispatchMessageA(&msg);
  }
  ::KillTimer(nullptr, end);
}

struct Counted {
  explicit Counted(Timer& t) : timer(t) {
    timer.SetTick([this] { ++ticks; });
  }
  Timer& timer;
  int ticks = 0;
};

TEST(TimerShell, MillisecondTimerTicksInTheLoopAndInNestedLoops) {
  MessageLoop loop;
  PreciseTimer timer(loop, 1ms);
  Counted counted(timer);
  EXPECT_FALSE(timer.Enabled()) << "made disabled";
  loop.RunFor(50ms);
  EXPECT_EQ(counted.ticks, 0);

  timer.SetEnabled(true);
  EXPECT_TRUE(loop.RunUntil([&] { return counted.ticks >= 5; }, 5s));

  // Inside a loop that waits on messages only, the backup keeps it ticking.
  const int before = counted.ticks;
  RunNestedLoop(300ms);
  EXPECT_GT(counted.ticks, before);

  timer.SetEnabled(false);
  const int stopped = counted.ticks;
  loop.RunFor(100ms);
  RunNestedLoop(100ms);
  EXPECT_EQ(counted.ticks, stopped) << "no tick after the timer was disabled";
}

TEST(TimerShell, EachPeriodTicksOnceThoughTwoSourcesMayFire) {
  MessageLoop loop;
  PreciseTimer timer(loop, 20ms);
  Counted counted(timer);
  const auto start = std::chrono::steady_clock::now();
  timer.SetEnabled(true);
  loop.RunFor(400ms);
  timer.SetEnabled(false);
  const auto elapsed = std::chrono::steady_clock::now() - start;
  // Every tick starts the next period of 20 ms (less at most 2 ms of slack
  // between the system's clocks); a doubled tick would break this bound.
  EXPECT_LE(counted.ticks, elapsed / 18ms + 1);
  EXPECT_GT(counted.ticks, 0);
}

TEST(TimerShell, ZeroIntervalNeverTicksAndANewIntervalStartsTicking) {
  MessageLoop loop;
  PreciseTimer precise(loop, 0ms);
  WindowTimer coarse(0ms);
  Counted p(precise), c(coarse);
  precise.SetEnabled(true);
  coarse.SetEnabled(true);
  loop.RunFor(100ms);
  EXPECT_EQ(p.ticks + c.ticks, 0);

  precise.SetInterval(2ms);
  coarse.SetInterval(10ms);
  EXPECT_TRUE(loop.RunUntil([&] { return p.ticks >= 3 && c.ticks >= 3; }, 5s));
  EXPECT_EQ(precise.Interval(), 2ms);
  EXPECT_EQ(coarse.Interval(), 10ms);
}

TEST(MessageLoopShell, QuitEndsRunWithItsCodeAndIsPassedOnByRunFor) {
  MessageLoop loop;
  ::PostQuitMessage(7);
  EXPECT_FALSE(loop.RunFor(5s));
  EXPECT_EQ(loop.Run(), 7) << "RunFor posted the quit again for the outer loop";
}

}  // namespace
}  // namespace qm::win32
