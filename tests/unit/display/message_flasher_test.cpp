#include "display/message_flasher.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <map>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "../../support/fake_clock.h"
#include "../../support/flasher_doubles.h"
#include "display/flash_guard.h"
#include "display/lcg_random.h"

namespace qm {
namespace {

using namespace std::chrono_literals;
using Phrases = std::vector<std::string>;
using Kind = ForegroundWindow::Kind;

// The overlay as the flasher drives it: the calls that make a phrase are
// logged in order; the label measures 10 twips a character by 300; twips
// per pixel are those of 96 dots per inch until a test says otherwise.
class RecordingView final : public OverlayView {
 public:
  explicit RecordingView(const Timer* displayTimer = nullptr) : displayTimer_(displayTimer) {}

  void SetCaption(std::string_view text) override { Log("caption " + (caption = text)); }
  TwipsSize LabelSize() const override {
    return labelSize.value_or(TwipsSize{static_cast<int>(caption.size()) * 10, 300});
  }
  float TwipsPerPixelX() const override { return twipsPerPixelX; }
  float TwipsPerPixelY() const override { return twipsPerPixelY; }
  void SetLabelVisible(bool v) override { Log((labelVisible = v) ? "label shown" : "label hidden"); }
  void SetLabelFont(const FontSpec&) override {}
  void SetLabelColor(OleColor c) override { color = c; }
  void SetWindowHeight(int twips) override { height = twips, Log("height"); }
  void SetWindowWidth(int twips) override { width = twips, Log("width"); }
  void SetWindowPosition(int l, int t) override { left = l, top = t, Log("place"); }
  bool MakeTransparent(OleColor key) override {
    transparentKey = key;
    return false;  // the flasher must not care
  }
  void MakeTopMost() override { Log(Armed("raise")); }
  void Refresh() override { Log(Armed("repaint")); }
  void Show() override {}
  void Hide() override {}
  bool Visible() const override { return false; }

  std::vector<std::string> log;
  std::string caption;
  std::optional<TwipsSize> labelSize;
  float twipsPerPixelX = 15, twipsPerPixelY = 15;
  bool labelVisible = true;
  int width = 0, height = 0, left = 0, top = 0;
  std::optional<OleColor> transparentKey;
  OleColor color = 0;

 private:
  void Log(std::string entry) { log.push_back(std::move(entry)); }
  std::string Armed(std::string what) const {
    return displayTimer_ && displayTimer_->Enabled() ? what + " (armed)" : what;
  }
  const Timer* displayTimer_;
};

class Host final : public FlasherHost {
 public:
  bool SettingsWindowVisible() const override { return settingsVisible; }
  bool TrayMenuOpen() const override { return menuOpen; }
  bool settingsVisible = false;
  bool menuOpen = false;
};

class FlasherTest : public ::testing::Test {
 protected:
  FlasherTest() {
    frequency->SetInterval(2000ms);
    display->SetInterval(50ms);
    flasher.Form_Load({1024, 768}, 4321);
  }

  // Whole cycles from Waiting: what the label showed at each interval tick.
  Phrases Cycles(int n) {
    Phrases seen;
    for (int i = 0; i < n; ++i) {
      clock.Advance(frequency->Interval());
      seen.push_back(view.labelVisible ? view.caption : "<nothing>");
      clock.Advance(display->Interval());
    }
    return seen;
  }
  // Runs one interval tick and returns where the window went.
  std::pair<int, int> PlaceOnce() {
    flasher.Begin();
    clock.Advance(frequency->Interval());
    return {view.left, view.top};
  }

  test::FakeClock clock;
  std::unique_ptr<test::FakeClock::FakeTimer> frequency = clock.MakeTimer();
  std::unique_ptr<test::FakeClock::FakeTimer> display = clock.MakeTimer();
  RecordingView view{display.get()};
  test::FixedRandom random;
  Host host;
  frmMessage flasher{view, *frequency, *display, random, host};
};

TEST_F(FlasherTest, LoadShowsTheCreationListsFirstPhraseAndWaitsForBegin) {
  EXPECT_EQ(view.caption, "I want to buy this program");
  EXPECT_EQ(flasher.MessageList, (Phrases{"I want to buy this program", "I love this program"}));
  EXPECT_EQ(view.transparentKey, 0x00FFFFFFu);
  EXPECT_EQ(random.starts, (std::vector<unsigned>{4321}));
  EXPECT_EQ(view.color, 0x00C0C0C0u);

  clock.Advance(60s);
  EXPECT_EQ(frequency->Ticks() + display->Ticks(), 0) << "both timers wait for Begin";

  flasher.Begin();
  EXPECT_FALSE(view.labelVisible);
  EXPECT_TRUE(frequency->Enabled());
  EXPECT_FALSE(display->Enabled());
  clock.Advance(1999ms);
  EXPECT_FALSE(view.labelVisible);
  clock.Advance(1ms);
  EXPECT_EQ(view.caption, "I love this program");  // element 1: the index starts at 0
}

// The timers outlive the flasher in the settings window's teardown: a tick
// after the flasher is gone reaches nothing. (Its storage is kept, so a
// tick left behind would show in the view's log rather than anywhere.)
TEST_F(FlasherTest, ADestroyedFlasherLeavesItsTimersSilent) {
  alignas(frmMessage) unsigned char storage[sizeof(frmMessage)];
  auto* second = new (storage) frmMessage(view, *frequency, *display, random, host);
  second->Form_Load({1024, 768}, 1);
  second->Begin();
  clock.Advance(frequency->Interval());  // a phrase is up: both timers run
  ASSERT_TRUE(display->Enabled());
  second->~frmMessage();
  view.log.clear();
  clock.Advance(10s);
  EXPECT_TRUE(view.log.empty());
}

TEST_F(FlasherTest, ScreenSizeIsKeptRoundedHalfToEvenAndAbsurdMetricsStillPlace) {
  flasher.Form_Load({1022.5f, 767.5f}, 0);
  EXPECT_EQ(flasher.ScreenWidth(), 1022);
  EXPECT_EQ(flasher.ScreenHeight(), 768);

  flasher.Form_Load({std::nanf(""), 1e30f}, 0);
  EXPECT_EQ(flasher.ScreenWidth(), 0);
  EXPECT_EQ(flasher.ScreenHeight(), INT_MAX);
  view.twipsPerPixelX = 0;
  view.twipsPerPixelY = -1;
  view.labelSize = TwipsSize{150, 150};
  random.values = {0.0f, 0.0f};
  EXPECT_EQ(PlaceOnce(), std::make_pair(0, 0));
}

TEST_F(FlasherTest, UnsetOrEmptyListFallsBackAndAlternatesFromIndexOne) {
  for (PhraseList none : {PhraseList{}, PhraseList{Phrases{}}}) {
    flasher.MessageList = none;
    flasher.Begin();
    EXPECT_EQ(Cycles(3), (Phrases{"I love the subliminal program.", "I want to by the subliminal program",
                                  "I love the subliminal program."}));
    EXPECT_EQ(flasher.MessageList, frmMessage::FallbackList());
    flasher.MessageList = PhraseList{{"a", "b"}};
    Cycles(1);  // index back to 0
  }
}

TEST_F(FlasherTest, ReplacingTheListKeepsTheIndex) {
  flasher.MessageList = Phrases{"a", "b", "c", "d"};
  flasher.Begin();
  EXPECT_EQ(Cycles(3), (Phrases{"b", "c", "d"}));  // index now 3

  flasher.MessageList = Phrases{"x", "y", "z", "w", "v"};
  EXPECT_EQ(Cycles(1), Phrases{"v"});  // the element after the one shown last

  flasher.MessageList = Phrases{"p", "q"};  // index 4 is past its end
  EXPECT_EQ(Cycles(2), (Phrases{"p", "q"}));

  flasher.MessageList = Phrases{"only"};
  EXPECT_EQ(Cycles(3), (Phrases{"only", "only", "only"}));
}

TEST_F(FlasherTest, StoppedFreezesTimersAndLabelInEveryState) {
  flasher.Begin();
  clock.Advance(frequency->Interval());  // Showing
  ASSERT_TRUE(display->Enabled());

  flasher.bStopped = true;
  const auto logSize = view.log.size();
  clock.Advance(10s);
  flasher.Begin();
  EXPECT_TRUE(display->Enabled());
  EXPECT_FALSE(frequency->Enabled());
  EXPECT_TRUE(view.labelVisible);
  EXPECT_EQ(view.log.size(), logSize);

  flasher.bStopped = false;  // back to Showing: the next display tick hides
  clock.Advance(display->Interval());
  EXPECT_FALSE(view.labelVisible);

  flasher.bStopped = true;  // Waiting, stopped: the interval ticks come and go
  const std::string caption = view.caption;
  clock.Advance(10s);
  EXPECT_TRUE(frequency->Enabled());
  EXPECT_FALSE(display->Enabled());
  EXPECT_FALSE(view.labelVisible);
  EXPECT_EQ(view.caption, caption);
}

TEST_F(FlasherTest, SettingsWindowOrTrayMenuHaltsTheCycleWithThePhraseUp) {
  for (bool settings : {true, false}) {
    host.settingsVisible = settings;
    host.menuOpen = !settings;
    flasher.Begin();
    view.log.clear();
    clock.Advance(frequency->Interval());

    EXPECT_TRUE(view.labelVisible);
    EXPECT_FALSE(frequency->Enabled());
    EXPECT_FALSE(display->Enabled());
    EXPECT_EQ(std::count(view.log.begin(), view.log.end(), "raise"), 0);
    clock.Advance(60s);  // Halted: nothing happens until Begin
    EXPECT_TRUE(view.labelVisible);

    host.settingsVisible = host.menuOpen = false;
    flasher.Begin();
    EXPECT_FALSE(view.labelVisible);
    EXPECT_TRUE(frequency->Enabled());
  }
}

TEST_F(FlasherTest, ATickCallsTheViewInOrderAndArmsBeforeTheRepaint) {
  flasher.MessageList = Phrases{"zero", "one"};
  flasher.Begin();
  view.log.clear();
  clock.Advance(frequency->Interval());
  EXPECT_EQ(view.log,
            (Phrases{"caption one", "height", "width", "place", "label shown", "raise", "repaint (armed)"}));
  view.log.clear();
  clock.Advance(display->Interval());
  EXPECT_EQ(view.log, Phrases{"label hidden"});
}

TEST_F(FlasherTest, WindowFollowsTheLabelAndIsPlacedFromTheLabelAlone) {
  view.labelSize = TwipsSize{1500, 300};  // 100 x 20 pixels
  random.values = {0.5f, 0.25f};          // top first, then left
  EXPECT_EQ(PlaceOnce(), std::make_pair((1024 - 100) / 4 * 15, (768 - 20) / 2 * 15));
  EXPECT_EQ(view.width, 1550);
  EXPECT_EQ(view.height, 450);

  // Placed in the view's own measure, whatever the screen service worked
  // out from the monitor's physical size: a view of 12 twips a pixel
  // across and 20 down (120 and 72 dots per inch) makes that label 125 x 15
  // pixels; the left edge 337.5 rounds to 338.
  flasher.Form_Load({800, 600, 20.0f, 8.0f}, 0);
  view.twipsPerPixelX = 12;
  view.twipsPerPixelY = 20;
  random.values = {0.9999999f, 0.5f};
  EXPECT_EQ(PlaceOnce(), std::make_pair(338 * 12, (600 - 15) * 20));

  // A label larger than the screen goes partly off its edge.
  flasher.Form_Load({1024, 768}, 0);
  view.twipsPerPixelX = view.twipsPerPixelY = 15;
  view.labelSize = TwipsSize{1024 * 15 + 1500, 768 * 15 + 600};  // 100 and 40 pixels too big
  random.values = {0.5f, 0.0f};
  EXPECT_EQ(PlaceOnce(), std::make_pair(0, -20 * 15));
}

// A hand-made category file may hold a line of megabytes. The label gets
// no more characters than the screen is wide in pixels; the rotation list
// keeps the phrase whole, and a phrase that fits reaches the label as it is.
TEST_F(FlasherTest, ALongPhraseReachesTheLabelCutToTheScreensWidth) {
  const std::string huge(10'000'000, 'w');
  flasher.MessageList = Phrases{"short one", huge};
  flasher.Begin();
  EXPECT_EQ(Cycles(2), (Phrases{std::string(1024, 'w'), "short one"}));
  EXPECT_EQ((*flasher.MessageList)[1].size(), huge.size());

  EXPECT_EQ(PhraseForDisplay("abc", 0), "abc") << "an unknown width cuts nothing";
}

TEST_F(FlasherTest, RndNumRoundsHalfToEvenBetweenTheBounds) {
  random.values = {0.0f, 0.9999999f, 0.25f, 0.75f, 0.5f, 0.3f};
  EXPECT_EQ(flasher.RndNum(10, 0), 0);
  EXPECT_EQ(flasher.RndNum(10, 0), 10);
  EXPECT_EQ(flasher.RndNum(2, 0), 0);  // 0.5 rounds to 0
  EXPECT_EQ(flasher.RndNum(2, 0), 2);  // 1.5 rounds to 2
  EXPECT_EQ(flasher.RndNum(-100, 0), -50);
  EXPECT_EQ(flasher.RndNum(20, 10), 13);
}

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

// Every phrase seen and never in the way: a phrase leaves the screen only
// once a frame holding it has been presented (asked again every
// millisecond), and none appears while the user is busy with the whole
// screen. One phrase a second, each asked to stay a millisecond.
class GuardedFlasher : public FlasherTest {
 protected:
  GuardedFlasher() {
    frequency->SetInterval(1000ms);
    display->SetInterval(1ms);
    frameWait->SetInterval(1ms);
    flasher.WaitForFrames(&compositor, frameWait.get());
    flasher.HeedUser(&attention);
    flasher.MessageList = PhraseList{{"One", "Two"}};
    flasher.Begin();
  }
  // The flasher outlives the frame wait timer here.
  ~GuardedFlasher() override { flasher.WaitForFrames(nullptr, nullptr); }

  // Runs to the next phrase and returns how long it stayed up (in steps of
  // 1 ms, at most a second).
  std::chrono::milliseconds NextPhraseTime() {
    clock.Advance(frequency->Due() - clock.Now());
    EXPECT_TRUE(view.labelVisible);
    const auto shown = clock.Now();
    for (int i = 0; i < 1000 && view.labelVisible; ++i) clock.Advance(1ms);
    return clock.Now() - shown;
  }

  std::unique_ptr<test::FakeClock::FakeTimer> frameWait = clock.MakeTimer();
  FakeCompositor compositor{clock};
  test::SetAttention attention;
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

// When the user is busy with the whole screen: what the shell reports, or
// a window in front that fills its monitor.
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

TEST_F(FlasherTest, WithTheLcgRndNumEndsComeWithHalfTheWeightAndRestartsRepeat) {
  LcgRandom lcg(12345);
  frmMessage drawing{view, *frequency, *display, lcg, host};

  std::map<int, int> counts;
  constexpr int kDraws = 110000;
  for (int i = 0; i < kDraws; ++i) ++counts[drawing.RndNum(10, 0)];
  ASSERT_EQ(counts.size(), 11u) << "only 0 to 10, each of them";
  for (int v = 1; v <= 9; ++v) EXPECT_NEAR(counts[v], kDraws / 10, kDraws / 100) << v;
  EXPECT_NEAR(counts[0], kDraws / 20, kDraws / 100);
  EXPECT_NEAR(counts[10], kDraws / 20, kDraws / 100);

  LcgRandom a(86399), b(0);
  b.Randomize(86399);
  for (int i = 0; i < 100; ++i) ASSERT_EQ(a.Next(), b.Next());
}

}  // namespace
}  // namespace qm
