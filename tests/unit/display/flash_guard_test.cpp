// A phrase leaves the screen only once a frame holding it has been
// presented, and none appears while the user is busy with the whole screen.
#include "display/flash_guard.h"

#include <gtest/gtest.h>

#include <optional>

#include "../../support/fake_clock.h"
#include "../../support/flasher_doubles.h"
#include "display/message_flasher.h"

namespace qm {
namespace {

using namespace std::chrono_literals;
using Kind = ForegroundWindow::Kind;

// A compositor that presents a frame every 16 ms of the fake clock, one
// that has stopped presenting, or none at all.
class FakeCompositor final : public FrameClock {
 public:
  explicit FakeCompositor(const test::FakeClock& clock) : clock_(clock) {}
  std::optional<std::uint64_t> PresentedFrames() const override {
    if (!present) return std::nullopt;
    if (stalledAt) return *stalledAt;
    return static_cast<std::uint64_t>(clock_.Now() / 16ms) + 1000;
  }
  bool present = true;
  std::optional<std::uint64_t> stalledAt;

 private:
  const test::FakeClock& clock_;
};

class GuardedFlasher : public ::testing::Test {
 protected:
  GuardedFlasher() {
    frequency->SetInterval(1000ms);
    display->SetInterval(1ms);
    frameWait->SetInterval(1ms);
    flasher.Form_Load({1024, 768}, 0);
    flasher.WaitForFrames(&compositor, frameWait.get());
    flasher.HeedUser(&attention);
    flasher.MessageList = PhraseList{{"One", "Two"}};
    flasher.Begin();
  }

  // Runs to the next phrase and returns how long it stayed up (in steps of
  // 1 ms, at most a second).
  std::chrono::milliseconds NextPhraseTime() {
    clock.Advance(frequency->Due() - clock.Now());
    EXPECT_TRUE(view.labelVisible);
    const auto shown = clock.Now();
    for (int i = 0; i < 1000 && view.labelVisible; ++i) clock.Advance(1ms);
    return clock.Now() - shown;
  }

  test::FakeClock clock;
  std::unique_ptr<test::FakeClock::FakeTimer> frequency = clock.MakeTimer();
  std::unique_ptr<test::FakeClock::FakeTimer> display = clock.MakeTimer();
  std::unique_ptr<test::FakeClock::FakeTimer> frameWait = clock.MakeTimer();
  test::StateOverlay view;
  test::FixedRandom random;
  test::ClosedHost host;
  FakeCompositor compositor{clock};
  test::SetAttention attention;
  frmMessage flasher{view, *frequency, *display, random, host};
};

TEST_F(GuardedFlasher, AShortPhraseStaysUntilAFrameHoldingItIsPresentedThenTheCycleGoesOn) {
  // Shown at 1000 ms, in the compositor's frame 62: frames 63 and 64 may
  // have begun without it, frame 65 (from 1040 ms) holds it.
  const auto up = NextPhraseTime();
  EXPECT_GE(up, 40ms);
  EXPECT_LE(up, 42ms);
  EXPECT_FALSE(flasher.WaitingForFrame());
  EXPECT_TRUE(frequency->Enabled()) << "the next phrase is on its way";
  EXPECT_FALSE(display->Enabled());
  EXPECT_EQ(view.caption, "Two");
  // A phrase shown later in a frame is held just as long in frames.
  NextPhraseTime();
  EXPECT_EQ(view.caption, "One");

  // A duration that outlasts the frames goes at the time asked.
  display->SetInterval(50ms);
  EXPECT_EQ(NextPhraseTime(), 50ms);
}

TEST_F(GuardedFlasher, WithoutACompositorAPhraseGoesAtTheTimeAsked) {
  compositor.present = false;
  EXPECT_EQ(NextPhraseTime(), 1ms);
  flasher.WaitForFrames(nullptr, nullptr);
  compositor.present = true;
  EXPECT_EQ(NextPhraseTime(), 1ms);
}

TEST_F(GuardedFlasher, ACompositorThatStopsPresentingHoldsAPhraseOnlySoLong) {
  compositor.stalledAt = 7;
  const auto up = NextPhraseTime();
  EXPECT_GE(up, std::chrono::milliseconds(frmMessage::kMaxFrameChecks));
  EXPECT_LT(up, 1000ms) << "it went in the end";
  EXPECT_TRUE(frequency->Enabled());
}

TEST_F(GuardedFlasher, AStoppedFlasherNeitherHidesNorAsksWhileAPhraseWaits) {
  clock.Advance(1001ms);
  ASSERT_TRUE(flasher.WaitingForFrame());
  flasher.bStopped = true;
  const int asked = frameWait->Ticks();
  clock.Advance(500ms);
  EXPECT_TRUE(view.labelVisible) << "suspended as it was";
  EXPECT_LE(frameWait->Ticks(), asked + 1) << "no asking while stopped";
  flasher.bStopped = false;
  clock.Advance(2ms);
  EXPECT_FALSE(view.labelVisible) << "seen long since: hidden at the next display tick";
  EXPECT_TRUE(frequency->Enabled());
}

TEST_F(GuardedFlasher, WhileQuietNoPhraseAppearsAndTheListGoesOnAfterwards) {
  attention.FullScreenProgram();
  clock.Advance(5s);
  EXPECT_FALSE(view.labelVisible);
  EXPECT_EQ(view.caption, "I want to buy this program") << "no phrase was even put into the label";
  EXPECT_TRUE(frequency->Enabled()) << "waiting, not halted";

  attention.foreground = {};
  NextPhraseTime();
  EXPECT_EQ(view.caption, "Two") << "the list resumes where it was";
}

TEST(StaysQuiet, WhenTheShellSaysTheUserIsBusyOrTheWindowInFrontFillsItsMonitor) {
  const ForegroundWindow none;
  for (auto state : {NotificationState::Busy, NotificationState::RunningD3dFullScreen,
                     NotificationState::PresentationMode, NotificationState::QuietTime})
    EXPECT_TRUE(StaysQuiet(state, none)) << static_cast<int>(state);
  for (auto state :
       {NotificationState::AcceptsNotifications, NotificationState::NotPresent, NotificationState::App})
    EXPECT_FALSE(StaysQuiet(state, none)) << static_cast<int>(state);
  EXPECT_FALSE(StaysQuiet(std::nullopt, none));

  const ScreenRect second{1920, -200, 3200, 824};
  // A program filling its monitor, on the second one too, or larger than it.
  EXPECT_TRUE(StaysQuiet(std::nullopt, {Kind::Other, second, second}));
  EXPECT_TRUE(StaysQuiet(NotificationState::AcceptsNotifications,
                         {Kind::Other, {-8, -8, 1928, 1088}, {0, 0, 1920, 1080}}));
  // A maximised window leaves the taskbar; a window filling the other monitor.
  EXPECT_FALSE(StaysQuiet(std::nullopt, {Kind::Other, {0, 23, 1920, 1040}, {0, 0, 1920, 1080}}));
  EXPECT_FALSE(StaysQuiet(std::nullopt, {Kind::Other, {0, 0, 1920, 1080}, second}));
  // The desktop, the taskbar and the program's own windows never count;
  // nor a monitor the system could not name.
  for (Kind kind : {Kind::Desktop, Kind::Shell, Kind::Own, Kind::None})
    EXPECT_FALSE(StaysQuiet(std::nullopt, {kind, second, second})) << static_cast<int>(kind);
  EXPECT_FALSE(StaysQuiet(std::nullopt, {Kind::Other, {0, 0, 1920, 1080}, {}}));
}

}  // namespace
}  // namespace qm
