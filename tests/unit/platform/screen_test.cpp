// The screen service's bookkeeping: the display information the flasher
// reads, the error convention, the colours and the font it keeps, and the
// rules of its screen members (the resolution request, drawing with its
// history, the pie's radials, the cursor codes and the cursor file's name).
#include "platform/screen.h"

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

namespace qm {
namespace {

// Runs f, which must raise, and returns what it raised.
template <typename F>
RuntimeError Raised(F&& f) {
  try {
    f();
  } catch (const RuntimeError& e) {
    return e;
  }
  ADD_FAILURE() << "nothing was raised";
  return RuntimeError(0, "", "");
}

// 56.7 twips a millimetre: 200 mm over 756 pixels is 15 exactly (1440 / 25.4
// would give 14.998). A one-bit display reports a depth of 2, a 15-bit one 0.
TEST(ScreenDisplayInfo, DeviceCapsGiveSizeDepthAndTwips) {
  ScreenModel screen("quillmere");
  EXPECT_TRUE(screen.ApplyDeviceCaps({1, 756, 567, 200, 100}));
  EXPECT_EQ(screen.Width(), 756.0f);
  EXPECT_EQ(screen.Height(), 567.0f);
  EXPECT_EQ(screen.BitsPerPixel(), 2);
  EXPECT_FLOAT_EQ(screen.TwipsPerPixelX(), 15.0f);
  EXPECT_FLOAT_EQ(screen.TwipsPerPixelY(), 10.0f);

  // A device reporting no height: the size is taken, the old ratio stays.
  EXPECT_FALSE(screen.ApplyDeviceCaps({15, 800, 0, 200, 150}));
  EXPECT_EQ(screen.BitsPerPixel(), 0);
  EXPECT_FLOAT_EQ(screen.TwipsPerPixelY(), 10.0f);
}

// Sources are the executable's name and the member's tag; number 0 raises
// nothing; the two boxes
// of a desktop that cannot be reached come before the raise.
TEST(ScreenErrors, SourcesSystemTextsAndTheMissingDesktopsBoxes) {
  std::vector<std::pair<std::string, std::string>> boxes;
  ScreenModel screen("quillmere", [&](std::string_view text, std::string_view title, PromptIcon) {
    boxes.emplace_back(std::string(text), std::string(title));
  });
  RuntimeError e = Raised([&] { screen.Raise(ScreenFailure::GetPen, 5, "Access is denied."); });
  EXPECT_EQ(e.Source(), "quillmere.cScreen.GetPen(CreatePen)");
  EXPECT_EQ(e.Number(), 5);
  EXPECT_EQ(e.Description(), "Access is denied.");
  EXPECT_NO_THROW(screen.RaiseScreenError(ScreenFailure::GetPen, 0, "Done."));

  EXPECT_EQ(ExeBaseName("C:\\dot.folder\\my.tray.app.EXE"), "my.tray.app");
  EXPECT_EQ(TidySystemMessage(std::string("Two lines.\r\n\r\n\0junk", 20)), "Two lines.\r\n");
  EXPECT_EQ(TidySystemMessage(std::string("Cut\0here.\r\n", 11)), "Cut");

  e = Raised([&] { screen.FailNoScreenWindow(1400, "Invalid window handle."); });
  EXPECT_EQ(e.Source(), "quillmere.cScreen.RefreshDisplayInfo(WindowFromDC)");
  EXPECT_EQ(e.Number(), 1400);
  e = Raised([&] { screen.FailNoScreenDc(8, "Not enough memory."); });
  EXPECT_EQ(e.Source(), "quillmere.cScreen.RefreshDisplayInfo(GetWindowDC)");
  const std::vector<std::pair<std::string, std::string>> expected = {
      {"Could not get the handle to the screen (hWnd).  This information is critical and this module can "
       "not function propertly without it.",
       "  Could Not Get Screen hWnd"},
      {"Could not get the handle to the screen's Device Context (DC).  This information is critical and "
       "this module can not function propertly without it.",
       "  Could Not Get Screen hDC"},
  };
  EXPECT_EQ(boxes, expected);
}

TEST(ScreenFonts, SettingTheFontRoundsItsSizeHalvesToEven) {
  ScreenModel screen("quillmere");
  EXPECT_EQ(screen.Font(), (FontSpec{"Arial", 10.0, false, false, false, false}));
  for (auto [size, whole] : {std::pair{9.75, 10}, {10.5, 10}, {11.5, 12}}) {
    screen.Font(FontSpec{"Times New Roman", size, true, false, true, false});
    EXPECT_EQ(screen.FontRecord(), (ScreenFont{"Times New Roman", whole, true, false, true, false})) << size;
  }
  EXPECT_EQ(screen.FontRecord().Weight(), 700);
}

// The documented translation rules: plain RGB; system colours 0 to 30;
// palette-relative RGB; default-palette indexes 0 to 19; nothing else.
TEST(ScreenColors, TranslationRulesWithoutAPalette) {
  const auto sysColor = [](int index) { return 0x00010101u * static_cast<std::uint32_t>(index); };
  const std::pair<OleColor, std::optional<std::uint32_t>> cases[] = {
      {0x00B36A36, 0x00B36A36},   {0x8000000F, 0x000F0F0F},   {0x8000001E, 0x001E1E1E},
      {0x8000001F, std::nullopt}, {0x80FF0005, std::nullopt}, {0x02123456, 0x02123456},
      {0x01000013, 0x01000013},   {0x01000014, std::nullopt}, {0x03000000, std::nullopt},
      {0x40000000, std::nullopt}, {0xFFFFFFFF, std::nullopt},
  };
  for (auto [color, rgb] : cases) {
    EXPECT_EQ(TranslateOleColor(color, sysColor), rgb) << std::hex << color;
    EXPECT_EQ(IsTranslatableOleColor(color), rgb.has_value()) << std::hex << color;
  }
}

TEST(ScreenColors, LetsKeepTheGivenValueOrRefuseIt) {
  ScreenModel screen("quillmere");
  EXPECT_EQ(screen.Colors(), (ScreenColors{0x00FFFFFF, 0, 0x00FFFFFF, 0}));
  screen.BackColor_Scr(0x8000000F);
  screen.ForeColor_Scr(0x000000FF);
  screen.BackColor_Txt(0x80000005);
  screen.ForeColor_Txt(0x00B36A36);
  const ScreenColors given{0x8000000F, 0x000000FF, 0x80000005, 0x00B36A36};
  EXPECT_EQ(screen.Colors(), given) << "system colours are kept untranslated";

  using Let = void (ScreenModel::*)(OleColor);
  for (Let set : {Let{&ScreenModel::BackColor_Scr}, Let{&ScreenModel::ForeColor_Scr},
                  Let{&ScreenModel::BackColor_Txt}, Let{&ScreenModel::ForeColor_Txt}}) {
    EXPECT_EQ(Raised([&] { (screen.*set)(0x12345678); }).Description(), "Invalid Color Specified");
  }
  const RuntimeError e = Raised([&] { screen.ForeColor_Txt(0x12345678); });
  EXPECT_EQ(e.Source(), "quillmere.cScreen.Let_ForeColor_Txt(TranslateColor)");
  EXPECT_EQ(e.Number(), -1);
  EXPECT_EQ(screen.Colors(), given);
}

// The driver is asked only when the screen is not at the size (and depth)
// already; its answer gives the result, the restart flag and the error,
// whose source has always lacked the dot after the program's name.
TEST(ScreenResolution, ChangeResolutionAsksTheDriverAndReadsItsAnswer) {
  ScreenModel screen("quillmere");
  screen.ApplyDeviceCaps({32, 800, 600, 270, 200});
  std::int32_t result = 1;  // DISP_CHANGE_RESTART
  std::vector<DisplayModeRequest> asked;
  int rereads = 0;
  bool restart = true;
  const auto change = [&](std::int32_t code, std::int32_t depth, bool testOnly) {
    return screen.ChangeResolution(
        code, depth, restart, testOnly,
        [&](const DisplayModeRequest& r) {
          asked.push_back(r);
          return result;
        },
        [&] { ++rereads; });
  };
  EXPECT_TRUE(change(2, 32, false));
  EXPECT_FALSE(restart);
  EXPECT_TRUE(asked.empty()) << "800 x 600 asked of a screen at 800 x 600";
  EXPECT_TRUE(change(2, 16, true));
  EXPECT_TRUE(restart);
  EXPECT_TRUE(change(3, 0, false));
  const std::vector<DisplayModeRequest> expected = {{0x1C0000, 800, 600, 16, 2},
                                                    {0x180000, 1024, 768, 0, 0x40000001}};
  EXPECT_EQ(asked, expected);

  result = -2;
  const RuntimeError e = Raised([&] { change(5, 0, false); });
  EXPECT_EQ(e.Number(), -2);
  EXPECT_EQ(e.Source(), "quillmerecScreen.ChangeResolution(ChangeDisplaySettings)");
  EXPECT_EQ(e.Description(), "The graphics mode is not supported.");
  EXPECT_EQ(rereads, 2) << "a refused change leaves the cached metrics";
}

// Arguments refused before drawing are neither drawn nor recorded, and say
// why; an empty text is refused silently.
TEST(ScreenDrawing, RefusedArgumentsAreNeitherDrawnNorRecorded) {
  ScreenModel screen("quillmere");
  screen.EnableRefresh(true);
  int painted = 0;
  const auto paint = [&](const auto&) { return ++painted > 0; };
  const auto refused = [&](bool drawn, const char* source, std::int32_t number, const char* text) {
    EXPECT_FALSE(drawn) << source;
    ASSERT_TRUE(screen.LastError()) << source;
    EXPECT_EQ(screen.LastError()->Source(), source);
    EXPECT_EQ(screen.LastError()->Number(), number);
    EXPECT_EQ(screen.LastError()->Description(), text);
  };
  refused(screen.Draw(ArcArgs{50, 50, 0, 60, 50, 0, 90}, paint), "quillmere.cScreen.DrawArc", -1,
          "Invalid Radius Specified");
  refused(screen.Draw(RectangleArgs{0, 0, 9, 9, false, false}, paint), "quillmere.cScreen.DrawRectangle", -1,
          "Invalid Parameters Specified");
  refused(screen.Draw(PolygonArgs{{1, 2}, {3, 4}, 0}, paint), "quillmere.cScreen.DrawPolygon", -1,
          "Invalid POINT Count Specified");
  refused(screen.Draw(PolylineArgs{0, 0, {1, 2, 3}, {3, 4}, 3}, paint), "quillmere.cScreen.DrawPolyline",
          kErrSubscriptOutOfRange, "Subscript out of range");
  refused(screen.Draw(PictureArgs{}, paint), "quillmere.cScreen.DrawPicture", -1,
          "No picture specified to draw.");
  EXPECT_FALSE(screen.Draw(TextArgs{"", 5, 5, false}, paint));
  EXPECT_FALSE(screen.LastError()) << "each call forgets the error of the one before";
  EXPECT_EQ(painted, 0);
  EXPECT_EQ(screen.History().Count(), 0u);
}

// Refresh's replay as the Win32 half runs it: each record through its
// drawing member, list by list (arcs before lines before texts), ending at
// the first drawing that fails.
TEST(ScreenDrawing, ReplayRedrawsInListOrderAndStopsAtTheFirstFailure) {
  ScreenModel screen("quillmere");
  const auto draws = [](const auto&) { return true; };
  screen.Draw(LineArgs{0, 0, 1, 1}, draws);  // not recorded: EnableRefresh is off
  screen.EnableRefresh(true);
  screen.Draw(TextArgs{"last", 1, 1, false}, draws);
  screen.Draw(LineArgs{1, 1, 2, 2}, draws);
  screen.Draw(LineArgs{3, 3, 4, 4}, draws);
  screen.Draw(ArcArgs{9, 9, 2, 11, 9, 0, 45}, draws);
  ASSERT_EQ(screen.History().Count(), 4u);

  std::vector<std::string> drawn;
  EXPECT_FALSE(screen.ReplayHistory([&](const auto& record) {
    drawn.push_back(typeid(record.args).name());
    return drawn.size() < 3;  // the second line fails
  }));
  const std::string arc = typeid(ArcArgs).name(), line = typeid(LineArgs).name();
  EXPECT_EQ(drawn, (std::vector<std::string>{arc, line, line})) << "the text is not reached";
}

// Without explicit radials a pie runs counter-clockwise from three o'clock
// to where the angle's ray meets the ellipse.
TEST(ScreenDrawing, PieRadialsTurnCounterClockwiseFromThreeOClock) {
  EXPECT_EQ(RadialsOfAngle(0, 0, 100, 100, 90.0f), (PieRadials{100, 50, 50, 0}));
  // 200 x 100 at (10, 20), 30 degrees: (110 + 100 cos 30, 70 - 50 sin 30).
  EXPECT_EQ(RadialsOfAngle(10, 20, 210, 120, 30.0f), (PieRadials{210, 70, 197, 45}));
  EXPECT_EQ(RadialsOfAngle(0, 0, 100, 100, 500.0f), (PieRadials{100, 50, 100, 50})) << "clamped to 360";
  EXPECT_FALSE(RadialsOfAngle(0, 0, 100, 100, -30.0f)) << "clamped to an empty slice";
}

TEST(ScreenCursors, ClassCursorCodeIsTheFirstStandardCursorItIs) {
  EXPECT_EQ(MousePointerCode([](std::int32_t) { return true; }), 32650) << "app-starting is tried first";
  EXPECT_EQ(MousePointerCode([](std::int32_t) { return false; }), 1) << "none of them: the cursor file";
  // Where the system gives the wait and the arrow cursors one handle, the
  // arrow (tried second) comes before the wait (tried last).
  EXPECT_EQ(MousePointerCode([](std::int32_t id) { return id == 32514 || id == 32512; }), 32512);
}

TEST(ScreenCursors, MouseIconTakesOnlyCursorFilesThatOpen) {
  std::vector<std::string> boxes;
  ScreenModel screen("quillmere", [&](std::string_view text, std::string_view title, PromptIcon icon) {
    if (title == "  Invalid File Type" && icon == PromptIcon::Exclamation) boxes.emplace_back(text);
  });
  screen.MouseIcon("C:\\Cursors\\hand.cur", true);
  EXPECT_EQ(screen.MouseIcon(), "C:\\Cursors\\hand.cur") << "lower case is accepted";
  screen.MouseIcon("C:\\Cursors\\busy.Ani", true);
  EXPECT_TRUE(boxes.empty());

  screen.MouseIcon("C:\\Pictures\\photo.bmp", true);
  screen.MouseIcon("ico", true);  // too short to end in ".ico"
  EXPECT_EQ(boxes, std::vector<std::string>(
                       2, "Invalid mouse icon file.  File must be an .ICO, .CUR, or .ANI file."));
  screen.MouseIcon("C:\\Cursors\\gone.cur", false);
  screen.MouseIcon("C:\\Pictures\\gone.bmp", false);
  EXPECT_EQ(boxes.size(), 2u) << "a file that does not open is passed over silently";
  EXPECT_EQ(screen.MouseIcon(), "C:\\Cursors\\busy.Ani") << "the old path stays";
}

}  // namespace
}  // namespace qm
