// The screen service's bookkeeping: the display information the flasher
// reads, the error convention, the colour rules the overlay uses, and one
// check of each family of members the program does not call.
#include "platform/screen.h"

#include <gtest/gtest.h>

#include <string>
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

// The members below are not used by the program (it reads only the display
// information): one check of each family's main effect.
TEST(ScreenUnusedMembers, FontColoursResolutionDrawingAndCursorsSmoke) {
  ScreenModel screen("quillmere");
  screen.Font(FontSpec{"Times New Roman", 10.5, true, false, false, false});
  EXPECT_EQ(screen.FontRecord(), (ScreenFont{"Times New Roman", 10, true, false, false, false}));
  EXPECT_EQ(Raised([&] { screen.ForeColor_Txt(0x12345678); }).Description(), "Invalid Color Specified");

  // ChangeResolution asks the driver for the size of its code.
  std::vector<DisplayModeRequest> asked;
  bool restart = false;
  EXPECT_TRUE(screen.ChangeResolution(
      3, 0, restart, false,
      [&](const DisplayModeRequest& r) {
        asked.push_back(r);
        return 0;
      },
      [] {}));
  EXPECT_EQ(asked, (std::vector<DisplayModeRequest>{{0x180000, 1024, 768, 0, 0x40000001}}));

  // Draw records when EnableRefresh is on; ReplayHistory draws it again.
  screen.EnableRefresh(true);
  const auto draws = [](const auto&) { return true; };
  EXPECT_TRUE(screen.Draw(LineArgs{1, 1, 2, 2}, draws));
  EXPECT_FALSE(screen.Draw(ArcArgs{50, 50, 0, 60, 50, 0, 90}, draws)) << "a radius of 0 is refused";
  int replayed = 0;
  EXPECT_TRUE(screen.ReplayHistory([&](const auto&) { return ++replayed > 0; }));
  EXPECT_EQ(replayed, 1);
  EXPECT_EQ(RadialsOfAngle(0, 0, 100, 100, 90.0f), (PieRadials{100, 50, 50, 0}));

  EXPECT_EQ(MousePointerCode([](std::int32_t) { return false; }), 1) << "none of them: the cursor file";
  screen.MouseIcon("C:\\Cursors\\hand.cur", true);
  EXPECT_EQ(screen.MouseIcon(), "C:\\Cursors\\hand.cur");
}

}  // namespace
}  // namespace qm
