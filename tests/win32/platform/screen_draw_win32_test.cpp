// clsScreen's members that act on the screen, on the real (virtual)
// display under Wine: what each drawing leaves in a capture of the screen,
// Clear and Refresh, the resolution change, class cursors, the active
// window and picture objects.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "../../support/test_helpers_win32.h"
#include "platform/screen_win32.h"
#include "platform/window_win32.h"

namespace qm::win32 {
namespace {

constexpr COLORREF kGreen = RGB(0, 255, 0);

using test::CountScreenColour;

// A green window under the drawings: Clear's desktop repaint shows on it.
struct Backdrop : test::ColourWindow {
  Backdrop() : ColourWindow(kGreen, RECT{100, 100, 740, 500}) {}
};

// Cell i of a grid of 100-pixel cells on the backdrop.
RECT Cell(int i) {
  const int left = 110 + (i % 5) * 120;
  const int top = 110 + (i / 5) * 125;
  return RECT{left, top, left + 100, top + 100};
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

struct Shape {
  const char* what;
  COLORREF colour;
  std::function<bool(clsScreen&, const RECT&)> draw;
  int least, most;  // pixels of the colour expected in the cell
};

TEST(ScreenDrawingShell, EachShapeLeavesItsPixelsClearRemovesThemRefreshRestoresThem) {
  Backdrop backdrop;
  ASSERT_EQ(CountScreenColour(Cell(0), kGreen), 100 * 100);
  const Bitmap picture = SolidBitmap(20, 10, RGB(200, 0, 200));
  const Bitmap stretched = SolidBitmap(20, 10, RGB(0, 200, 200));

  const std::vector<Shape> shapes = {
      // A quarter circle of radius 30 is about 47 pixels long.
      {"arc", RGB(255, 0, 0),
       [](clsScreen& s, const RECT& c) {
         return s.DrawArc(c.left + 50, c.top + 50, 30, c.left + 80, c.top + 50, 0, 90);
       },
       35, 70},
      // 60 pixels across: pi * 30 * 30 = 2827.
      {"ellipse", RGB(0, 0, 255),
       [](clsScreen& s, const RECT& c) {
         return s.DrawEllipse(c.left + 20, c.top + 20, c.left + 80, c.top + 80);
       },
       2650, 3000},
      {"half circle", RGB(255, 128, 0),
       [](clsScreen& s, const RECT& c) {
         return s.DrawHalfCircle(c.left + 20, c.top + 20, c.left + 80, c.top + 80, c.left + 80, c.top + 50,
                                 c.left + 20, c.top + 50);
       },
       1300, 1560},
      {"line", RGB(128, 0, 0),
       [](clsScreen& s, const RECT& c) {
         return s.DrawLine(c.left + 10, c.top + 50, c.left + 90, c.top + 50);
       },
       80, 80},
      {"picture", RGB(200, 0, 200),
       [&](clsScreen& s, const RECT& c) {
         return s.DrawPicture(c.left + 10, c.top + 10, "", nullptr, picture.Get(), 0, 0, false);
       },
       200, 200},
      {"stretched picture", RGB(0, 200, 200),
       [&](clsScreen& s, const RECT& c) {
         return s.DrawPicture(c.left + 10, c.top + 10, "", nullptr, stretched.Get(), 40, 20, true);
       },
       800, 800},
      // Half of 80 x 80, and its outline.
      {"polygon", RGB(0, 0, 128),
       [](clsScreen& s, const RECT& c) {
         return s.DrawPolygon({c.left + 10, c.left + 90, c.left + 50}, {c.top + 90, c.top + 90, c.top + 10},
                              3);
       },
       3100, 3450},
      {"polyline", RGB(128, 128, 0),
       [](clsScreen& s, const RECT& c) {
         return s.DrawPolyline(c.left + 10, c.top + 10, {c.left + 90, c.left + 90}, {c.top + 10, c.top + 90},
                               2);
       },
       159, 161},
      {"filled rectangle", RGB(255, 255, 0),
       [](clsScreen& s, const RECT& c) {
         return s.DrawRectangle(c.left + 10, c.top + 10, c.left + 60, c.top + 60, true, false);
       },
       2500, 2500},
      {"outlined rectangle", RGB(0, 128, 128),
       [](clsScreen& s, const RECT& c) {
         return s.DrawRectangle(c.left + 10, c.top + 10, c.left + 60, c.top + 60, false, true);
       },
       196, 196},
      {"text", RGB(64, 0, 128),
       [](clsScreen& s, const RECT& c) { return s.drawText("Quill", c.left + 5, c.top + 40, false); }, 20,
       600},
  };

  clsScreen screen;
  screen.EnableRefresh(true);
  screen.BackColor_Txt(RGB(255, 255, 255));
  std::vector<int> drawn;
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    const Shape& shape = shapes[i];
    screen.ForeColor_Scr(shape.colour);
    screen.BackColor_Scr(shape.colour);
    screen.ForeColor_Txt(shape.colour);
    EXPECT_TRUE(shape.draw(screen, Cell(static_cast<int>(i)))) << shape.what;
    drawn.push_back(CountScreenColour(Cell(static_cast<int>(i)), shape.colour));
    EXPECT_GE(drawn.back(), shape.least) << shape.what;
    EXPECT_LE(drawn.back(), shape.most) << shape.what;
  }
  ASSERT_EQ(screen.History().Count(), shapes.size());

  ASSERT_TRUE(screen.Clear(false));
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    EXPECT_EQ(CountScreenColour(Cell(static_cast<int>(i)), shapes[i].colour), 0)
        << shapes[i].what << " cleared";
  }
  EXPECT_EQ(screen.History().Count(), shapes.size()) << "Clear(false) keeps the history";

  const ScreenColors before = screen.Colors();
  ASSERT_TRUE(screen.Refresh());
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    EXPECT_EQ(CountScreenColour(Cell(static_cast<int>(i)), shapes[i].colour), drawn[i])
        << shapes[i].what << " drawn again in its own colour";
  }
  EXPECT_EQ(screen.Colors(), before);
  EXPECT_EQ(screen.History().Count(), shapes.size()) << "a refresh records nothing";

  ASSERT_TRUE(screen.Clear(true));
  EXPECT_EQ(screen.History().Count(), 0u);
  EXPECT_TRUE(screen.Refresh());
  EXPECT_EQ(CountScreenColour(Cell(0), shapes[0].colour), 0) << "nothing left to draw again";
}

TEST(ScreenDrawingShell, PieSliceTurnsCounterClockwiseFromThreeOClock) {
  Backdrop backdrop;
  clsScreen screen;
  const COLORREF violet = RGB(128, 0, 255);
  screen.ForeColor_Scr(violet);
  screen.BackColor_Scr(violet);
  const RECT c = Cell(0);
  ASSERT_TRUE(screen.DrawPie(c.left, c.top, c.left + 100, c.top + 100, 90, false, 0, 0, 0, 0));
  const RECT upperRight{c.left + 50, c.top, c.left + 100, c.top + 51};
  const RECT upperLeft{c.left, c.top, c.left + 49, c.top + 49};
  const RECT lower{c.left, c.top + 52, c.left + 100, c.top + 100};
  EXPECT_GT(CountScreenColour(upperRight, violet), 1800) << "a quarter of a 100-pixel circle is 1963";
  EXPECT_EQ(CountScreenColour(upperLeft, violet), 0);
  EXPECT_EQ(CountScreenColour(lower, violet), 0);

  screen.Clear(false);
  EXPECT_TRUE(screen.DrawPie(c.left, c.top, c.left + 100, c.top + 100, 0, false, 0, 0, 0, 0));
  EXPECT_EQ(CountScreenColour(c, violet), 0) << "a slice of 0 degrees draws nothing";
}

TEST(ScreenDrawingShell, AMissingPictureIsRefusedAndRefreshStopsAtAPictureThatFailsToLoad) {
  Backdrop backdrop;
  clsScreen screen;
  screen.EnableRefresh(true);
  const COLORREF red = RGB(255, 0, 0);
  const COLORREF blue = RGB(0, 0, 255);
  screen.ForeColor_Scr(red);
  screen.BackColor_Scr(red);

  EXPECT_FALSE(screen.DrawPicture(0, 0, "C:\\no such folder\\none.bmp", nullptr, nullptr, 0, 0, false));
  ASSERT_TRUE(screen.LastError());
  EXPECT_EQ(screen.LastError()->Description(), "Specified picture could not be found.");
  EXPECT_EQ(screen.History().Count(), 0u);

  // A file that is there but is no picture: recorded, and it fails to load.
  const std::string junk = (std::filesystem::temp_directory_path() / "qm_screen_junk.bmp").string();
  std::ofstream(junk) << "not a picture";
  const RECT c = Cell(1);
  EXPECT_TRUE(screen.DrawLine(c.left, c.top + 50, c.right, c.top + 50));
  const int line = CountScreenColour(c, red);
  EXPECT_EQ(line, 100);
  EXPECT_FALSE(screen.DrawPicture(c.left, c.top, junk, nullptr, nullptr, 0, 0, false));
  EXPECT_EQ(screen.LastError()->Source(), "win32_screen.cScreen.DrawPicture(LoadPicture)");
  screen.ForeColor_Scr(blue);
  screen.BackColor_Scr(blue);
  EXPECT_TRUE(screen.DrawPie(c.left, c.top, c.right, c.bottom, 180, false, 0, 0, 0, 0));
  EXPECT_EQ(screen.History().Count(), 3u);

  screen.Clear(false);
  ASSERT_EQ(CountScreenColour(c, red) + CountScreenColour(c, blue), 0);
  EXPECT_FALSE(screen.Refresh());
  EXPECT_EQ(CountScreenColour(c, red), line) << "the line comes before the picture";
  EXPECT_EQ(CountScreenColour(c, blue), 0) << "the pie after the failed picture is not reached";
  EXPECT_EQ(screen.LastError()->Source(), "win32_screen.cScreen.DrawPicture(LoadPicture)");
  EXPECT_EQ(screen.ForeColor_Scr(), blue);
  std::filesystem::remove(junk);
}

TEST(ScreenDrawingShell, CurrentPositionIsReadWithoutMovingIt) {
  clsScreen screen;
  ScreenDc dc(screen.hDC(), screen.hwnd());
  ASSERT_TRUE(screen.SetCurrentXY(dc.Get(), 37, 41));
  POINT system{};
  ::GetCurrentPositionEx(dc.Get(), &system);
  EXPECT_EQ(system.x, 37);
  EXPECT_EQ(system.y, 41);
  std::int32_t x = 0, y = 0;
  ASSERT_TRUE(screen.GetCurrentXY(dc.Get(), x, y));
  EXPECT_EQ(x, 37);
  EXPECT_EQ(y, 41);
  ::GetCurrentPositionEx(dc.Get(), &system);
  EXPECT_EQ(system.x, 37) << "still there after reading it";

  try {
    screen.GetCurrentXY(nullptr, x, y);
    ADD_FAILURE() << "a null DC raised nothing";
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Source(), "win32_screen.cScreen.SetDisplayFont");
    EXPECT_EQ(e.Description(), "Invalid DC Specified");
  }
}

TEST(ScreenResolutionShell, TestOnlyAndCurrentSizeLeaveTheScreenAsItIs) {
  clsScreen screen;
  ASSERT_EQ(screen.Width(), 1024.0f);
  bool restart = true;
  EXPECT_TRUE(screen.ChangeResolution(3, 0, restart, false)) << "1024 x 768 is the current size";
  EXPECT_FALSE(restart);
  EXPECT_TRUE(screen.ChangeResolution(3, screen.BitsPerPixel(), restart, false));

  // Asking only whether 800 x 600 could be had: the answer is the driver's.
  DEVMODEA mode{};
  mode.dmSize = 148;
  mode.dmFields = DM_PELSWIDTH | DM_PELSHEIGHT;
  mode.dmPelsWidth = 800;
  mode.dmPelsHeight = 600;
  const LONG driver = ::ChangeDisplaySettingsA(&mode, CDS_TEST);
  try {
    EXPECT_TRUE(screen.ChangeResolution(2, 0, restart, true));
    EXPECT_TRUE(driver == DISP_CHANGE_SUCCESSFUL || driver == DISP_CHANGE_RESTART) << driver;
    EXPECT_EQ(restart, driver == DISP_CHANGE_RESTART);
  } catch (const RuntimeError& e) {
    EXPECT_EQ(e.Number(), driver <= -1 && driver >= -5 ? driver : -1);
    EXPECT_EQ(e.Source(), "win32_screencScreen.ChangeResolution(ChangeDisplaySettings)");
  }
  EXPECT_EQ(::GetSystemMetrics(SM_CXSCREEN), 1024) << "a test changes nothing";
  EXPECT_EQ(screen.Width(), 1024.0f);
  EXPECT_EQ(screen.Height(), 768.0f);
}

// A 32 x 32 monochrome cursor file, hot spot at (1, 1).
void WriteCursorFile(const std::string& path) {
  std::vector<unsigned char> bytes;
  const auto word = [&](unsigned v) {
    bytes.push_back(v & 0xFF);
    bytes.push_back((v >> 8) & 0xFF);
  };
  const auto dword = [&](unsigned v) {
    word(v & 0xFFFF);
    word(v >> 16);
  };
  const unsigned imageBytes = 40 + 8 + 128 + 128;
  word(0), word(2), word(1);  // a cursor file with one image
  bytes.push_back(32), bytes.push_back(32), bytes.push_back(0), bytes.push_back(0);
  word(1), word(1), dword(imageBytes), dword(22);     // hot spot, size, offset
  dword(40), dword(32), dword(64), word(1), word(1);  // header: 32 x (2 x 32), 1 bit
  for (int i = 0; i < 6; ++i) dword(0);
  dword(0x00000000), dword(0x00FFFFFF);                                            // black, white
  for (int row = 0; row < 32; ++row) dword(row < 16 ? 0xFFFF0000u : 0u);           // image
  for (int row = 0; row < 32; ++row) dword(row < 16 ? 0x0000FFFFu : 0xFFFFFFFFu);  // mask
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

LRESULT CALLBACK PlainProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  return ::DefWindowProcA(hwnd, message, wParam, lParam);
}

HWND MakeWindow(const char* className, HWND parent = nullptr, DWORD style = WS_POPUP | WS_VISIBLE) {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = PlainProc;
  windowClass.hInstance = ::GetModuleHandleA(nullptr);
  windowClass.hCursor = ::LoadCursorA(nullptr, IDC_ARROW);
  windowClass.lpszClassName = className;
  ::RegisterClassA(&windowClass);
  return ::CreateWindowExA(0, className, "", style, 10, 10, 200, 100, parent, nullptr, windowClass.hInstance,
                           nullptr);
}

TEST(ScreenCursorsShell, MousePointerRoundTripsOnAWindowOfOurOwn) {
  HWND window = MakeWindow("QmScreenCursorTest");
  ASSERT_TRUE(window);
  clsScreen screen;
  EXPECT_EQ(screen.MousePointer(window), 32512) << "the class was made with the arrow";
  for (std::int32_t id : kStandardCursorIds) {
    const HCURSOR system = ::LoadCursorA(nullptr, MAKEINTRESOURCEA(id));
    ASSERT_TRUE(screen.MousePointer(window, id)) << id;
    EXPECT_EQ(reinterpret_cast<HCURSOR>(::GetClassLongPtrA(window, GCLP_HCURSOR)), system) << id;
    const std::int32_t read = screen.MousePointer(window);
    // Where the system gives two standard cursors one handle, the earlier
    // one is read back.
    EXPECT_EQ(::LoadCursorA(nullptr, MAKEINTRESOURCEA(read)), system) << id << " read as " << read;
    if (read != id) {
      EXPECT_LT(std::find(kStandardCursorIds.begin(), kStandardCursorIds.end(), read),
                std::find(kStandardCursorIds.begin(), kStandardCursorIds.end(), id));
    }
  }
  EXPECT_FALSE(screen.MousePointer(window, 1)) << "no cursor file yet";
  ::DestroyWindow(window);
}

TEST(ScreenCursorsShell, CursorFileIsCheckedLoadedAndDestroyedWhenReplaced) {
  std::vector<std::string> boxes;
  clsScreen screen([&](std::string_view text, std::string_view title, PromptIcon icon) {
    boxes.push_back(std::string(title) + "|" + std::string(text) +
                    (icon == PromptIcon::Exclamation ? "|!" : ""));
  });
  const auto folder = std::filesystem::temp_directory_path();
  const std::string cursorFile = (folder / "qm_screen_hand.cur").string();
  const std::string bitmapFile = (folder / "qm_screen_photo.bmp").string();
  WriteCursorFile(cursorFile);
  std::ofstream(bitmapFile) << "BM";

  screen.MouseIcon(cursorFile);
  EXPECT_EQ(screen.MouseIcon(), cursorFile);
  screen.MouseIcon(bitmapFile);
  EXPECT_EQ(screen.MouseIcon(), cursorFile);
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0],
            "  Invalid File Type|Invalid mouse icon file.  File must be an .ICO, .CUR, or .ANI file.|!");
  screen.MouseIcon((folder / "qm_screen_missing.cur").string());
  EXPECT_EQ(screen.MouseIcon(), cursorFile);
  EXPECT_EQ(boxes.size(), 1u);

  HWND window = MakeWindow("QmScreenCursorFileTest");
  ASSERT_TRUE(screen.MousePointer(window, 1))
      << (screen.LastError() ? screen.LastError()->Description() : "");
  const HCURSOR fromFile = reinterpret_cast<HCURSOR>(::GetClassLongPtrA(window, GCLP_HCURSOR));
  ICONINFO icon{};
  ASSERT_TRUE(::GetIconInfo(fromFile, &icon)) << "the class has the file's cursor";
  if (icon.hbmMask) ::DeleteObject(icon.hbmMask);
  if (icon.hbmColor) ::DeleteObject(icon.hbmColor);
  EXPECT_EQ(screen.MousePointer(window), 1) << "none of the standard cursors";

  // A second file cursor replaces the first, which is destroyed; the
  // arrow then replaces the second.
  ASSERT_TRUE(screen.MousePointer(window, 1));
  const HCURSOR second = reinterpret_cast<HCURSOR>(::GetClassLongPtrA(window, GCLP_HCURSOR));
  EXPECT_NE(second, fromFile);
  EXPECT_FALSE(::GetIconInfo(fromFile, &icon)) << "the replaced file cursor is gone";
  ASSERT_TRUE(screen.MousePointer(window, 32512));
  EXPECT_FALSE(::GetIconInfo(second, &icon));
  EXPECT_TRUE(::GetIconInfo(::LoadCursorA(nullptr, IDC_ARROW), &icon))
      << "the system's arrow is never destroyed";

  ::DestroyWindow(window);
  std::filesystem::remove(cursorFile);
  std::filesystem::remove(bitmapFile);
}

TEST(ScreenActiveShell, ActiveWindowFormAndControl) {
  clsScreen screen;
  EXPECT_FALSE(screen.AttachThread(nullptr, true));
  HWND form = MakeWindow("QmScreenActiveForm", nullptr, WS_OVERLAPPEDWINDOW | WS_VISIBLE);
  HWND control = ::CreateWindowExA(0, "EDIT", "", WS_CHILD | WS_VISIBLE, 5, 5, 100, 20, form, nullptr,
                                   ::GetModuleHandleA(nullptr), nullptr);
  ASSERT_TRUE(form && control);
  EXPECT_TRUE(screen.AttachThread(form, true)) << "a window of this thread";
  ::SetForegroundWindow(form);
  ::SetActiveWindow(form);
  ::SetFocus(control);
  ASSERT_EQ(::GetActiveWindow(), form);

  EXPECT_EQ(screen.ActiveWindow(), ::GetForegroundWindow());
  EXPECT_EQ(screen.ActiveObject(), ::GetFocus());
  EXPECT_EQ(screen.ActiveForm(), nullptr) << "not one of the program's forms";
  EXPECT_EQ(screen.ActiveControl(), nullptr);
  FormLoaded(form);
  EXPECT_EQ(screen.ActiveForm(), form);
  EXPECT_EQ(screen.ActiveControl(), control);
  ::SetFocus(form);
  EXPECT_EQ(screen.ActiveControl(), nullptr) << "the form itself has the focus";
  FormUnloaded(form);
  EXPECT_EQ(screen.ActiveForm(), nullptr);
  ::DestroyWindow(form);
}

// A window of the program's own kind, top-level or a child.
class ProgramWindow final : public Window {
 public:
  explicit ProgramWindow(HWND parent = nullptr) {
    CreateArgs args;
    args.className = "QmScreenProgramWindow";
    args.style = parent ? WS_CHILD : WS_POPUP;
    args.parent = parent;
    Create(args);
  }
};

TEST(ScreenActiveShell, TheProgramsTopLevelWindowsAreItsFormsWhileTheyExist) {
  auto form = std::make_unique<ProgramWindow>();
  ProgramWindow child(form->Hwnd());
  const HWND hwnd = form->Hwnd();
  ASSERT_TRUE(hwnd && child.Hwnd());
  const auto& forms = LoadedForms();
  EXPECT_NE(std::find(forms.begin(), forms.end(), hwnd), forms.end());
  EXPECT_EQ(std::find(forms.begin(), forms.end(), child.Hwnd()), forms.end()) << "a child is no form";
  form.reset();
  EXPECT_EQ(std::find(forms.begin(), forms.end(), hwnd), forms.end());
}

TEST(ScreenPictureShell, PictureFromHandleOwnsTheBitmapAndDraws) {
  Backdrop backdrop;
  Bitmap bitmap = SolidBitmap(30, 20, RGB(200, 100, 0));
  const HBITMAP handle = bitmap.Release();
  Picture picture = clsScreen::PictureFromHandle(handle, nullptr);
  ASSERT_TRUE(picture);
  OLE_HANDLE held = 0;
  picture->get_Handle(&held);
  EXPECT_EQ(reinterpret_cast<HBITMAP>(static_cast<std::uintptr_t>(held)), handle);

  clsScreen screen;
  ASSERT_TRUE(screen.DrawPicture(Cell(0).left, Cell(0).top, "", picture, nullptr, 0, 0, false));
  EXPECT_EQ(CountScreenColour(Cell(0), RGB(200, 100, 0)), 600) << "its own size, 30 x 20";

  picture.reset();
  EXPECT_EQ(::GetObjectType(handle), 0u) << "releasing the picture deleted the bitmap";
}

}  // namespace
}  // namespace qm::win32
