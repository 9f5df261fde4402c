// clsScreen on the real (virtual) display under Wine: what creating one
// reads of the display and puts into its DC, the desktop repainted when it
// is released, and one check of each family of members the program does not
// call (drawing with Clear and Refresh, class cursors, the active form).
#include "platform/screen_win32.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "../../support/test_helpers_win32.h"
#include "platform/ansi_text.h"
#include "platform/window_win32.h"

namespace qm::win32 {
namespace {

using test::CountScreenColour;

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

// What creating one reads: the flasher's Width and Height, the twips ratio
// from the physical size, the devices, and the installed fonts listed once
// however often they are read.
TEST(ScreenShell, CreatingOneReadsTheDisplay) {
  clsScreen screen;
  WindowDC dc(nullptr);
  EXPECT_EQ(screen.Width(), 1024.0f) << "the test display is 1024 x 768";
  EXPECT_EQ(screen.Height(), 768.0f);
  EXPECT_FLOAT_EQ(screen.TwipsPerPixelY(),
                  static_cast<float>(56.7 * ::GetDeviceCaps(dc.Get(), VERTSIZE) / 768));
  EXPECT_TRUE(screen.BitsPerPixel() == 32 || screen.BitsPerPixel() == 24) << screen.BitsPerPixel();
  ASSERT_GE(screen.DisplayDevice_Count(), 1);
  EXPECT_EQ(screen.DisplayDevice_Name(0).rfind("\\\\.\\DISPLAY", 0), 0u) << screen.DisplayDevice_Name(0);

  const std::int32_t fonts = clsScreen::FontsCount();
  int arial = 0;
  for (std::int32_t i = 0; i < fonts; ++i) arial += EqualsNoCase(screen.Fonts(i), "Arial") ? 1 : 0;
  EXPECT_EQ(arial, 1);
  EXPECT_TRUE(screen.RefreshDisplayInfo());
  clsScreen second;
  EXPECT_EQ(clsScreen::FontsCount(), fonts) << "a refresh lists the fonts again, without repeats";
  EXPECT_EQ(Raised([&] { screen.Fonts(fonts); }).Number(), kErrSubscriptOutOfRange);

  const std::string text = GetApiErrorText(ERROR_FILE_NOT_FOUND);
  EXPECT_TRUE(!text.empty() && text.back() != '\n') << "the system's text, tidied: " << text;
}

// The text colours (a system colour translated) and the font of the record
// at the screen's logical inch go into the DC.
TEST(ScreenShell, ColoursAndFontGoIntoTheDc) {
  clsScreen screen;
  screen.BackColor_Txt(0x8000000F);
  ScreenDc dc(screen.hDC(), screen.hwnd());
  ASSERT_TRUE(screen.SetColors(dc));
  EXPECT_EQ(::GetBkColor(dc.Get()), ::GetSysColor(COLOR_BTNFACE));
  ASSERT_TRUE(screen.SetDisplayFont(dc, screen.GetFont(dc.Get(), ScreenFont{"Arial", 12, true})));
  LOGFONTA font{};
  ::GetObjectA(::GetCurrentObject(dc.Get(), OBJ_FONT), sizeof font, &font);
  EXPECT_EQ(font.lfHeight, -::MulDiv(12, ::GetDeviceCaps(dc.Get(), LOGPIXELSY), 72));
  EXPECT_EQ(font.lfWeight, 700);
  EXPECT_STREQ(font.lfFaceName, "Arial");
}

// The pens, brushes and fonts a screen object and its drawings make are
// all freed, and each DC gets its own objects back before it is released.
TEST(ScreenShell, CreatingDrawingAndDestroyingLeaveNoGdiObjects) {
  { clsScreen warmUp; }
  const unsigned before = test::GdiObjectsInUse();
  for (int i = 0; i < 1000; ++i) {
    clsScreen screen;
    screen.drawText("x", 0, 0, false);
  }
  EXPECT_LT(test::GdiObjectsInUse(), before + 100) << "one object left each time would add 1000";
}

// A green window under the drawings: a desktop repaint shows on it.
struct Backdrop : test::ColourWindow {
  Backdrop() : ColourWindow(RGB(0, 255, 0), RECT{100, 100, 740, 500}) {}
};

// A 100-pixel square on the backdrop.
constexpr RECT kCell{110, 110, 210, 210};

// The flasher releases its screen object as the program shuts down: what
// was drawn straight onto the screen is painted over, and a window message
// the program had queued (a tray click, a command) does not run meanwhile.
TEST(ScreenShell, ReleaseRepaintsTheDesktopAndLeavesQueuedMessagesQueued) {
  const Backdrop backdrop;
  auto screen = std::make_unique<clsScreen>();
  ::FillRect(WindowDC(nullptr).Get(), &kCell, Brush(::CreateSolidBrush(RGB(255, 0, 0))).Get());
  ASSERT_EQ(CountScreenColour(kCell, RGB(255, 0, 0)), 100 * 100);
  ::PostThreadMessageA(::GetCurrentThreadId(), WM_APP + 7, 1, 0);
  screen.reset();
  EXPECT_EQ(CountScreenColour(kCell, RGB(0, 255, 0)), 100 * 100);
  MSG msg;
  ASSERT_TRUE(::PeekMessageA(&msg, reinterpret_cast<HWND>(-1), WM_APP + 7, WM_APP + 7, PM_REMOVE));
  EXPECT_EQ(msg.wParam, 1u);
}

// A drawing leaves its pixels; Clear paints them over and keeps the
// history, which Refresh draws again.
TEST(ScreenDrawingShell, DrawRectangleClearAndRefreshSmoke) {
  const Backdrop backdrop;
  clsScreen screen;
  screen.EnableRefresh(true);
  screen.ForeColor_Scr(RGB(255, 255, 0));
  screen.BackColor_Scr(RGB(255, 255, 0));
  ASSERT_TRUE(screen.DrawRectangle(120, 120, 170, 170, true, false));
  EXPECT_EQ(CountScreenColour(kCell, RGB(255, 255, 0)), 2500);
  ASSERT_TRUE(screen.Clear(false));
  EXPECT_EQ(CountScreenColour(kCell, RGB(255, 255, 0)), 0);
  ASSERT_TRUE(screen.Refresh());
  EXPECT_EQ(CountScreenColour(kCell, RGB(255, 255, 0)), 2500);
}

// A window of the program's own kind, top-level (one of its forms) or a
// child, its class made with the arrow cursor.
class ProgramWindow final : public Window {
 public:
  explicit ProgramWindow(DWORD style, HWND parent = nullptr) {
    CreateArgs args;
    args.className = "QmScreenProgramWindow";
    args.style = style;
    args.x = args.y = 10;
    args.width = args.height = 200;
    args.parent = parent;
    Create(args);
  }
};

// MousePointer sets and reads a class cursor; ActiveForm is the program's
// active top-level window.
TEST(ScreenCursorsShell, MousePointerAndActiveFormSmoke) {
  const ProgramWindow form(WS_OVERLAPPEDWINDOW | WS_VISIBLE);
  clsScreen screen;
  ASSERT_TRUE(screen.MousePointer(form.Hwnd(), 32515));
  EXPECT_EQ(screen.MousePointer(form.Hwnd()), 32515);
  ::SetForegroundWindow(form.Hwnd());
  ::SetActiveWindow(form.Hwnd());
  EXPECT_EQ(screen.ActiveForm(), form.Hwnd());
}

}  // namespace
}  // namespace qm::win32
