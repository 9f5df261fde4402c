// clsScreen on the real (virtual) display under Wine: what it reads of the
// display, the objects it puts into a screen DC, the desktop repainted when
// it is released, and its members that act on the screen (each drawing's
// pixels in a capture, Clear and Refresh, the current position, class
// cursors, the active window and picture objects).
#include "platform/screen_win32.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
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

// The text colours (a system colour translated), the pen of PenWidth and
// the font of the record at the screen's logical inch go into the DC; a font
// record without a name is refused.
TEST(ScreenShell, ColoursPenAndFontGoIntoTheDc) {
  clsScreen screen;
  screen.BackColor_Txt(0x8000000F);
  screen.ForeColor_Txt(0x000000FF);
  screen.ForeColor_Scr(0x0000FF00);
  screen.PenWidth(3);
  ScreenDc dc(screen.hDC(), screen.hwnd());
  ASSERT_TRUE(screen.SetColors(dc));
  EXPECT_EQ(::GetBkColor(dc.Get()), ::GetSysColor(COLOR_BTNFACE));
  EXPECT_EQ(::GetTextColor(dc.Get()), 0x000000FFu);
  LOGPEN pen{};
  ::GetObjectA(::GetCurrentObject(dc.Get(), OBJ_PEN), sizeof pen, &pen);
  EXPECT_EQ(pen.lopnColor, 0x0000FF00u);
  EXPECT_EQ(pen.lopnWidth.x, 3);

  const RuntimeError e = Raised([&] { screen.GetFont(dc.Get(), ScreenFont{""}); });
  EXPECT_EQ(e.Source(), "win32_screen.cScreen.GetFont");
  EXPECT_EQ(e.Number(), -1);
  EXPECT_EQ(e.Description(), "Invalid Font Name Specified");
  EXPECT_EQ(Raised([&] { screen.SetDisplayFont(dc, Font()); }).Description(),
            "Invalid Font Handle Specified");
  ASSERT_TRUE(screen.SetDisplayFont(dc, screen.GetFont(dc.Get(), ScreenFont{"Arial", 12, true, true})));
  LOGFONTA font{};
  ::GetObjectA(::GetCurrentObject(dc.Get(), OBJ_FONT), sizeof font, &font);
  EXPECT_EQ(font.lfHeight, -::MulDiv(12, ::GetDeviceCaps(dc.Get(), LOGPIXELSY), 72));
  EXPECT_EQ(font.lfWeight, 700);
  EXPECT_TRUE(font.lfItalic);
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

// Cell i of a grid of 100-pixel cells on the backdrop.
RECT Cell(int i) {
  const int left = 110 + (i % 5) * 120;
  const int top = 110 + (i / 5) * 125;
  return RECT{left, top, left + 100, top + 100};
}

// The flasher releases its screen object as the program shuts down: what
// was drawn straight onto the screen is painted over, and a window message
// the program had queued (a tray click, a command) does not run meanwhile.
TEST(ScreenShell, ReleaseRepaintsTheDesktopAndLeavesQueuedMessagesQueued) {
  const Backdrop backdrop;
  auto screen = std::make_unique<clsScreen>();
  const RECT cell = Cell(0);
  ::FillRect(WindowDC(nullptr).Get(), &cell, Brush(::CreateSolidBrush(RGB(255, 0, 0))).Get());
  ASSERT_EQ(CountScreenColour(Cell(0), RGB(255, 0, 0)), 100 * 100);
  ::PostThreadMessageA(::GetCurrentThreadId(), WM_APP + 7, 1, 0);
  screen.reset();
  EXPECT_EQ(CountScreenColour(Cell(0), RGB(0, 255, 0)), 100 * 100);
  MSG msg;
  ASSERT_TRUE(::PeekMessageA(&msg, reinterpret_cast<HWND>(-1), WM_APP + 7, WM_APP + 7, PM_REMOVE));
  EXPECT_EQ(msg.wParam, 1u);
}

// A bitmap of one colour.
Bitmap SolidBitmap(int width, int height, COLORREF colour) {
  WindowDC screen(nullptr);
  Bitmap bitmap(::CreateCompatibleBitmap(screen.Get(), width, height));
  MemoryDC memory(screen.Get());
  SelectGuard selected(memory.Get(), bitmap.Get());
  Brush brush(::CreateSolidBrush(colour));
  const RECT all{0, 0, width, height};
  ::FillRect(memory.Get(), &all, brush.Get());
  return bitmap;
}

// Each drawing member leaves the pixels its shape has, in its colour; Clear
// paints them over and keeps the history, Refresh draws each again in its
// own colours, and Clear forgetting the history leaves nothing to redraw.
TEST(ScreenDrawingShell, EachShapeLeavesItsPixelsClearRemovesThemRefreshRestoresThem) {
  const Backdrop backdrop;
  clsScreen screen;
  screen.EnableRefresh(true);
  screen.BackColor_Txt(RGB(255, 255, 255));
  const HBITMAP bitmap = SolidBitmap(30, 20, RGB(200, 0, 200)).Release();
  Picture picture = clsScreen::PictureFromHandle(bitmap, nullptr);
  const Bitmap stretched = SolidBitmap(20, 10, RGB(0, 200, 200));

  std::vector<COLORREF> colours;
  std::vector<int> pixels;
  const auto draw = [&](COLORREF colour, int least, int most, const std::function<bool(int, int)>& shape) {
    const RECT cell = Cell(static_cast<int>(colours.size()));
    screen.ForeColor_Scr(colour);
    screen.BackColor_Scr(colour);
    screen.ForeColor_Txt(colour);
    EXPECT_TRUE(shape(cell.left, cell.top)) << "shape " << colours.size();
    colours.push_back(colour);
    pixels.push_back(CountScreenColour(cell, colour));
    EXPECT_TRUE(pixels.back() >= least && pixels.back() <= most)
        << "shape " << colours.size() - 1 << ": " << pixels.back();
  };
  const auto counts = [&] {
    std::vector<int> now;
    for (std::size_t i = 0; i < colours.size(); ++i)
      now.push_back(CountScreenColour(Cell(static_cast<int>(i)), colours[i]));
    return now;
  };
  // A quarter circle of radius 30 is about 47 pixels long.
  draw(RGB(255, 0, 0), 35, 70,
       [&](int x, int y) { return screen.DrawArc(x + 50, y + 50, 30, x + 80, y + 50, 0, 90); });
  // 60 pixels across: pi * 30 * 30 = 2827, and half of it.
  draw(RGB(0, 0, 255), 2650, 3000,
       [&](int x, int y) { return screen.DrawEllipse(x + 20, y + 20, x + 80, y + 80); });
  draw(RGB(255, 128, 0), 1300, 1560, [&](int x, int y) {
    return screen.DrawHalfCircle(x + 20, y + 20, x + 80, y + 80, x + 80, y + 50, x + 20, y + 50);
  });
  draw(RGB(128, 0, 0), 80, 80, [&](int x, int y) { return screen.DrawLine(x + 10, y + 50, x + 90, y + 50); });
  // A picture object at its own size, and a bitmap stretched to 40 x 20.
  draw(RGB(200, 0, 200), 600, 600,
       [&](int x, int y) { return screen.DrawPicture(x, y, "", picture, nullptr, 0, 0, false); });
  draw(RGB(0, 200, 200), 800, 800,
       [&](int x, int y) { return screen.DrawPicture(x, y, "", nullptr, stretched.Get(), 40, 20, true); });
  // 90 degrees counter-clockwise from three o'clock: a quarter of a circle
  // 100 pixels across (1963); the other way round it would be three.
  draw(RGB(128, 0, 255), 1850, 2150,
       [&](int x, int y) { return screen.DrawPie(x, y, x + 100, y + 100, 90, false, 0, 0, 0, 0); });
  // Half of 80 x 80, and its outline.
  draw(RGB(0, 0, 128), 3100, 3450, [&](int x, int y) {
    return screen.DrawPolygon({x + 10, x + 90, x + 50}, {y + 90, y + 90, y + 10}, 3);
  });
  draw(RGB(128, 128, 0), 159, 161, [&](int x, int y) {
    return screen.DrawPolyline(x + 10, y + 10, {x + 90, x + 90}, {y + 10, y + 90}, 2);
  });
  draw(RGB(255, 255, 0), 2500, 2500,
       [&](int x, int y) { return screen.DrawRectangle(x + 10, y + 10, x + 60, y + 60, true, false); });
  draw(RGB(0, 128, 128), 196, 196,
       [&](int x, int y) { return screen.DrawRectangle(x + 10, y + 10, x + 60, y + 60, false, true); });
  draw(RGB(64, 0, 128), 20, 600,
       [&](int x, int y) { return screen.drawText("Quill", x + 5, y + 40, false); });
  ASSERT_EQ(screen.History().Count(), colours.size());

  ASSERT_TRUE(screen.Clear(false));
  EXPECT_EQ(counts(), std::vector<int>(colours.size(), 0)) << "all painted over";
  const ScreenColors before = screen.Colors();
  ASSERT_TRUE(screen.Refresh());
  EXPECT_EQ(counts(), pixels) << "each drawn again in its own colour";
  EXPECT_EQ(screen.Colors(), before);
  EXPECT_EQ(screen.History().Count(), colours.size()) << "a refresh records nothing";

  ASSERT_TRUE(screen.Clear(true));
  EXPECT_TRUE(screen.Refresh());
  EXPECT_EQ(counts()[0], 0) << "nothing left to draw again";
  picture.reset();
  EXPECT_EQ(::GetObjectType(bitmap), 0u) << "the picture owned its bitmap, and the history let it go";
}

// A picture file that is not there is refused; one that is no picture is
// recorded, fails to load, and fails the Refresh that comes to it.
TEST(ScreenDrawingShell, DrawPictureRefusesAMissingFileAndFailsOnAFileThatIsNoPicture) {
  clsScreen screen;
  screen.EnableRefresh(true);
  EXPECT_FALSE(screen.DrawPicture(0, 0, "C:\\no such folder\\none.bmp", nullptr, nullptr, 0, 0, false));
  ASSERT_TRUE(screen.LastError());
  EXPECT_EQ(screen.LastError()->Description(), "Specified picture could not be found.");

  const std::string junk = (std::filesystem::temp_directory_path() / "qm_screen_junk.bmp").string();
  std::ofstream(junk) << "not a picture";
  EXPECT_FALSE(screen.DrawPicture(0, 0, junk, nullptr, nullptr, 0, 0, false));
  EXPECT_EQ(screen.LastError()->Source(), "win32_screen.cScreen.DrawPicture(LoadPicture)");
  EXPECT_EQ(screen.History().Count(), 1u) << "only the file that is there";
  EXPECT_FALSE(screen.Refresh());
  std::filesystem::remove(junk);
}

TEST(ScreenDrawingShell, CurrentPositionIsReadWithoutMovingIt) {
  clsScreen screen;
  ScreenDc dc(screen.hDC(), screen.hwnd());
  ASSERT_TRUE(screen.SetCurrentXY(dc.Get(), 37, 41));
  std::int32_t x = 0, y = 0;
  ASSERT_TRUE(screen.GetCurrentXY(dc.Get(), x, y));
  EXPECT_EQ(std::pair(x, y), std::pair(37, 41));
  POINT system{};
  ::GetCurrentPositionEx(dc.Get(), &system);
  EXPECT_EQ(std::pair(system.x, system.y), std::pair(37L, 41L)) << "still there after reading it";

  const RuntimeError e = Raised([&] { screen.GetCurrentXY(nullptr, x, y); });
  EXPECT_EQ(e.Source(), "win32_screen.cScreen.SetDisplayFont");
  EXPECT_EQ(e.Description(), "Invalid DC Specified");
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

// A cursor file: the header and one directory entry (32 x 32, hot spot
// (1, 1), 304 bytes at offset 22), then its one-bit bitmap, black and opaque.
void WriteCursorFile(const std::string& path) {
  const unsigned char head[22] = {0, 0, 2, 0, 1, 0, 32, 32, 0, 0, 1, 0, 1, 0, 48, 1, 0, 0, 22, 0, 0, 0};
  const struct {
    BITMAPINFOHEADER header{sizeof(BITMAPINFOHEADER), 32, 64, 1, 1, BI_RGB, 0, 0, 0, 0, 0};
    DWORD palette[2] = {0x000000, 0xFFFFFF}, image[32] = {}, mask[32] = {};
  } bitmap;
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(head), sizeof head);
  file.write(reinterpret_cast<const char*>(&bitmap), sizeof bitmap);
}

// Each standard cursor set as a class cursor reads back as itself (or as
// one the system gives the same handle); code 1 sets the MouseIcon file's
// cursor, which reads back as 1 and is destroyed when a standard one
// replaces it.
TEST(ScreenCursorsShell, MousePointerSetsAndReadsTheClassCursor) {
  const ProgramWindow window(WS_POPUP | WS_VISIBLE);
  clsScreen screen;
  for (std::int32_t id : kStandardCursorIds) {
    ASSERT_TRUE(screen.MousePointer(window.Hwnd(), id)) << id;
    const std::int32_t read = screen.MousePointer(window.Hwnd());
    EXPECT_EQ(::LoadCursorA(nullptr, MAKEINTRESOURCEA(read)), ::LoadCursorA(nullptr, MAKEINTRESOURCEA(id)))
        << id << " read as " << read;
  }

  EXPECT_FALSE(screen.MousePointer(window.Hwnd(), 1)) << "no cursor file yet";
  const std::string cursorFile = (std::filesystem::temp_directory_path() / "qm_screen_hand.cur").string();
  WriteCursorFile(cursorFile);
  screen.MouseIcon(cursorFile + ".missing.cur");
  EXPECT_EQ(screen.MouseIcon(), "") << "a file that does not open is passed over";
  screen.MouseIcon(cursorFile);
  ASSERT_TRUE(screen.MousePointer(window.Hwnd(), 1));
  const HCURSOR fromFile = reinterpret_cast<HCURSOR>(::GetClassLongPtrA(window.Hwnd(), GCLP_HCURSOR));
  ICONINFO icon{};
  ASSERT_TRUE(::GetIconInfo(fromFile, &icon)) << "the class has the file's cursor";
  ::DeleteObject(icon.hbmMask);
  EXPECT_EQ(screen.MousePointer(window.Hwnd()), 1) << "none of the standard cursors";
  ASSERT_TRUE(screen.MousePointer(window.Hwnd(), 32512));
  EXPECT_FALSE(::GetIconInfo(fromFile, &icon)) << "the replaced file cursor is gone";
  EXPECT_TRUE(::GetIconInfo(::LoadCursorA(nullptr, IDC_ARROW), &icon)) << "the system's arrow stays";
  std::filesystem::remove(cursorFile);
}

// The program's top-level windows are its forms while they exist:
// ActiveForm is the active one, ActiveControl the window in it that has the
// focus.
TEST(ScreenActiveShell, ActiveWindowObjectFormAndControl) {
  clsScreen screen;
  EXPECT_FALSE(screen.AttachThread(nullptr, true));
  auto form = std::make_unique<ProgramWindow>(WS_OVERLAPPEDWINDOW | WS_VISIBLE);
  const ProgramWindow control(WS_CHILD | WS_VISIBLE, form->Hwnd());
  const HWND hwnd = form->Hwnd();

  EXPECT_TRUE(screen.AttachThread(hwnd, true)) << "a window of this thread";
  ::SetForegroundWindow(hwnd);
  ::SetActiveWindow(hwnd);
  ::SetFocus(control.Hwnd());
  ASSERT_EQ(::GetActiveWindow(), hwnd);
  EXPECT_EQ(screen.ActiveWindow(), ::GetForegroundWindow());
  EXPECT_EQ(screen.ActiveObject(), control.Hwnd());
  EXPECT_EQ(screen.ActiveForm(), hwnd);
  EXPECT_EQ(screen.ActiveControl(), control.Hwnd());
  ::SetFocus(hwnd);
  EXPECT_EQ(screen.ActiveControl(), nullptr) << "the form itself has the focus";
  const test::ColourWindow other(RGB(0, 0, 0), RECT{300, 300, 400, 400}, 0);
  ::SetActiveWindow(other.Hwnd());
  EXPECT_EQ(screen.ActiveForm(), nullptr) << "not one of the program's forms";

  form.reset();
  EXPECT_EQ(std::count(LoadedForms().begin(), LoadedForms().end(), hwnd), 0)
      << "a form leaves when destroyed";
}

}  // namespace
}  // namespace qm::win32
