// The screen service's members that act on the screen, as far as they are
// rules: the resolution request and its short cut, what a refused change
// raises, drawing with its history, the pie's radials, the cursor codes and
// the cursor file's name.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <typeindex>
#include <vector>

#include "platform/screen.h"

namespace qm {
namespace {

constexpr const char* kResolutionSource = "quillmerecScreen.ChangeResolution(ChangeDisplaySettings)";

// A screen whose device reported the size and depth.
ScreenModel ScreenAt(int width, int height, int bits) {
  ScreenModel screen("quillmere");
  screen.ApplyDeviceCaps({bits, width, height, 270, 200});
  return screen;
}

// A display driver that remembers what it was asked and answers result.
struct FakeDriver {
  std::int32_t result = 0;
  std::vector<DisplayModeRequest> asked;
  int rereads = 0;
  ChangeDisplay Change() {
    return [this](const DisplayModeRequest& request) {
      asked.push_back(request);
      return result;
    };
  }
  std::function<void()> Reread() {
    return [this] { ++rereads; };
  }
};

TEST(ScreenResolution, AScreenOfTheAskedSizeIsLeftAlone) {
  ScreenModel screen = ScreenAt(800, 600, 32);
  FakeDriver driver;
  bool restart = true;
  EXPECT_TRUE(screen.ChangeResolution(2, 0, restart, false, driver.Change(), driver.Reread()));
  EXPECT_TRUE(driver.asked.empty()) << "800 x 600 asked of a screen at 800 x 600";
  EXPECT_FALSE(restart);
  EXPECT_TRUE(screen.ChangeResolution(2, 32, restart, true, driver.Change(), driver.Reread()));
  EXPECT_TRUE(driver.asked.empty()) << "and at its own depth";
  EXPECT_EQ(driver.rereads, 0);

  // Another depth, or another size, goes to the driver.
  EXPECT_TRUE(screen.ChangeResolution(2, 16, restart, true, driver.Change(), driver.Reread()));
  EXPECT_TRUE(screen.ChangeResolution(3, 0, restart, true, driver.Change(), driver.Reread()));
  ASSERT_EQ(driver.asked.size(), 2u);
  EXPECT_EQ(driver.asked[0], (DisplayModeRequest{0x1C0000, 800, 600, 16, 2}));
  EXPECT_EQ(driver.asked[1], (DisplayModeRequest{0x180000, 1024, 768, 0, 2}));
  EXPECT_EQ(driver.rereads, 2);
}

TEST(ScreenResolution, DriverResultsGiveTheResultRestartAndErrors) {
  ScreenModel screen = ScreenAt(1024, 768, 32);
  FakeDriver driver;
  bool restart = true;
  EXPECT_TRUE(screen.ChangeResolution(1, 0, restart, false, driver.Change(), driver.Reread()));
  EXPECT_FALSE(restart);
  EXPECT_EQ(driver.rereads, 1) << "a success reads the device again";

  driver.result = 1;  // DISP_CHANGE_RESTART
  EXPECT_TRUE(screen.ChangeResolution(1, 0, restart, false, driver.Change(), driver.Reread()));
  EXPECT_TRUE(restart);
  EXPECT_EQ(driver.rereads, 2);

  struct Case {
    std::int32_t result, number;
    const char* text;
  };
  const Case cases[] = {
      {-2, -2, "The graphics mode is not supported."},
      {-5, -5,
       "An invalid parameter was passed in. This can include an invalid flag or combination of flags."},
      {-6, -1, "An unknown error occured while trying to change the screen resolution."},
      {2, -1, "An unknown error occured while trying to change the screen resolution."},
  };
  for (const Case& c : cases) {
    driver.result = c.result;
    restart = true;
    try {
      screen.ChangeResolution(5, 0, restart, false, driver.Change(), driver.Reread());
      ADD_FAILURE() << "result " << c.result << " raised nothing";
    } catch (const RuntimeError& e) {
      EXPECT_EQ(e.Number(), c.number) << c.result;
      EXPECT_EQ(e.Source(), kResolutionSource);
      EXPECT_EQ(e.Description(), c.text);
    }
    EXPECT_FALSE(restart);
  }
  EXPECT_EQ(driver.rereads, 2) << "a refused change leaves the cached metrics";
  EXPECT_EQ(screen.Width(), 1024.0f);
}

// A drawing member's paint that fails as a platform call does.
bool FailingPaint(const ScreenModel& screen) {
  screen.Raise(ScreenFailure::DrawLine, 6, "The handle is invalid.");
}

TEST(ScreenDrawing, EveryCallIsRecordedWhetherItDrewOrNot) {
  ScreenModel screen("quillmere");
  EXPECT_TRUE(screen.Draw(LineArgs{1, 1, 5, 5}, [](const LineArgs&) { return true; }));
  EXPECT_EQ(screen.History().Count(), 0u) << "nothing is recorded until EnableRefresh";
  screen.EnableRefresh(true);
  EXPECT_TRUE(screen.Draw(LineArgs{1, 1, 5, 5}, [](const LineArgs&) { return true; }));
  EXPECT_FALSE(screen.LastError());
  screen.ForeColor_Scr(0x000000FF);
  EXPECT_FALSE(screen.Draw(LineArgs{2, 2, 6, 6}, [&](const LineArgs&) { return FailingPaint(screen); }));
  ASSERT_TRUE(screen.LastError());
  EXPECT_EQ(screen.LastError()->Source(), "quillmere.cScreen.DrawLine(DRAW_Line)");
  EXPECT_EQ(screen.LastError()->Number(), 6);
  EXPECT_FALSE(screen.Draw(EllipseArgs{0, 0, 3, 3}, [](const EllipseArgs&) { return false; }));

  const auto& lines = screen.History().List<LineArgs>();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[1].args, (LineArgs{2, 2, 6, 6}));
  EXPECT_EQ(lines[1].colors.foreColorScr, 0x000000FFu);
  EXPECT_EQ(screen.History().List<EllipseArgs>().size(), 1u);

  EXPECT_TRUE(screen.Draw(LineArgs{3, 3, 7, 7}, [](const LineArgs&) { return true; }));
  EXPECT_FALSE(screen.LastError()) << "each call forgets the error of the one before";

  screen.EnableRefresh(false);
  screen.Draw(LineArgs{4, 4, 8, 8}, [](const LineArgs&) { return true; });
  EXPECT_EQ(screen.History().Count(), 4u) << "turning the refresh off keeps the history";
  screen.ClearHistory();
  EXPECT_EQ(screen.History().Count(), 0u);
  EXPECT_TRUE(screen.History().List<EllipseArgs>().empty());
}

TEST(ScreenDrawing, RefusedArgumentsAreNeitherDrawnNorRecorded) {
  ScreenModel screen("quillmere");
  screen.EnableRefresh(true);
  int painted = 0;
  const auto paint = [&](const auto&) { return ++painted > 0; };

  struct Expect {
    const char* source;
    std::int32_t number;
    const char* text;
  };
  const auto check = [&](bool result, const Expect& e) {
    EXPECT_FALSE(result);
    ASSERT_TRUE(screen.LastError()) << e.source;
    EXPECT_EQ(screen.LastError()->Source(), e.source);
    EXPECT_EQ(screen.LastError()->Number(), e.number);
    EXPECT_EQ(screen.LastError()->Description(), e.text);
  };
  check(screen.Draw(ArcArgs{50, 50, 0, 60, 50, 0, 90}, paint),
        {"quillmere.cScreen.DrawArc", -1, "Invalid Radius Specified"});
  check(screen.Draw(RectangleArgs{0, 0, 9, 9, false, false}, paint),
        {"quillmere.cScreen.DrawRectangle", -1, "Invalid Parameters Specified"});
  check(screen.Draw(PolygonArgs{{1, 2}, {3, 4}, 0}, paint),
        {"quillmere.cScreen.DrawPolygon", -1, "Invalid POINT Count Specified"});
  check(screen.Draw(PolylineArgs{0, 0, {}, {}, 0}, paint),
        {"quillmere.cScreen.DrawPolyline", -1, "Invalid POINT Count Specified"});
  check(screen.Draw(PolygonArgs{{1, 2, 3}, {3, 4}, 3}, paint),
        {"quillmere.cScreen.DrawPolygon", kErrSubscriptOutOfRange, "Subscript out of range"});
  check(screen.Draw(PictureArgs{}, paint),
        {"quillmere.cScreen.DrawPicture", -1, "No picture specified to draw."});

  EXPECT_FALSE(screen.Draw(TextArgs{"", 5, 5, false}, paint));
  EXPECT_FALSE(screen.LastError()) << "an empty text is refused silently";
  EXPECT_EQ(painted, 0);
  EXPECT_EQ(screen.History().Count(), 0u);

  // The smallest arguments that are not refused.
  EXPECT_TRUE(screen.Draw(ArcArgs{50, 50, 1, 51, 50, 0, 90}, paint));
  EXPECT_TRUE(screen.Draw(RectangleArgs{0, 0, 9, 9, false, true}, paint));
  EXPECT_TRUE(screen.Draw(PolylineArgs{0, 0, {4}, {4}, 1}, paint));
  EXPECT_TRUE(screen.Draw(TextArgs{"x", 5, 5, false}, paint));
  EXPECT_EQ(painted, 4);
  EXPECT_EQ(screen.History().Count(), 4u);
}

// Refresh's replay as the Win32 half runs it: every record through its
// drawing member, which stops at the first failure.
TEST(ScreenDrawing, ReplayRedrawsInListOrderAndStopsAtTheFirstFailure) {
  ScreenModel screen("quillmere");
  screen.EnableRefresh(true);
  const auto draws = [](const auto&) { return true; };
  screen.ForeColor_Txt(0x00000011);
  screen.Draw(TextArgs{"last", 1, 1, false}, draws);
  screen.ForeColor_Txt(0x00000022);
  screen.Draw(LineArgs{1, 1, 2, 2}, draws);
  screen.Draw(LineArgs{3, 3, 4, 4}, draws);  // this one fails on replay
  screen.Draw(LineArgs{5, 5, 6, 6}, draws);
  screen.Draw(ArcArgs{9, 9, 2, 11, 9, 0, 45}, draws);
  screen.ForeColor_Txt(0x00000033);
  ASSERT_EQ(screen.History().Count(), 5u);

  std::vector<std::string> drawn;
  std::vector<OleColor> colours;
  const bool replayed = screen.ReplayHistory([&](const auto& record) {
    return screen.Draw(record.args, [&](const auto& args) {
      using Args = std::decay_t<decltype(args)>;
      drawn.push_back(std::type_index(typeid(Args)).name());
      colours.push_back(screen.ForeColor_Txt());
      if constexpr (std::is_same_v<Args, LineArgs>) {
        if (args.x1 == 3) return FailingPaint(screen);
      }
      return true;
    });
  });
  EXPECT_FALSE(replayed);
  const std::vector<std::string> expected = {typeid(ArcArgs).name(), typeid(LineArgs).name(),
                                             typeid(LineArgs).name()};
  EXPECT_EQ(drawn, expected) << "arcs first, then lines; the third line and the text are not reached";
  EXPECT_EQ(colours, (std::vector<OleColor>{0x22, 0x22, 0x22}));
  EXPECT_EQ(screen.ForeColor_Txt(), 0x33u) << "the colours of before the replay come back";
  EXPECT_EQ(screen.History().Count(), 5u) << "a replay records nothing";
  ASSERT_TRUE(screen.LastError());
  EXPECT_EQ(screen.LastError()->Source(), "quillmere.cScreen.DrawLine(DRAW_Line)");
}

TEST(ScreenDrawing, PieRadialsTurnCounterClockwiseFromThreeOClock) {
  // A square 100 pixels wide: its middle is (50, 50).
  EXPECT_EQ(RadialsOfAngle(0, 0, 100, 100, 90.0f), (PieRadials{100, 50, 50, 0}));
  EXPECT_EQ(RadialsOfAngle(0, 0, 100, 100, 180.0f), (PieRadials{100, 50, 0, 50}));
  EXPECT_EQ(RadialsOfAngle(0, 0, 100, 100, 270.0f), (PieRadials{100, 50, 50, 100}));
  EXPECT_EQ(RadialsOfAngle(0, 0, 100, 100, 360.0f), (PieRadials{100, 50, 100, 50}));
  // 45 degrees: cos = sin = 0.7071, 35.36 pixels from the middle each way.
  EXPECT_EQ(RadialsOfAngle(0, 0, 100, 100, 45.0f), (PieRadials{100, 50, 85, 15}));
  // A wide rectangle (200 x 100 at 10, 20): 30 degrees meets its ellipse at
  // (110 + 100 cos 30, 70 - 50 sin 30) = (196.6, 45).
  EXPECT_EQ(RadialsOfAngle(10, 20, 210, 120, 30.0f), (PieRadials{210, 70, 197, 45}));

  EXPECT_EQ(RadialsOfAngle(0, 0, 100, 100, 500.0f), RadialsOfAngle(0, 0, 100, 100, 360.0f)) << "clamped";
  EXPECT_FALSE(RadialsOfAngle(0, 0, 100, 100, 0.0f)) << "an empty slice";
  EXPECT_FALSE(RadialsOfAngle(0, 0, 100, 100, -30.0f));
}

TEST(ScreenCursors, ClassCursorCodeIsTheFirstStandardCursorItIs) {
  constexpr std::int32_t kAppStarting = 32650, kArrow = 32512, kWait = 32514, kCross = 32515;
  EXPECT_EQ(MousePointerCode([](std::int32_t) { return true; }), kAppStarting) << "tried first";
  EXPECT_EQ(MousePointerCode([](std::int32_t) { return false; }), 1) << "none of them: the cursor file";
  // Where the system gives the wait and the arrow cursors one handle, the
  // arrow comes before the wait.
  EXPECT_EQ(MousePointerCode([&](std::int32_t id) { return id == kWait || id == kArrow; }), kArrow);
  EXPECT_EQ(MousePointerCode([&](std::int32_t id) { return id == kWait || id == kCross; }), kCross);
}

TEST(ScreenCursors, MouseIconTakesOnlyCursorFilesThatOpen) {
  struct Box {
    std::string text, title;
    PromptIcon icon;
  };
  std::vector<Box> boxes;
  ScreenModel screen("quillmere", [&](std::string_view text, std::string_view title, PromptIcon icon) {
    boxes.push_back({std::string(text), std::string(title), icon});
  });
  EXPECT_EQ(screen.MouseIcon(), "");

  screen.MouseIcon("C:\\Cursors\\hand.cur", true);
  EXPECT_EQ(screen.MouseIcon(), "C:\\Cursors\\hand.cur") << "lower case is accepted";
  screen.MouseIcon("C:\\Cursors\\busy.Ani", true);
  EXPECT_EQ(screen.MouseIcon(), "C:\\Cursors\\busy.Ani");
  EXPECT_TRUE(boxes.empty());

  screen.MouseIcon("C:\\Pictures\\photo.bmp", true);
  EXPECT_EQ(screen.MouseIcon(), "C:\\Cursors\\busy.Ani") << "the old path stays";
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0].text, "Invalid mouse icon file.  File must be an .ICO, .CUR, or .ANI file.");
  EXPECT_EQ(boxes[0].title, "  Invalid File Type");
  EXPECT_EQ(boxes[0].icon, PromptIcon::Exclamation);

  screen.MouseIcon("ico", true);  // too short to end in ".ico"
  screen.MouseIcon("C:\\Cursors\\hand.cursor", true);
  EXPECT_EQ(boxes.size(), 3u);

  screen.MouseIcon("C:\\Cursors\\gone.cur", false);
  screen.MouseIcon("C:\\Pictures\\gone.bmp", false);
  EXPECT_EQ(screen.MouseIcon(), "C:\\Cursors\\busy.Ani") << "a file that does not open is passed over";
  EXPECT_EQ(boxes.size(), 3u) << "silently";
}

}  // namespace
}  // namespace qm
