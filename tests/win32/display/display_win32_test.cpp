// The overlay on the real (virtual) display under Wine: its styles and
// layered attributes, that it never takes the focus, what a screen capture
// shows while a phrase is up and after it is hidden, that flashing leaves
// no GDI or USER object behind; the compositor's frames and the user's
// attention as Windows reports them; the timers and the message loop.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "../../support/flasher_doubles.h"
#include "../../support/test_helpers_win32.h"
#include "display/flash_guard.h"
#include "display/message_window_win32.h"
#include "display/overlay_routines_win32.h"
#include "platform/gdi_win32.h"
#include "platform/message_loop_win32.h"
#include "platform/timer_win32.h"

namespace qm::win32 {
namespace {

using namespace std::chrono_literals;

// This thread's windows, message-only ones included, stand in for the
// USER count where Wine answers 0 (windows are the only USER objects the
// flasher could make).
BOOL CALLBACK CountWindow(HWND, LPARAM count) {
  ++*reinterpret_cast<unsigned*>(count);
  return TRUE;
}

unsigned UserObjects() {
  if (const DWORD n = ::GetGuiResources(::GetCurrentProcess(), GR_USEROBJECTS)) return n;
  unsigned count = 0;
  ::EnumThreadWindows(::GetCurrentThreadId(), CountWindow, reinterpret_cast<LPARAM>(&count));
  for (HWND w = nullptr; (w = ::FindWindowExA(HWND_MESSAGE, w, nullptr, nullptr)) != nullptr;) {
    if (::GetWindowThreadProcessId(w, nullptr) == ::GetCurrentThreadId()) ++count;
  }
  return count;
}

class OverlayShell : public ::testing::Test {
 protected:
  OverlayShell() {
    flasher.SetLabelFont({"Arial", 36, true, false, false, false});
    flasher.TimerFrequency().SetInterval(10ms);
  }

  // Starts the cycle as run control does and waits for the first phrase.
  void FlashOnce(std::chrono::milliseconds displayLength) {
    flasher.TimerDisplayLength().SetInterval(displayLength);
    flasher.bStopped = false;
    flasher.HideLabel();
    flasher.Show();
    flasher.Begin();
    ASSERT_TRUE(loop.RunUntil([&] { return overlay.LabelVisible(); }, 10s));
  }
  HWND Overlay() const { return overlay.Hwnd(); }

  MessageLoop loop;
  test::ClosedHost host;
  MessageWindow window{host, loop};
  frmMessage& flasher = window.Form();
  OverlayWindow& overlay = window.Overlay();
};

TEST_F(OverlayShell, IsABorderlessColourKeyedPopupOutOfTheTaskBar) {
  ASSERT_NE(Overlay(), nullptr);
  EXPECT_EQ(overlay.Caption(), "I want to buy this program");
  EXPECT_FALSE(flasher.Visible()) << "hidden until run control shows it";

  COLORREF key = 0;
  BYTE alpha = 0;
  DWORD flags = 0;
  ASSERT_TRUE(::GetLayeredWindowAttributes(Overlay(), &key, &alpha, &flags));
  EXPECT_EQ(key, 0x00FFFFFFu);
  EXPECT_EQ(flags, static_cast<DWORD>(LWA_COLORKEY)) << "the colour key and nothing else";

  // Out of the task bar, never activated, clicks going through, and raised
  // only when a phrase shows.
  const auto style = static_cast<DWORD>(::GetWindowLongA(Overlay(), GWL_STYLE));
  const auto exStyle = static_cast<DWORD>(::GetWindowLongA(Overlay(), GWL_EXSTYLE));
  EXPECT_EQ(style & (WS_POPUP | WS_CAPTION | WS_BORDER | WS_THICKFRAME | WS_DLGFRAME), DWORD{WS_POPUP});
  const DWORD wanted = WS_EX_LAYERED | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE | WS_EX_TRANSPARENT;
  EXPECT_EQ(exStyle & (wanted | WS_EX_APPWINDOW | WS_EX_TOPMOST), wanted);
}

// A phrase over a plain window that has the focus: raised, sized around
// the label, not the window's text, the focus left where it was, and on
// the screen nothing but the text in its colour; after the display tick,
// nothing at all.
TEST_F(OverlayShell, PhraseShowsOverTheWindowBeneathWithoutTakingTheFocus) {
  const COLORREF backdropColour = RGB(20, 140, 60);
  const test::ColourWindow backdrop(
      backdropColour, RECT{0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)}, 0);
  ::SetForegroundWindow(backdrop.Hwnd());
  loop.RunFor(100ms);
  ASSERT_EQ(::GetForegroundWindow(), backdrop.Hwnd());
  // A system colour is drawn in its translated RGB.
  flasher.SetLabelColor(0x80000000 | COLOR_HIGHLIGHT);
  const COLORREF textColour = ::GetSysColor(COLOR_HIGHLIGHT);
  ASSERT_EQ(overlay.TextColor(), textColour);
  ASSERT_NE(textColour, backdropColour);
  ASSERT_NE(textColour, RGB(255, 255, 255));

  flasher.MessageList = PhraseList{{"Quillmere WWW"}};
  FlashOnce(3s);
  loop.RunFor(200ms);  // let the display server catch up
  ASSERT_TRUE(overlay.LabelVisible());
  EXPECT_TRUE(::GetWindowLongA(Overlay(), GWL_EXSTYLE) & WS_EX_TOPMOST);
  EXPECT_EQ(::GetForegroundWindow(), backdrop.Hwnd());
  EXPECT_NE(::GetActiveWindow(), Overlay());

  RECT area;
  ::GetWindowRect(Overlay(), &area);
  const TwipsSize label = overlay.LabelSize();
  EXPECT_EQ(area.right - area.left, ::MulDiv(label.width + 50, 96, 1440));
  EXPECT_EQ(area.bottom - area.top, ::MulDiv(label.height + 150, 96, 1440));
  // Window lists and accessibility tools read a window's text: the phrase
  // is not the overlay's (the end-to-end tests have it by asking).
  wchar_t windowText[64] = {L'x'};
  EXPECT_EQ(::InternalGetWindowText(Overlay(), windowText, 64), 0);
  EXPECT_EQ(::GetWindowTextLengthW(Overlay()), 0);
  // Raising a window that is already top-most keeps its place and size.
  modWindowsRoutines::MakeTopMost(Overlay());
  RECT again;
  ::GetWindowRect(Overlay(), &again);
  EXPECT_TRUE(::EqualRect(&area, &again));
  EXPECT_EQ(::GetForegroundWindow(), backdrop.Hwnd());

  ::InflateRect(&area, 20, 20);
  RECT screen{0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
  ::IntersectRect(&area, &area, &screen);
  const int pixels = (area.right - area.left) * (area.bottom - area.top);
  const int text = test::CountScreenColour(area, textColour);
  const int beneath = test::CountScreenColour(area, backdropColour);
  EXPECT_GT(text, 200) << "the phrase is on the screen in its colour";
  EXPECT_EQ(text + beneath, pixels) << "no white box, no light fringe";
  EXPECT_GT(beneath, text) << "the window beneath shows everywhere else";

  ASSERT_TRUE(loop.RunUntil([&] { return !overlay.LabelVisible(); }, 10s)) << "the display tick hides it";
  flasher.bStopped = true;  // no next phrase while we look
  loop.RunFor(200ms);
  EXPECT_EQ(test::CountScreenColour(area, backdropColour), pixels) << "nothing but the window beneath";
}

// A phrase of a megabyte (a hand-made category file) comes and goes like
// any other. The label gets a screen's width of characters, and of those
// the overlay measures and draws only what fits across the screen: with
// letters all alike, one letter more would not fit.
TEST_F(OverlayShell, AMegabytePhraseShowsOnlyWhatFitsAndComesAndGoes) {
  const std::string huge(1 << 20, 'W');
  flasher.MessageList = PhraseList{{huge}};
  FlashOnce(50ms);
  const int screenWidth = ::GetSystemMetrics(SM_CXSCREEN);
  EXPECT_LE(overlay.Caption().size(), static_cast<std::size_t>(screenWidth));
  const std::size_t shown = overlay.ShownText().size();
  ASSERT_GT(shown, 0u);
  EXPECT_LT(shown, overlay.Caption().size()) << "a W is wider than a pixel";
  const RECT label = overlay.LabelRect();
  const int labelWidth = label.right - label.left;
  EXPECT_LE(labelWidth, screenWidth);
  EXPECT_GT(labelWidth + labelWidth / static_cast<int>(shown), screenWidth) << "one W more would not fit";

  EXPECT_TRUE(loop.RunUntil([&] { return !overlay.LabelVisible(); }, 10s)) << "the display tick hides it";
  EXPECT_EQ(flasher.MessageList->front().size(), huge.size()) << "the rotation list keeps it whole";
}

TEST_F(OverlayShell, TenThousandFlashesLeaveGdiAndUserCountsFlat) {
  flasher.MessageList = PhraseList{{"one", "two phrases", "and a third, longer one"}};
  flasher.Show();
  auto flash = [&](int times) {
    for (int i = 0; i < times; ++i) {
      flasher.TimerFrequency_Timer();
      flasher.TimerDisplayLength_Timer();
      if (i % 100 == 0) loop.RunFor(0ms);
    }
  };
  flash(100);  // first-use allocations settle
  loop.RunFor(50ms);
  const unsigned gdiBefore = test::GdiObjectsInUse(), userBefore = UserObjects();

  flash(10000);
  for (int i = 0; i < 50; ++i)
    flasher.SetLabelFont({"Arial", 10.0 + i, i % 2 == 0, i % 3 == 0, false, false});
  loop.RunFor(50ms);

  // Flat or lower (the system may free a cached object of its own meanwhile).
  EXPECT_LE(test::GdiObjectsInUse(), gdiBefore);
  EXPECT_LE(UserObjects(), userBefore);
  EXPECT_GT(userBefore, 0u);
}

// The compositor's frame count as Windows reports it, and what the flasher
// makes of it on this system.
using FrameClockWin32 = OverlayShell;

TEST_F(FrameClockWin32, APhraseWaitsForFramesOnlyWhereTheCompositorCountsThem) {
  const CompositorClock clock;
  const auto before = clock.PresentedFrames();
  flasher.MessageList = PhraseList{{"Seen"}};
  FlashOnce(1ms);
  const auto shown = clock.PresentedFrames();
  ASSERT_TRUE(loop.RunUntil([&] { return !overlay.LabelVisible(); }, 5s));
  const auto hidden = clock.PresentedFrames();
  flasher.bStopped = true;

  RecordProperty("compositor", before ? "counts frames" : "reports none");
  if (!before) {
    // No composition: nothing is counted, and nothing waits for it.
    EXPECT_FALSE(shown || hidden);
    EXPECT_FALSE(flasher.WaitingForFrame());
    return;
  }
  ASSERT_TRUE(shown && hidden);
  EXPECT_GE(*shown, *before);
  EXPECT_TRUE(PhraseSeen(shown, hidden)) << "hidden after frame " << *hidden << ", shown at " << *shown;
}

// A full-screen window of the program's own never quiets it; the system's
// own notification state is reported as it is.
TEST(UserAttentionWin32, TheProgramsOwnFullScreenWindowIsToldApartAndKeepsItFlashing) {
  const ShellAttention attention;
  const auto state = attention.UserNotificationState();
  RecordProperty("notification state", state ? std::to_string(static_cast<int>(*state)) : "not reported");

  const HWND own =
      ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, ::GetSystemMetrics(SM_CXSCREEN),
                        ::GetSystemMetrics(SM_CYSCREEN), nullptr, nullptr, nullptr, nullptr);
  ASSERT_NE(own, nullptr);
  ::SetForegroundWindow(own);
  test::Pump();
  ASSERT_EQ(::GetForegroundWindow(), own);
  const ForegroundWindow front = attention.Foreground();
  EXPECT_EQ(front.kind, ForegroundWindow::Kind::Own);
  EXPECT_EQ(front.monitor.right - front.monitor.left, ::GetSystemMetrics(SM_CXSCREEN));
  EXPECT_EQ(front.monitor.bottom - front.monitor.top, ::GetSystemMetrics(SM_CYSCREEN));
  EXPECT_EQ(front.client.left, front.monitor.left);
  EXPECT_EQ(front.client.bottom, front.monitor.bottom);
  EXPECT_FALSE(StaysQuiet(std::nullopt, front));
  ::DestroyWindow(own);
}

// The timers and the message loop. Nothing here asserts how long anything
// took; the benchmark measures that.

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
