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

TEST(ScreenDisplayInfo, DeviceCapsGiveSizeAndTwipsAtFiftySixPointSevenPerMillimetre) {
  EXPECT_FLOAT_EQ(*TwipsPerPixel(200, 756.0f), 15.0f);  // 1440 / 25.4 would give 14.9984
  EXPECT_FALSE(TwipsPerPixel(270, 0.0f));

  ScreenModel screen("quillmere");
  EXPECT_TRUE(screen.ApplyDeviceCaps({24, 1024, 768, 271, 203}));
  EXPECT_EQ(screen.BitsPerPixel(), 24);
  EXPECT_EQ(screen.Width(), 1024.0f);
  EXPECT_EQ(screen.Height(), 768.0f);
  EXPECT_FLOAT_EQ(screen.TwipsPerPixelX(), static_cast<float>(56.7 * 271 / 1024));
  EXPECT_FLOAT_EQ(screen.TwipsPerPixelY(), static_cast<float>(56.7 * 203 / 768));

  // A device reporting no height: the size is taken, the old ratio stays.
  EXPECT_FALSE(screen.ApplyDeviceCaps({1, 800, 0, 200, 150}));
  EXPECT_EQ(screen.BitsPerPixel(), 2);
  EXPECT_EQ(screen.Height(), 0.0f);
  EXPECT_FLOAT_EQ(screen.TwipsPerPixelX(), static_cast<float>(56.7 * 200 / 800));
  EXPECT_FLOAT_EQ(screen.TwipsPerPixelY(), static_cast<float>(56.7 * 203 / 768));
}

TEST(ScreenErrors, EverySourceIsTheExeNameAndTheMembersTag) {
  // Worked examples: a member with and without its platform call, and the
  // one whose source has always lacked the dot after the program's name.
  const std::pair<ScreenFailure, const char*> table[] = {
      {ScreenFailure::ChangeResolution, "quillmerecScreen.ChangeResolution(ChangeDisplaySettings)"},
      {ScreenFailure::GetPen, "quillmere.cScreen.GetPen(CreatePen)"},
      {ScreenFailure::SetDisplayFont, "quillmere.cScreen.SetDisplayFont"},
      {ScreenFailure::DrawPolylineMove, "quillmere.cScreen.DrawPolyline(DRAW_MoveCurrentXY)"},
  };
  for (auto [where, source] : table) {
    EXPECT_EQ(ScreenErrorSource("quillmere", where), source);
    const RuntimeError e = Raised([&] { ScreenModel("quillmere").Raise(where, 5, "Access is denied."); });
    EXPECT_EQ(e.Source(), source);
    EXPECT_EQ(e.Number(), 5);
    EXPECT_EQ(e.Description(), "Access is denied.");
  }
  EXPECT_NO_THROW(ScreenModel("quillmere").RaiseScreenError(ScreenFailure::GetPen, 0, "Done."));
}

TEST(ScreenErrors, ExeNameAndSystemTextAreTidied) {
  EXPECT_EQ(ExeBaseName("C:\\Program Files\\Quillmere\\quillmere.exe"), "quillmere");
  EXPECT_EQ(ExeBaseName("C:\\Tools\\my.tray.app.EXE"), "my.tray.app");
  EXPECT_EQ(ExeBaseName("C:\\dot.folder\\noext"), "noext");

  EXPECT_EQ(TidySystemMessage("Access is denied.\r\n"), "Access is denied.");
  EXPECT_EQ(TidySystemMessage(std::string("Two lines.\r\n\r\n\0junk", 20)), "Two lines.\r\n");
  EXPECT_EQ(TidySystemMessage(std::string("Cut\0here.\r\n", 11)), "Cut");
  EXPECT_EQ(TidySystemMessage(""), "");
}

TEST(ScreenErrors, MissingDesktopShowsItsBoxThenRaises) {
  std::vector<std::pair<std::string, std::string>> boxes;
  ScreenModel screen("quillmere", [&](std::string_view text, std::string_view title, PromptIcon) {
    boxes.emplace_back(std::string(text), std::string(title));
  });

  RuntimeError e = Raised([&] { screen.FailNoScreenWindow(1400, "Invalid window handle."); });
  EXPECT_EQ(e.Source(), "quillmere.cScreen.RefreshDisplayInfo(WindowFromDC)");
  EXPECT_EQ(e.Number(), 1400);
  EXPECT_EQ(e.Description(), "Invalid window handle.");
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(
      boxes[0].first,
      "Could not get the handle to the screen (hWnd).  This information is critical and this module can "
      "not function propertly without it.");
  EXPECT_EQ(boxes[0].second, "  Could Not Get Screen hWnd");

  e = Raised([&] { screen.FailNoScreenDc(8, "Not enough memory."); });
  EXPECT_EQ(e.Source(), "quillmere.cScreen.RefreshDisplayInfo(GetWindowDC)");
  EXPECT_EQ(e.Number(), 8);
  ASSERT_EQ(boxes.size(), 2u);
  EXPECT_EQ(boxes[1].first,
            "Could not get the handle to the screen's Device Context (DC).  This information is critical and "
            "this module can not function propertly without it.");
  EXPECT_EQ(boxes[1].second, "  Could Not Get Screen hDC");
}

TEST(ScreenErrors, IndexesOutsideTheListsAreOutOfRange) {
  ScreenModel screen("quillmere");
  screen.SetDisplayDevices({{"\\\\.\\DISPLAY1", "Primary adapter"}});
  EXPECT_EQ(screen.DisplayDevice_Count(), 1);
  EXPECT_EQ(screen.DisplayDevice_Name(0), "\\\\.\\DISPLAY1");
  EXPECT_EQ(screen.DisplayDevice_Description(0), "Primary adapter");
  for (int index : {-1, 1}) {
    RuntimeError e = Raised([&] { screen.DisplayDevice_Name(index); });
    EXPECT_EQ(e.Number(), kErrSubscriptOutOfRange);
    EXPECT_EQ(e.Source(), "quillmere");
    EXPECT_EQ(Raised([&] { screen.DisplayDevice_Description(index); }).Number(), kErrSubscriptOutOfRange);
  }
  EXPECT_EQ(Raised([&] { screen.Fonts(ScreenModel::FontsCount()); }).Number(), kErrSubscriptOutOfRange);
}

TEST(ScreenFonts, SettingTheFontRoundsItsSize) {
  ScreenModel screen("quillmere");
  EXPECT_EQ(screen.FontRecord(), ScreenFont{});
  EXPECT_EQ(screen.Font(), (FontSpec{"Arial", 10.0, false, false, false, false}));

  const std::pair<double, int> sizes[] = {{9.75, 10}, {8.25, 8}, {10.5, 10}, {11.5, 12}, {12.0, 12}};
  for (auto [size, whole] : sizes) {
    screen.Font(FontSpec{"Times New Roman", size, true, false, true, false});
    EXPECT_EQ(screen.FontRecord(), (ScreenFont{"Times New Roman", whole, true, false, true, false})) << size;
  }
  EXPECT_EQ(screen.FontRecord().Weight(), 700);
  EXPECT_EQ(screen.Font(), (FontSpec{"Times New Roman", 12.0, true, false, true, false}));
}

TEST(ScreenColors, TranslationRulesWithoutAPalette) {
  const auto sysColor = [](int index) { return 0x00010101u * static_cast<std::uint32_t>(index); };
  struct Case {
    OleColor color;
    std::optional<std::uint32_t> rgb;
  };
  const Case cases[] = {
      {0x00000000, 0x00000000},   {0x00FFFFFF, 0x00FFFFFF},
      {0x00B36A36, 0x00B36A36},   {0x8000000F, 0x000F0F0F},
      {0x80000000, 0x00000000},   {0x8000001E, 0x001E1E1E},  // the last index
      {0x8000001F, std::nullopt},                            // past it
      {0x80000100, std::nullopt}, {0x80FF0005, std::nullopt},
      {0x02123456, 0x02123456},                                // palette-relative RGB
      {0x01000013, 0x01000013},   {0x01000014, std::nullopt},  // default palette: 20 entries
      {0x12345678, std::nullopt}, {0xFFFFFFFF, std::nullopt},
      {0x03000000, std::nullopt}, {0x81000005, std::nullopt},
      {0x40000000, std::nullopt},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(TranslateOleColor(c.color, sysColor), c.rgb) << std::hex << c.color;
    EXPECT_EQ(IsTranslatableOleColor(c.color), c.rgb.has_value()) << std::hex << c.color;
  }
}

TEST(ScreenColors, LetsKeepTheGivenValueOrRefuseIt) {
  ScreenModel screen("quillmere");
  EXPECT_EQ(screen.Colors(), ScreenColors{});
  EXPECT_EQ(screen.BackColor_Scr(), 0x00FFFFFFu);
  EXPECT_EQ(screen.ForeColor_Scr(), 0u);

  screen.BackColor_Scr(0x8000000F);
  screen.ForeColor_Scr(0x000000FF);
  screen.BackColor_Txt(0x80000005);
  screen.ForeColor_Txt(0x00B36A36);
  EXPECT_EQ(screen.Colors(), (ScreenColors{0x8000000F, 0x000000FF, 0x80000005, 0x00B36A36}));

  using Let = void (ScreenModel::*)(OleColor);
  for (Let set : {Let{&ScreenModel::BackColor_Scr}, Let{&ScreenModel::ForeColor_Scr},
                  Let{&ScreenModel::BackColor_Txt}, Let{&ScreenModel::ForeColor_Txt}}) {
    const RuntimeError e = Raised([&] { (screen.*set)(0x12345678); });
    EXPECT_EQ(e.Number(), -1);
    EXPECT_EQ(e.Description(), "Invalid Color Specified");
  }
  EXPECT_EQ(Raised([&] { screen.ForeColor_Txt(0x12345678); }).Source(),
            "quillmere.cScreen.Let_ForeColor_Txt(TranslateColor)");
  EXPECT_EQ(screen.Colors(), (ScreenColors{0x8000000F, 0x000000FF, 0x80000005, 0x00B36A36}));
}

}  // namespace
}  // namespace qm
