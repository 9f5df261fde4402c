#include "display/message_flasher.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <deque>
#include <map>
#include <new>
#include <string>
#include <tuple>
#include <vector>

#include "../../support/fake_clock.h"
#include "display/lcg_random.h"
#include "platform/twips.h"

namespace qm {
namespace {

using namespace std::chrono_literals;
using Phrases = std::vector<std::string>;

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
  void SetLabelFont(const FontSpec& f) override { font = f; }
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
  FontSpec font;
  OleColor color = 0;

 private:
  void Log(std::string entry) { log.push_back(std::move(entry)); }
  std::string Armed(std::string what) const {
    return displayTimer_ && displayTimer_->Enabled() ? what + " (armed)" : what;
  }
  const Timer* displayTimer_;
};

// Hands out the values it was given, then 0.5 for ever.
class ScriptedRandom final : public RandomSource {
 public:
  void Randomize(unsigned start) override { starts.push_back(start); }
  float Next() override {
    if (values.empty()) return 0.5f;
    const float v = values.front();
    values.pop_front();
    return v;
  }
  std::deque<float> values;
  std::vector<unsigned> starts;
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
  ScriptedRandom random;
  Host host;
  frmMessage flasher{view, *frequency, *display, random, host};
};

TEST_F(FlasherTest, LoadShowsTheCreationListsFirstPhraseAndWaitsForBegin) {
  EXPECT_EQ(view.caption, "I want to buy this program");
  EXPECT_EQ(flasher.MessageList, (Phrases{"I want to buy this program", "I love this program"}));
  EXPECT_EQ(view.transparentKey, 0x00FFFFFFu);
  EXPECT_EQ(random.starts, (std::vector<unsigned>{4321}));
  EXPECT_EQ(view.font, FontSpec{});
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

  // A view of 12 twips a pixel across and 20 down (120 and 72 dots per
  // inch) makes that label 125 x 15 pixels; the left edge 337.5 rounds to
  // 338.
  flasher.Form_Load({800, 600}, 0);
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

// Many monitors report a physical size that does not match their logical
// dots per inch. The phrase is placed in the view's measure whatever the
// screen service worked out from the physical size: at the far ends of the
// draws the label, in pixels as the view converts the place, touches the
// screen's edges and stays on the screen.
TEST_F(FlasherTest, PhraseLandsOnTheScreenWhenThePhysicalSizeDisagreesWithTheDpi) {
  for (const int dpi : {120, 96, 144}) {
    for (const float physical : {20.0f, 8.0f, 14.95f}) {
      SCOPED_TRACE(testing::Message() << dpi << " dpi, physically " << physical << " twips a pixel");
      flasher.Form_Load({1024, 768, physical, physical}, 0);
      view.twipsPerPixelX = view.twipsPerPixelY = TwipsPerPixelAt(dpi);
      const int labelWidth = 200, labelHeight = 30;  // pixels
      view.labelSize = TwipsSize{PixelsToTwips(labelWidth, dpi), PixelsToTwips(labelHeight, dpi)};

      random.values = {0.9999999f, 0.9999999f};  // the bottom right end
      auto [left, top] = PlaceOnce();
      EXPECT_EQ(TwipsToPixels(left, dpi) + labelWidth, 1024);
      EXPECT_EQ(TwipsToPixels(top, dpi) + labelHeight, 768);

      random.values = {0.0f, 0.0f};  // the top left end
      std::tie(left, top) = PlaceOnce();
      EXPECT_EQ(TwipsToPixels(left, dpi), 0);
      EXPECT_EQ(TwipsToPixels(top, dpi), 0);
    }
  }
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

  EXPECT_EQ(PhraseForDisplay("abc", 2), "ab");
  EXPECT_EQ(PhraseForDisplay("abc", 3), "abc");
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

TEST(LcgRandomTest, RndNumEndsComeWithHalfTheWeightAndRestartsRepeat) {
  LcgRandom random(12345);
  test::FakeClock clock;
  auto t1 = clock.MakeTimer(), t2 = clock.MakeTimer();
  RecordingView view;
  Host host;
  frmMessage flasher{view, *t1, *t2, random, host};

  std::map<int, int> counts;
  constexpr int kDraws = 110000;
  for (int i = 0; i < kDraws; ++i) ++counts[flasher.RndNum(10, 0)];
  ASSERT_EQ(counts.size(), 11u);
  EXPECT_EQ(counts.begin()->first, 0);
  EXPECT_EQ(counts.rbegin()->first, 10);
  for (int v = 1; v <= 9; ++v) EXPECT_NEAR(counts[v], kDraws / 10, kDraws / 100) << v;
  EXPECT_NEAR(counts[0], kDraws / 20, kDraws / 100);
  EXPECT_NEAR(counts[10], kDraws / 20, kDraws / 100);

  LcgRandom a(86399), b(0);
  b.Randomize(86399);
  for (int i = 0; i < 100; ++i) ASSERT_EQ(a.Next(), b.Next());
}

}  // namespace
}  // namespace qm
