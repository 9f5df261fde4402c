// clsScreen on the real (virtual) display under Wine.
#include "platform/screen_win32.h"

#include <gtest/gtest.h>
#include <ole2.h>
#include <olectl.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "../../support/test_helpers_win32.h"
#include "platform/ansi_text.h"

namespace qm::win32 {
namespace {

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

bool IsDeleted(HGDIOBJ object) {
  return ::GetObjectType(object) == 0;
}

COLORREF ScreenPixel(int x, int y) {
  WindowDC screen(nullptr);
  return ::GetPixel(screen.Get(), x, y);
}

TEST(ScreenShell, MetricsAreThoseOfTheScreen) {
  clsScreen screen;
  EXPECT_EQ(screen.Width(), static_cast<float>(::GetSystemMetrics(SM_CXSCREEN)));
  EXPECT_EQ(screen.Height(), static_cast<float>(::GetSystemMetrics(SM_CYSCREEN)));
  EXPECT_EQ(screen.Width(), 1024.0f) << "the test display is 1024 x 768";
  EXPECT_EQ(screen.Height(), 768.0f);
  EXPECT_TRUE(screen.BitsPerPixel() == 32 || screen.BitsPerPixel() == 24) << screen.BitsPerPixel();
  EXPECT_GT(screen.TwipsPerPixelX(), 0.0f);
  EXPECT_GT(screen.TwipsPerPixelY(), 0.0f);
  EXPECT_EQ(screen.hwnd(), ::GetDesktopWindow());
}

TEST(ScreenShell, DisplayDevicesAreListed) {
  clsScreen screen;
  ASSERT_GE(screen.DisplayDevice_Count(), 1);
  EXPECT_EQ(screen.DisplayDevice_Name(0).rfind("\\\\.\\DISPLAY", 0), 0u) << screen.DisplayDevice_Name(0);
  EXPECT_EQ(screen.DisplayDevice_Name(0).find('\0'), std::string::npos);
  EXPECT_FALSE(screen.DisplayDevice_Description(0).empty());
}

TEST(ScreenShell, InstalledFontsIncludeArialOnceAfterEveryRefresh) {
  clsScreen screen;
  const std::int32_t count = clsScreen::FontsCount();
  ASSERT_GT(count, 0);
  int arial = 0;
  for (std::int32_t i = 0; i < count; ++i) arial += EqualsNoCase(screen.Fonts(i), "Arial") ? 1 : 0;
  EXPECT_EQ(arial, 1);

  EXPECT_TRUE(screen.RefreshDisplayInfo());
  clsScreen second;
  EXPECT_EQ(clsScreen::FontsCount(), count) << "a refresh lists the fonts again, without repeats";
  EXPECT_EQ(Raised([&] { screen.Fonts(count); }).Number(), kErrSubscriptOutOfRange);
}

TEST(ScreenShell, ColourLetsKeepTheGivenValueAndTranslateWithTheSystemsColours) {
  clsScreen screen;
  screen.BackColor_Scr(0x8000000F);
  EXPECT_EQ(screen.BackColor_Scr(), 0x8000000Fu) << "kept untranslated";
  EXPECT_EQ(screen.TranslateColor(0x8000000F), static_cast<std::int32_t>(::GetSysColor(COLOR_BTNFACE)));
  EXPECT_EQ(screen.TranslateColor(0x12345678), -1);
}

// The rules the service validates colours by give what the system's own
// translation gives. (Wine is laxer than the documented rules for system
// and palette indexes out of range, as 0x80000100 or 0x01000100; those are
// left out.)
TEST(ScreenShell, ColourRulesAgreeWithTheSystemTranslation) {
  clsScreen screen;
  const OleColor colours[] = {0x00000000, 0x00B36A36, 0x00FFFFFF, 0x80000000, 0x80000005, 0x8000000F,
                              0x80000018, 0x8000001E, 0x8000001F, 0x80000040, 0x12345678, 0x02123456,
                              0x01000000, 0x01000013, 0x04000000, 0xFF000000, 0xFFFFFFFF};
  for (OleColor colour : colours) {
    COLORREF system = 0;
    const bool translated = SUCCEEDED(::OleTranslateColor(colour, nullptr, &system));
    const std::int32_t ours = screen.TranslateColor(colour);
    EXPECT_EQ(ours != -1, translated) << std::hex << colour;
    if (translated) {
      EXPECT_EQ(static_cast<COLORREF>(ours), system) << std::hex << colour;
    }
  }
}

TEST(ScreenShell, GetFontChecksItsRecordThenMakesTheFont) {
  clsScreen screen;
  WindowDC dc(nullptr);
  ScreenFont font;
  font.name = "";
  RuntimeError e = Raised([&] { screen.GetFont(dc.Get(), font); });
  EXPECT_EQ(e.Source(), "win32_screen.cScreen.GetFont");
  EXPECT_EQ(e.Number(), -1);
  EXPECT_EQ(e.Description(), "Invalid Font Name Specified");

  font.name = "Arial";
  font.size = 0;
  EXPECT_EQ(Raised([&] { screen.GetFont(dc.Get(), font); }).Description(), "Invalid Font Size Specified");
  font.size = 12;
  e = Raised([&] { screen.GetFont(nullptr, font); });
  EXPECT_EQ(e.Description(), "Invalid DC Specified");
  EXPECT_EQ(e.Source(), "win32_screen.cScreen.GetFont");

  font.bold = true;
  font.italic = true;
  const Font made = screen.GetFont(dc.Get(), font);
  ASSERT_TRUE(made);
  LOGFONTA described{};
  ASSERT_EQ(::GetObjectA(made.Get(), sizeof described, &described), static_cast<int>(sizeof described));
  EXPECT_EQ(described.lfHeight, -::MulDiv(12, ::GetDeviceCaps(dc.Get(), LOGPIXELSY), 72));
  EXPECT_EQ(described.lfWeight, 700);
  EXPECT_TRUE(described.lfItalic);
  EXPECT_STREQ(described.lfFaceName, "Arial");
}

TEST(ScreenShell, ColoursPenBrushAndFontGoIntoTheDcAndComeOutAgain) {
  clsScreen screen;
  screen.BackColor_Txt(0x8000000F);
  screen.ForeColor_Txt(0x000000FF);
  screen.ForeColor_Scr(0x0000FF00);
  screen.BackColor_Scr(0x00FF0000);
  screen.PenWidth(3);
  HGDIOBJ stockPen = nullptr;
  std::vector<HGDIOBJ> made;
  {
    ScreenDc dc(screen.hDC(), screen.hwnd());
    stockPen = ::GetCurrentObject(dc.Get(), OBJ_PEN);
    ASSERT_TRUE(screen.SetColors(dc));
    EXPECT_EQ(::GetBkColor(dc.Get()), ::GetSysColor(COLOR_BTNFACE)) << "system colours are drawn translated";
    EXPECT_EQ(::GetTextColor(dc.Get()), 0x000000FFu);
    LOGPEN pen{};
    ::GetObjectA(::GetCurrentObject(dc.Get(), OBJ_PEN), sizeof pen, &pen);
    EXPECT_EQ(pen.lopnColor, 0x0000FF00u);
    EXPECT_EQ(pen.lopnWidth.x, 3);
    LOGBRUSH brush{};
    ::GetObjectA(::GetCurrentObject(dc.Get(), OBJ_BRUSH), sizeof brush, &brush);
    EXPECT_EQ(brush.lbColor, 0x00FF0000u);
    EXPECT_EQ(brush.lbStyle, static_cast<UINT>(BS_SOLID));
    made = {::GetCurrentObject(dc.Get(), OBJ_PEN), ::GetCurrentObject(dc.Get(), OBJ_BRUSH)};

    ASSERT_TRUE(screen.SetColors(dc));
    EXPECT_TRUE(IsDeleted(made[0]) && IsDeleted(made[1])) << "the second pen and brush replace the first";
    ASSERT_TRUE(screen.SetDisplayFont(dc, screen.GetFont(dc.Get(), screen.FontRecord())));
    made = {::GetCurrentObject(dc.Get(), OBJ_PEN), ::GetCurrentObject(dc.Get(), OBJ_BRUSH),
            ::GetCurrentObject(dc.Get(), OBJ_FONT)};
    for (HGDIOBJ object : made) EXPECT_FALSE(IsDeleted(object));
    EXPECT_EQ(Raised([&] { screen.SetDisplayFont(dc, Font()); }).Description(),
              "Invalid Font Handle Specified");
  }
  for (HGDIOBJ object : made) EXPECT_TRUE(IsDeleted(object));
  WindowDC again(nullptr);
  EXPECT_EQ(::GetCurrentObject(again.Get(), OBJ_PEN), stockPen);

  ScreenDc none(nullptr, nullptr);
  const RuntimeError e = Raised([&] { screen.SetColors(none); });
  EXPECT_EQ(e.Source(), "win32_screen.cScreen.SetDisplayFont");
  EXPECT_EQ(e.Description(), "Invalid DC Specified");
}

TEST(ScreenShell, CreatingAndDestroyingLeavesNoGdiObjects) {
  { clsScreen warmUp; }
  const unsigned before = test::GdiObjectsInUse();
  for (int i = 0; i < 1000; ++i) {
    clsScreen screen;
    ASSERT_EQ(screen.Width(), 1024.0f);
  }
  EXPECT_LT(test::GdiObjectsInUse(), before + 100) << "one object left per screen would add 1000";
}

void DrawRedOnTheScreen() {
  WindowDC dc(nullptr);
  Brush red(::CreateSolidBrush(RGB(255, 0, 0)));
  const RECT area{450, 350, 550, 450};
  ::FillRect(dc.Get(), &area, red.Get());
}

// What is drawn straight onto the screen is painted over by Clear and when
// a screen object is released: a green window shows it.
TEST(ScreenShell, ReleaseRepaintsTheDesktop) {
  const test::ColourWindow green(RGB(0, 255, 0), RECT{400, 300, 600, 500});
  ASSERT_EQ(ScreenPixel(500, 400), RGB(0, 255, 0));

  auto screen = std::make_unique<clsScreen>();
  DrawRedOnTheScreen();
  ASSERT_EQ(ScreenPixel(500, 400), RGB(255, 0, 0));
  EXPECT_TRUE(screen->Clear(false));
  EXPECT_EQ(ScreenPixel(500, 400), RGB(0, 255, 0));

  DrawRedOnTheScreen();
  ASSERT_EQ(ScreenPixel(500, 400), RGB(255, 0, 0));
  screen.reset();
  EXPECT_EQ(ScreenPixel(500, 400), RGB(0, 255, 0));
}

// A window of the test's own that counts the messages it is sent.
LRESULT CALLBACK CountingProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == WM_APP + 7) {
    ++*reinterpret_cast<int*>(::GetWindowLongPtrA(hwnd, GWLP_USERDATA));
    return 0;
  }
  return ::DefWindowProcA(hwnd, msg, wParam, lParam);
}

// The program releases its screen object while it shuts down; a message it
// had queued (a tray click, a command) must not run then. Clear and the
// release repaint without dispatching anything, and the message is still
// waiting for the loop that owns it.
TEST(ScreenShell, ClearAndReleaseDispatchNoneOfTheQueuedMessages) {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = CountingProc;
  windowClass.hInstance = ::GetModuleHandleA(nullptr);
  windowClass.lpszClassName = "QmScreenTestCounting";
  ::RegisterClassA(&windowClass);
  HWND window = ::CreateWindowExA(0, "QmScreenTestCounting", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                  windowClass.hInstance, nullptr);
  ASSERT_TRUE(window);
  int dispatched = 0;
  ::SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&dispatched));

  auto screen = std::make_unique<clsScreen>();
  ::PostMessageA(window, WM_APP + 7, 1, 0);
  EXPECT_TRUE(screen->Clear(false));
  ::PostMessageA(window, WM_APP + 7, 2, 0);
  screen.reset();
  EXPECT_EQ(dispatched, 0);

  MSG msg;
  ASSERT_TRUE(::PeekMessageA(&msg, window, WM_APP + 7, WM_APP + 7, PM_REMOVE));
  EXPECT_EQ(msg.wParam, 1u);
  ASSERT_TRUE(::PeekMessageA(&msg, window, WM_APP + 7, WM_APP + 7, PM_REMOVE));
  EXPECT_EQ(msg.wParam, 2u);
  ::DestroyWindow(window);
}

// The program's own twips arithmetic agrees with the system's MulDiv, and
// its logical inch is the screen DC's.
TEST(ScreenShell, TwipsArithmeticAgreesWithTheSystem) {
  for (int dpi : {72, 96, 110, 120, 144, 192}) {
    for (int twips = -3000; twips <= 30000; twips += 1) {
      ASSERT_EQ(TwipsToPixels(twips, dpi), ::MulDiv(twips, dpi, 1440)) << twips << " at " << dpi;
    }
    for (int px = -500; px <= 3000; ++px) ASSERT_EQ(PixelsToTwips(px, dpi), ::MulDiv(px, 1440, dpi)) << px;
  }
  const int odd[][3] = {{7, 1, -2}, {-7, 1, -2}, {-7, 1, 2}, {2000000000, 3, 2}, {5, 3, 0}, {-5, 3, 3}};
  for (const auto& c : odd) EXPECT_EQ(MulDivRound(c[0], c[1], c[2]), ::MulDiv(c[0], c[1], c[2])) << c[0];

  const WindowDC dc(nullptr);
  const Dpi dpi = ScreenLogicalDpi();
  EXPECT_EQ(dpi.x, ::GetDeviceCaps(dc.Get(), LOGPIXELSX));
  EXPECT_EQ(dpi.y, ::GetDeviceCaps(dc.Get(), LOGPIXELSY));
}

TEST(ScreenShell, SystemErrorTextsAreTidy) {
  const std::string text = GetApiErrorText(ERROR_FILE_NOT_FOUND);
  EXPECT_FALSE(text.empty());
  EXPECT_NE(text.back(), '\n');
  EXPECT_EQ(text.find('\0'), std::string::npos);
}

}  // namespace
}  // namespace qm::win32
