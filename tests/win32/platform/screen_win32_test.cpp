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

bool IsDeleted(HGDIOBJ object) {
  return ::GetObjectType(object) == 0;
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
  EXPECT_EQ(screen.hwnd(), ::GetDesktopWindow());
  ASSERT_GE(screen.DisplayDevice_Count(), 1);
  EXPECT_EQ(screen.DisplayDevice_Name(0).rfind("\\\\.\\DISPLAY", 0), 0u) << screen.DisplayDevice_Name(0);
  EXPECT_EQ(Raised([&] { screen.DisplayDevice_Name(screen.DisplayDevice_Count()); }).Number(),
            kErrSubscriptOutOfRange);

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

TEST(ScreenShell, GetFontChecksItsRecordThenMakesTheFont) {
  clsScreen screen;
  WindowDC dc(nullptr);
  const RuntimeError e = Raised([&] { screen.GetFont(dc.Get(), ScreenFont{""}); });
  EXPECT_EQ(e.Source(), "win32_screen.cScreen.GetFont");
  EXPECT_EQ(e.Number(), -1);
  EXPECT_EQ(e.Description(), "Invalid Font Name Specified");
  const ScreenFont font{"Arial", 12, true, true};
  EXPECT_EQ(Raised([&] { screen.GetFont(nullptr, font); }).Description(), "Invalid DC Specified");

  const Font made = screen.GetFont(dc.Get(), font);
  LOGFONTA described{};
  ASSERT_EQ(::GetObjectA(made.Get(), sizeof described, &described), static_cast<int>(sizeof described));
  EXPECT_EQ(described.lfHeight, -::MulDiv(12, ::GetDeviceCaps(dc.Get(), LOGPIXELSY), 72));
  EXPECT_EQ(described.lfWeight, 700);
  EXPECT_TRUE(described.lfItalic);
  EXPECT_STREQ(described.lfFaceName, "Arial");
}

// Text colours (a system colour translated), the pen and the brush go into
// the DC; each new pen and brush frees the one before, and the end of the
// DC's scope frees the last and gives the DC its own back.
TEST(ScreenShell, ColoursPenBrushAndFontGoIntoTheDcAndComeOutAgain) {
  clsScreen screen;
  screen.BackColor_Txt(0x8000000F);
  screen.ForeColor_Txt(0x000000FF);
  screen.ForeColor_Scr(0x0000FF00);
  screen.PenWidth(3);
  HGDIOBJ stockPen = nullptr;
  std::vector<HGDIOBJ> made;
  {
    ScreenDc dc(screen.hDC(), screen.hwnd());
    stockPen = ::GetCurrentObject(dc.Get(), OBJ_PEN);
    ASSERT_TRUE(screen.SetColors(dc));
    EXPECT_EQ(::GetBkColor(dc.Get()), ::GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(::GetTextColor(dc.Get()), 0x000000FFu);
    LOGPEN pen{};
    ::GetObjectA(::GetCurrentObject(dc.Get(), OBJ_PEN), sizeof pen, &pen);
    EXPECT_EQ(pen.lopnColor, 0x0000FF00u);
    EXPECT_EQ(pen.lopnWidth.x, 3);
    made = {::GetCurrentObject(dc.Get(), OBJ_PEN), ::GetCurrentObject(dc.Get(), OBJ_BRUSH)};

    ASSERT_TRUE(screen.SetColors(dc));
    EXPECT_TRUE(IsDeleted(made[0]) && IsDeleted(made[1])) << "the second pen and brush replace the first";
    ASSERT_TRUE(screen.SetDisplayFont(dc, screen.GetFont(dc.Get(), screen.FontRecord())));
    made = {::GetCurrentObject(dc.Get(), OBJ_PEN), ::GetCurrentObject(dc.Get(), OBJ_BRUSH),
            ::GetCurrentObject(dc.Get(), OBJ_FONT)};
    EXPECT_EQ(Raised([&] { screen.SetDisplayFont(dc, Font()); }).Description(),
              "Invalid Font Handle Specified");
  }
  for (HGDIOBJ object : made) EXPECT_TRUE(IsDeleted(object));
  WindowDC again(nullptr);
  EXPECT_EQ(::GetCurrentObject(again.Get(), OBJ_PEN), stockPen);
}

TEST(ScreenShell, CreatingAndDestroyingLeavesNoGdiObjects) {
  { clsScreen warmUp; }
  const unsigned before = test::GdiObjectsInUse();
  for (int i = 0; i < 1000; ++i) clsScreen screen;
  EXPECT_LT(test::GdiObjectsInUse(), before + 100) << "one object left per screen would add 1000";
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

  struct Drawn {
    COLORREF colour;
    int pixels;
  };
  std::vector<Drawn> drawn;
  const auto draw = [&](COLORREF colour, int least, int most, const std::function<bool(int, int)>& shape) {
    const RECT cell = Cell(static_cast<int>(drawn.size()));
    screen.ForeColor_Scr(colour);
    screen.BackColor_Scr(colour);
    screen.ForeColor_Txt(colour);
    EXPECT_TRUE(shape(cell.left, cell.top)) << "shape " << drawn.size();
    drawn.push_back({colour, CountScreenColour(cell, colour)});
    EXPECT_GE(drawn.back().pixels, least) << "shape " << drawn.size() - 1;
    EXPECT_LE(drawn.back().pixels, most) << "shape " << drawn.size() - 1;
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
  ASSERT_EQ(screen.History().Count(), drawn.size());

  ASSERT_TRUE(screen.Clear(false));
  for (std::size_t i = 0; i < drawn.size(); ++i) {
    EXPECT_EQ(CountScreenColour(Cell(static_cast<int>(i)), drawn[i].colour), 0)
        << "shape " << i << " cleared";
  }
  const ScreenColors before = screen.Colors();
  ASSERT_TRUE(screen.Refresh());
  for (std::size_t i = 0; i < drawn.size(); ++i) {
    EXPECT_EQ(CountScreenColour(Cell(static_cast<int>(i)), drawn[i].colour), drawn[i].pixels)
        << "shape " << i << " drawn again in its own colour";
  }
  EXPECT_EQ(screen.Colors(), before);
  EXPECT_EQ(screen.History().Count(), drawn.size()) << "a refresh records nothing";

  ASSERT_TRUE(screen.Clear(true));
  EXPECT_TRUE(screen.Refresh());
  EXPECT_EQ(CountScreenColour(Cell(0), drawn[0].colour), 0) << "nothing left to draw again";
  picture.reset();
  EXPECT_TRUE(IsDeleted(bitmap)) << "the picture owned its bitmap, and the history let it go";
}

// A picture file that is not there is refused; one that is no picture is
// recorded, fails to load, and fails the Refresh that comes to it.
TEST(ScreenDrawingShell, DrawPictureRefusesAMissingFileAndFailsOnAFileThatIsNoPicture) {
  clsScreen screen;
  screen.EnableRefresh(true);
  EXPECT_FALSE(screen.DrawPicture(0, 0, "C:\\no such folder\\none.bmp", nullptr, nullptr, 0, 0, false));
  ASSERT_TRUE(screen.LastError());
  EXPECT_EQ(screen.LastError()->Description(), "Specified picture could not be found.");
  EXPECT_EQ(screen.History().Count(), 0u);

  const std::string junk = (std::filesystem::temp_directory_path() / "qm_screen_junk.bmp").string();
  std::ofstream(junk) << "not a picture";
  EXPECT_FALSE(screen.DrawPicture(0, 0, junk, nullptr, nullptr, 0, 0, false));
  EXPECT_EQ(screen.LastError()->Source(), "win32_screen.cScreen.DrawPicture(LoadPicture)");
  EXPECT_EQ(screen.History().Count(), 1u);
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

// A 32 x 32 black cursor file, hot spot at (1, 1).
void WriteCursorFile(const std::string& path) {
#pragma pack(push, 1)
  struct {
    WORD reserved = 0, type = 2, count = 1;
    BYTE width = 32, height = 32, colours = 0, unused = 0;
    WORD hotX = 1, hotY = 1;
    DWORD bytes = sizeof(BITMAPINFOHEADER) + 8 + 256, offset = 22;
    BITMAPINFOHEADER header{sizeof(BITMAPINFOHEADER), 32, 64, 1, 1, BI_RGB, 0, 0, 0, 0, 0};
    DWORD palette[2] = {0x000000, 0xFFFFFF};
    DWORD image[32] = {}, mask[32] = {};
  } file;
#pragma pack(pop)
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(&file), sizeof file);
}

// Each standard cursor set as a class cursor reads back as itself (or, where
// the system gives two one handle, as the one tried first); code 1 sets the
// MouseIcon file's cursor, which reads back as 1 and is destroyed when a
// standard one replaces it.
TEST(ScreenCursorsShell, MousePointerSetsAndReadsTheClassCursor) {
  const ProgramWindow window(WS_POPUP | WS_VISIBLE);
  clsScreen screen;
  EXPECT_EQ(screen.MousePointer(window.Hwnd()), 32512) << "the class was made with the arrow";
  for (std::int32_t id : kStandardCursorIds) {
    const HCURSOR system = ::LoadCursorA(nullptr, MAKEINTRESOURCEA(id));
    ASSERT_TRUE(screen.MousePointer(window.Hwnd(), id)) << id;
    EXPECT_EQ(reinterpret_cast<HCURSOR>(::GetClassLongPtrA(window.Hwnd(), GCLP_HCURSOR)), system) << id;
    const std::int32_t read = screen.MousePointer(window.Hwnd());
    EXPECT_EQ(::LoadCursorA(nullptr, MAKEINTRESOURCEA(read)), system) << id << " read as " << read;
    EXPECT_LE(std::find(kStandardCursorIds.begin(), kStandardCursorIds.end(), read),
              std::find(kStandardCursorIds.begin(), kStandardCursorIds.end(), id));
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

// The program's top-level windows are its forms while they exist; a child
// is none. ActiveForm is the active one, ActiveControl the window in it
// that has the focus.
TEST(ScreenActiveShell, ActiveWindowObjectFormAndControl) {
  clsScreen screen;
  EXPECT_FALSE(screen.AttachThread(nullptr, true));
  auto form = std::make_unique<ProgramWindow>(WS_OVERLAPPEDWINDOW | WS_VISIBLE);
  const ProgramWindow control(WS_CHILD | WS_VISIBLE, form->Hwnd());
  const HWND hwnd = form->Hwnd();
  const auto& forms = LoadedForms();
  EXPECT_EQ(std::count(forms.begin(), forms.end(), hwnd), 1);
  EXPECT_EQ(std::count(forms.begin(), forms.end(), control.Hwnd()), 0) << "a child is no form";

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
  EXPECT_EQ(std::count(forms.begin(), forms.end(), hwnd), 0);
  EXPECT_EQ(screen.ActiveForm(), nullptr);
}

}  // namespace
}  // namespace qm::win32
