// The compositor's frame count and the user's attention as Windows reports
// them, and what the flasher makes of them on this system.
#include <gtest/gtest.h>

#include <string>

#include "../../support/flasher_doubles.h"
#include "../../support/test_helpers_win32.h"
#include "display/flash_guard.h"
#include "display/message_window_win32.h"

namespace qm::win32 {
namespace {

using namespace std::chrono_literals;

TEST(FrameClockWin32, APhraseWaitsForFramesOnlyWhereTheCompositorCountsThem) {
  const CompositorClock clock;
  const auto before = clock.PresentedFrames();
  MessageLoop loop;
  const test::ClosedHost host;
  MessageWindow window{host, loop};
  frmMessage& flasher = window.Form();
  flasher.MessageList = PhraseList{{"Seen"}};
  flasher.TimerFrequency().SetInterval(10ms);
  flasher.TimerDisplayLength().SetInterval(1ms);
  flasher.Show();
  flasher.Begin();
  ASSERT_TRUE(loop.RunUntil([&] { return window.Overlay().LabelVisible(); }, 5s));
  const auto shown = clock.PresentedFrames();
  ASSERT_TRUE(loop.RunUntil([&] { return !window.Overlay().LabelVisible(); }, 5s));
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

}  // namespace
}  // namespace qm::win32
