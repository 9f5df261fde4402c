#include "platform/screen.h"

#include <gtest/gtest.h>

#include <string>
#include <typeindex>
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

TEST(ScreenDisplayInfo, BitsPerPixelCodes) {
  const std::pair<int, int> cases[] = {{1, 2},   {2, 2},   {4, 4}, {8, 8}, {15, 0}, {16, 16},
                                       {24, 24}, {32, 32}, {0, 0}, {3, 0}, {64, 0}, {-1, 0}};
  for (auto [raw, code] : cases) EXPECT_EQ(BitsPerPixelCode(raw), code) << raw;
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
  const std::pair<ScreenFailure, const char*> table[] = {
      {ScreenFailure::ChangeResolution, "quillmerecScreen.ChangeResolution(ChangeDisplaySettings)"},
      {ScreenFailure::RefreshDisplayInfoWindow, "quillmere.cScreen.RefreshDisplayInfo(WindowFromDC)"},
      {ScreenFailure::RefreshDisplayInfoDc, "quillmere.cScreen.RefreshDisplayInfo(GetWindowDC)"},
      {ScreenFailure::HdcGetDc, "quillmere.cScreen.hDC(GetDC)"},
      {ScreenFailure::SetCurrentXY, "quillmere.cScreen.SetCurrentXY(DRAW_MoveCurrentXY)"},
      {ScreenFailure::GetCurrentXY, "quillmere.cScreen.GetCurrentXY(DRAW_MoveCurrentXY)"},
      {ScreenFailure::SetDisplayFont, "quillmere.cScreen.SetDisplayFont"},
      {ScreenFailure::LetBackColorScr, "quillmere.cScreen.Let_BackColor_Scr(TranslateColor)"},
      {ScreenFailure::LetForeColorScr, "quillmere.cScreen.Let_ForeColor_Scr(TranslateColor)"},
      {ScreenFailure::LetBackColorTxt, "quillmere.cScreen.Let_BackColor_Txt(TranslateColor)"},
      {ScreenFailure::LetForeColorTxt, "quillmere.cScreen.Let_ForeColor_Txt(TranslateColor)"},
      {ScreenFailure::TranslateColor, "quillmere.cScreen.TranslateColor(OleTranslateColor)"},
      {ScreenFailure::GetPen, "quillmere.cScreen.GetPen(CreatePen)"},
      {ScreenFailure::GetBrush, "quillmere.cScreen.GetBrush(CreateBrushIndirect)"},
      {ScreenFailure::SetTextBackColor, "quillmere.cScreen.SetColors(SetTextBackColor)"},
      {ScreenFailure::SetTextForeColor, "quillmere.cScreen.SetColors(SetTextForeColor)"},
      {ScreenFailure::GetFont, "quillmere.cScreen.GetFont"},
      {ScreenFailure::GetFontCreateFont, "quillmere.cScreen.GetFont(CreateFont)"},
      {ScreenFailure::GetDevices, "quillmere.cScreen.GetDevices"},
      {ScreenFailure::AttachThreadGetCurrentThreadId, "quillmere.cScreen.AttachThread(GetCurrentThreadId)"},
      {ScreenFailure::AttachThreadGetWindowThreadProcessId,
       "quillmere.cScreen.AttachThread(GetWindowThreadProcessId)"},
      {ScreenFailure::AttachThreadInput, "quillmere.cScreen.AttachThread(AttachThreadInput)"},
      {ScreenFailure::MousePointerGetClassLong, "quillmere.cScreen.MousePointer(GetClassLong)"},
      {ScreenFailure::MousePointerSetClassLong, "quillmere.cScreen.MousePointer(SetClassLong)"},
      {ScreenFailure::MousePointerLoadImage, "quillmere.cScreen.MousePointer(LoadImageSTR)"},
      {ScreenFailure::ActiveWindow, "quillmere.cScreen.ActiveWindow(GetForegroundWindow)"},
      {ScreenFailure::ActiveObject, "quillmere.cScreen.ActiveObject(GetForegroundWindow)"},
      {ScreenFailure::DrawArc, "quillmere.cScreen.DrawArc"},
      {ScreenFailure::DrawArcCall, "quillmere.cScreen.DrawArc(DRAW_Arc)"},
      {ScreenFailure::DrawEllipse, "quillmere.cScreen.DrawEllipse(DRAW_Ellipse)"},
      {ScreenFailure::DrawHalfCircle, "quillmere.cScreen.DrawHalfCircle(DRAW_HalfCircle)"},
      {ScreenFailure::DrawLine, "quillmere.cScreen.DrawLine(DRAW_Line)"},
      {ScreenFailure::DrawPicture, "quillmere.cScreen.DrawPicture"},
      {ScreenFailure::DrawPictureLoad, "quillmere.cScreen.DrawPicture(LoadPicture)"},
      {ScreenFailure::DrawPictureCreateDc, "quillmere.cScreen.DrawPicture(CreateCompatibleDC)"},
      {ScreenFailure::DrawPictureBlt, "quillmere.cScreen.DrawPicture(DRAW_Picture)"},
      {ScreenFailure::DrawPictureStretch, "quillmere.cScreen.DrawPicture(DRAW_PictureStretch)"},
      {ScreenFailure::DrawPie, "quillmere.cScreen.DrawPie(DRAW_Pie)"},
      {ScreenFailure::DrawPolygon, "quillmere.cScreen.DrawPolygon"},
      {ScreenFailure::DrawPolygonCall, "quillmere.cScreen.DrawPolygon(DRAW_Polygon)"},
      {ScreenFailure::DrawPolyline, "quillmere.cScreen.DrawPolyline"},
      {ScreenFailure::DrawPolylineMove, "quillmere.cScreen.DrawPolyline(DRAW_MoveCurrentXY)"},
      {ScreenFailure::DrawPolylineCall, "quillmere.cScreen.DrawPolyline(DRAW_Polyline)"},
      {ScreenFailure::DrawRectangle, "quillmere.cScreen.DrawRectangle"},
      {ScreenFailure::DrawRectangleFilled, "quillmere.cScreen.DrawRectangle(DRAW_RectangleFilled)"},
      {ScreenFailure::DrawRectangleOutline, "quillmere.cScreen.DrawRectangle(DRAW_RectangleOutline)"},
      {ScreenFailure::DrawText, "quillmere.cScreen.DrawText(DRAW_DrawText)"},
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

TEST(ScreenFonts, ListHoldsEachNameOnce) {
  FontNameList list;
  EXPECT_TRUE(list.Add("Arial"));
  EXPECT_TRUE(list.Add("Courier New"));
  EXPECT_FALSE(list.Add("Arial"));
  EXPECT_FALSE(list.Add("ARIAL"));
  EXPECT_EQ(list.Names(), (std::vector<std::string>{"Arial", "Courier New"}));
  list.Clear();
  EXPECT_TRUE(list.Names().empty());
  EXPECT_TRUE(list.Add("Arial"));
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

  struct Let {
    void (ScreenModel::*set)(OleColor);
    const char* source;
  };
  const Let lets[] = {
      {&ScreenModel::BackColor_Scr, "quillmere.cScreen.Let_BackColor_Scr(TranslateColor)"},
      {&ScreenModel::ForeColor_Scr, "quillmere.cScreen.Let_ForeColor_Scr(TranslateColor)"},
      {&ScreenModel::BackColor_Txt, "quillmere.cScreen.Let_BackColor_Txt(TranslateColor)"},
      {&ScreenModel::ForeColor_Txt, "quillmere.cScreen.Let_ForeColor_Txt(TranslateColor)"},
  };
  for (const Let& let : lets) {
    const RuntimeError e = Raised([&] { (screen.*let.set)(0x12345678); });
    EXPECT_EQ(e.Source(), let.source);
    EXPECT_EQ(e.Number(), -1);
    EXPECT_EQ(e.Description(), "Invalid Color Specified");
  }
  EXPECT_EQ(screen.Colors(), (ScreenColors{0x8000000F, 0x000000FF, 0x80000005, 0x00B36A36}));
}

TEST(ScreenHistory, RecordsCarryTheColoursOfTheirTime) {
  ScreenModel screen("quillmere");
  screen.Remember(LineArgs{1, 2, 3, 4});
  EXPECT_EQ(screen.History().Count(), 0u) << "nothing is recorded until EnableRefresh";

  screen.EnableRefresh(true);
  screen.Remember(LineArgs{1, 2, 3, 4});
  screen.ForeColor_Scr(0x000000FF);
  screen.Remember(LineArgs{5, 6, 7, 8});
  screen.BackColor_Txt(0x8000000F);
  screen.Remember(TextArgs{"Hello", 10, 20, true});

  const auto& lines = screen.History().List<LineArgs>();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].args, (LineArgs{1, 2, 3, 4}));
  EXPECT_EQ(lines[0].colors, ScreenColors{});
  EXPECT_EQ(lines[1].args, (LineArgs{5, 6, 7, 8}));
  EXPECT_EQ(lines[1].colors, (ScreenColors{0x00FFFFFF, 0x000000FF, 0x00FFFFFF, 0}));
  const auto& texts = screen.History().List<TextArgs>();
  ASSERT_EQ(texts.size(), 1u);
  EXPECT_EQ(texts[0].args, (TextArgs{"Hello", 10, 20, true}));
  EXPECT_EQ(texts[0].colors, (ScreenColors{0x00FFFFFF, 0x000000FF, 0x8000000F, 0}));

  screen.EnableRefresh(false);
  screen.Remember(LineArgs{9, 9, 9, 9});
  EXPECT_EQ(screen.History().Count(), 3u);
}

// One record of each kind, added from the last kind to the first.
void RememberOneOfEach(ScreenModel& screen) {
  screen.Remember(TextArgs{"t", 1, 1, false});
  screen.Remember(RectangleArgs{0, 0, 5, 5, true, false});
  screen.Remember(PolylineArgs{0, 0, {1, 2}, {3, 4}, 2});
  screen.Remember(PolygonArgs{{1, 2, 3}, {4, 5, 6}, 3});
  screen.Remember(PieArgs{0, 0, 9, 9, 90.0f, false, 0, 0, 0, 0});
  screen.Remember(PictureArgs{1, 2, "C:\\x.bmp", nullptr, 0, 0, 0, true});
  screen.Remember(LineArgs{0, 0, 1, 1});
  screen.Remember(HalfCircleArgs{0, 0, 9, 9, 0, 4, 9, 4});
  screen.Remember(EllipseArgs{0, 0, 9, 9});
  screen.Remember(ArcArgs{5, 5, 3, 8, 5, 0.0f, 180.0f});
}

TEST(ScreenHistory, WalkGoesListByListAndClearEmptiesAllTen) {
  ScreenModel screen("quillmere");
  screen.EnableRefresh(true);
  RememberOneOfEach(screen);
  screen.Remember(LineArgs{2, 2, 3, 3});
  EXPECT_EQ(screen.History().Count(), 11u);

  std::vector<std::type_index> kinds;
  EXPECT_TRUE(screen.History().ForEachRecord([&](const auto& record) {
    kinds.emplace_back(typeid(record.args));
    return true;
  }));
  const std::vector<std::type_index> order = {
      typeid(ArcArgs),      typeid(EllipseArgs),   typeid(HalfCircleArgs), typeid(LineArgs),
      typeid(LineArgs),     typeid(PictureArgs),   typeid(PieArgs),        typeid(PolygonArgs),
      typeid(PolylineArgs), typeid(RectangleArgs), typeid(TextArgs)};
  EXPECT_EQ(kinds, order);

  kinds.clear();
  EXPECT_FALSE(screen.History().ForEachRecord([&](const auto& record) {
    kinds.emplace_back(typeid(record.args));
    return kinds.size() < 4;
  }));
  EXPECT_EQ(kinds.size(), 4u) << "the first false ends the walk";

  screen.ClearHistory();
  EXPECT_EQ(screen.History().Count(), 0u);
  EXPECT_TRUE(screen.History().List<PolygonArgs>().empty());
  EXPECT_TRUE(screen.History().List<TextArgs>().empty());
}

TEST(ScreenHistory, ReplayDrawsWithEachRecordsColoursAndRecordsNothing) {
  ScreenModel screen("quillmere");
  screen.EnableRefresh(true);
  screen.ForeColor_Scr(0x000000FF);
  screen.Remember(LineArgs{0, 0, 1, 1});
  screen.ForeColor_Scr(0x0000FF00);
  screen.Remember(EllipseArgs{0, 0, 9, 9});
  screen.ForeColor_Scr(0x00FF0000);

  std::vector<OleColor> drawnWith;
  EXPECT_TRUE(screen.ReplayHistory([&](const auto& record) {
    EXPECT_TRUE(screen.Replaying());
    drawnWith.push_back(screen.ForeColor_Scr());
    screen.Remember(record.args);  // what a drawing member does
    return true;
  }));
  EXPECT_EQ(drawnWith, (std::vector<OleColor>{0x0000FF00, 0x000000FF})) << "ellipses come before lines";
  EXPECT_EQ(screen.History().Count(), 2u);
  EXPECT_FALSE(screen.Replaying());
  EXPECT_EQ(screen.ForeColor_Scr(), 0x00FF0000u);

  drawnWith.clear();
  EXPECT_FALSE(screen.ReplayHistory([&](const auto&) {
    drawnWith.push_back(screen.ForeColor_Scr());
    return false;
  }));
  EXPECT_EQ(drawnWith.size(), 1u);
  EXPECT_EQ(screen.ForeColor_Scr(), 0x00FF0000u);
}

}  // namespace
}  // namespace qm
