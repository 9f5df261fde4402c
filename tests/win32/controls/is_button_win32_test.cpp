// The image button on the (virtual) screen under Wine: what the window adds
// to the model (whose state machine, layout and colours the core tests
// pin). Style 10 shaped by its region, other styles only made; real mouse
// and key messages turned into the button's events, with the mouse held
// while pressed; the tab order of the whole window; the tooltip window; and
// the pixels that reach the screen: Style 10's art in each look.
#include "controls/is_button_win32.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "../../support/test_helpers_win32.h"
#include "tab_host_win32.h"

namespace qm::win32 {
namespace {

constexpr TwipBounds kAdd{180, 540, 975, 435};  // 65 x 29 pixels
constexpr POINT kAway{1000, 740};               // the pointer away from everything
// Style 10's faces, at a point left of a caption.
constexpr COLORREF kNormalFace = RGB(232, 231, 234);
constexpr COLORREF kHoverFace = RGB(106, 166, 226);
constexpr COLORREF kPressedFace = RGB(106, 155, 204);

POINT OnScreenAt(HWND hwnd, int x, int y) {
  POINT p{x, y};
  ::ClientToScreen(hwnd, &p);
  return p;
}

// The real pointer, through the input queue: moved to a point of the
// screen, or its left button pressed or let go.
void RealMouse(DWORD flags, POINT screen = {}) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dx = (screen.x * 65536 + ::GetSystemMetrics(SM_CXSCREEN) - 1) / ::GetSystemMetrics(SM_CXSCREEN);
  input.mi.dy = (screen.y * 65536 + ::GetSystemMetrics(SM_CYSCREEN) - 1) / ::GetSystemMetrics(SM_CYSCREEN);
  input.mi.dwFlags = flags;
  ::SendInput(1, &input, sizeof input);
  PumpMessages(150);
}
void PointerTo(POINT screen) {
  RealMouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, screen);
}
void LeftButton(bool down) {
  RealMouse(down ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_LEFTUP);
}

// A top-level window that counts the painting it is asked for: a repaint
// meant for a window that is gone must not reach it.
class PaintWitness : public BlueHost {
 public:
  int paints = 0;

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) override {
    if (msg == WM_PAINT || msg == WM_NCPAINT || msg == WM_ERASEBKGND) ++paints;
    return BlueHost::HandleMessage(msg, wParam, lParam);
  }
};

class ButtonShell : public ::testing::Test {
 protected:
  void SetUp() override {
    ::SetCursorPos(kAway.x, kAway.y);
    ASSERT_TRUE(host.Create("button test", 40, 60, 458, 120));
  }

  isButtonWindow& Make(const PropertyStore& stored, const TwipBounds& at = kAdd) {
    buttons.push_back(std::make_unique<isButtonWindow>());
    isButtonWindow& b = *buttons.back();
    EXPECT_TRUE(b.Create(host.Hwnd(), at, stored));
    b.Model().events.Click = [this] { raised.push_back("Click"); };
    b.Model().events.MouseEnter = [this] { raised.push_back("MouseEnter"); };
    b.Model().events.MouseLeave = [this] { raised.push_back("MouseLeave"); };
    PumpMessages(50);
    return b;
  }

  static bool InRegion(const isButtonWindow& b, int x, int y) {
    Region r(::CreateRectRgn(0, 0, 0, 0));
    if (::GetWindowRgn(b.Hwnd(), r.Get()) == ERROR) return true;  // no region: the whole window
    return ::PtInRegion(r.Get(), x, y) != FALSE;
  }

  BlueHost host;
  std::vector<std::unique_ptr<isButtonWindow>> buttons;
  std::vector<std::string> raised;
};

using Strings = std::vector<std::string>;

// The program's Style 10 is cut to its rounded shape and paints the
// model's fixed art whatever BackColor holds (the settings window gives
// some buttons one): the top row's rounded cap and the middle. Of the
// styles the program does not use, a plain one and "no background" (where
// the window shows) are made. (Style 10's pressed and hover faces are seen
// under the real pointer.)
TEST_F(ButtonShell, Style10IsShapedAndPaintsItsOwnArtAndOtherStylesAreMade) {
  for (const int style : {10, 0, 11}) {
    SCOPED_TRACE("Style " + std::to_string(style));
    isButtonWindow& b =
        Make({{"Style", style}, {"Caption", "Add"}, {"BackColor", 0x00FF8080u}, {"USeCustomColors", true}});
    EXPECT_EQ(test::Text(b.Hwnd()), "Add");
    EXPECT_TRUE(InRegion(b, 32, 14));
    EXPECT_EQ(InRegion(b, 0, 0), style != 10);
    EXPECT_EQ(InRegion(b, 64, 28), style != 10);
    EXPECT_EQ(Painted(b.Hwnd(), 32, 3) == static_cast<COLORREF>(kSettingsBlue), style == 11)
        << std::hex << Painted(b.Hwnd(), 32, 3);
    if (style == 10) {
      for (const POINT p : {POINT{18, 11}, POINT{46, 20}, POINT{6, 0}, POINT{8, 0}, POINT{11, 0}})
        EXPECT_EQ(Painted(b.Hwnd(), p.x, p.y),
                  static_cast<COLORREF>(Style10Pixel(GlossVariant::Normal, p.x, p.y, 65, 29)))
            << p.x << "," << p.y;
    }
    b.Destroy();
  }
}

// With the real pointer: the button shows its tooltip while the pointer is
// over it, holds the mouse while pressed, its pressed look goes and comes
// back with the pointer, and only a press and a release both on it click.
// Losing the mouse or the focus while pressed drops the press.
TEST_F(ButtonShell, OnlyAPressAndAReleaseBothOnTheButtonClickAndALostMouseOrFocusDropsThePress) {
  isButtonWindow& b =
      Make({{"Style", 10}, {"Caption", "Delete"}, {"ToolTipType", 0}, {"ToolTipText", "Deletes"}});
  const POINT on = OnScreenAt(b.Hwnd(), 30, 15);
  const POINT off = OnScreenAt(host.Hwnd(), 300, 90);

  // Pressed on the window behind, dragged onto the button, let go there.
  PointerTo(off);
  LeftButton(true);
  PointerTo(on);
  LeftButton(false);
  EXPECT_EQ(raised, Strings{"MouseEnter"});
  // The tooltip window's one tool is the button.
  const HWND tip = b.TooltipHwnd();
  ASSERT_NE(tip, nullptr);
  TOOLINFOA tool{};
  tool.cbSize = TTTOOLINFOA_V2_SIZE;
  ASSERT_TRUE(::SendMessageA(tip, TTM_ENUMTOOLSA, 0, reinterpret_cast<LPARAM>(&tool)));
  EXPECT_EQ(tool.hwnd, b.Hwnd());

  LeftButton(true);
  EXPECT_EQ(::GetCapture(), b.Hwnd());
  EXPECT_EQ(Painted(b.Hwnd(), 8, 14), kPressedFace);
  PointerTo(off);
  EXPECT_EQ(::GetCapture(), b.Hwnd());
  EXPECT_NE(Painted(b.Hwnd(), 8, 14), kPressedFace);
  PointerTo(on);
  EXPECT_EQ(Painted(b.Hwnd(), 8, 14), kPressedFace);
  PointerTo(off);
  LeftButton(false);  // let go away from it
  EXPECT_EQ(::GetCapture(), nullptr);
  EXPECT_EQ(raised, (Strings{"MouseEnter", "MouseLeave", "MouseEnter", "MouseLeave"}));
  EXPECT_FALSE(::IsWindow(tip)) << "the tooltip goes with the pointer";

  PointerTo(on);
  LeftButton(true);
  LeftButton(false);
  EXPECT_EQ(std::count(raised.begin(), raised.end(), "Click"), 1);
  PointerTo(off);  // the mouse tracking tells the button it has gone
  PumpMessages(400);
  EXPECT_EQ(raised.back(), "MouseLeave");
  // Still focused from the click: the hover face, until the focus goes.
  EXPECT_EQ(Painted(b.Hwnd(), 8, 14), kHoverFace);
  ::SetFocus(host.Hwnd());
  EXPECT_EQ(Painted(b.Hwnd(), 8, 14), kNormalFace);

  // A press is dropped when another window takes the mouse, when the
  // system cancels the modes (a menu or a dialog opening) and when the
  // focus goes elsewhere: the release on the button then does not click.
  PointerTo(on);
  for (const UINT interruption : {WM_CAPTURECHANGED, WM_CANCELMODE, WM_KILLFOCUS}) {
    LeftButton(true);
    ASSERT_EQ(::GetCapture(), b.Hwnd());
    if (interruption == WM_CAPTURECHANGED) ::SetCapture(host.Hwnd());
    if (interruption == WM_CANCELMODE) ::SendMessageA(b.Hwnd(), WM_CANCELMODE, 0, 0);
    if (interruption == WM_KILLFOCUS) ::SetFocus(host.Hwnd());
    EXPECT_NE(::GetCapture(), b.Hwnd()) << interruption;
    EXPECT_EQ(Painted(b.Hwnd(), 8, 14), kHoverFace) << interruption;
    ::ReleaseCapture();
    LeftButton(false);
  }

  // Space held down, and the focus goes.
  ::SetFocus(b.Hwnd());
  ::SendMessageA(b.Hwnd(), WM_KEYDOWN, VK_SPACE, 0);
  EXPECT_EQ(Painted(b.Hwnd(), 8, 14), kPressedFace);
  ::SetFocus(host.Hwnd());
  ::SetFocus(b.Hwnd());
  ::SendMessageA(b.Hwnd(), WM_KEYUP, VK_SPACE, 0);

  EXPECT_EQ(std::count(raised.begin(), raised.end(), "Click"), 1);
  EXPECT_FALSE(b.Model().PressInProgress());
  ::SetCursorPos(kAway.x, kAway.y);
}

// "Exit", then Yes: the handler destroys the whole window, the button with
// it; by mouse, Space and access key, with the button object freed too or
// not. Nothing may be repainted afterwards: a repaint of no window is a
// repaint of every window on the screen.
TEST_F(ButtonShell, ClickThatDestroysTheWindowRepaintsNothingElse) {
  PaintWitness witness;
  ASSERT_TRUE(witness.Create("witness", 700, 420, 200, 150));
  for (int path = 0; path < 6; ++path) {
    SCOPED_TRACE("path " + std::to_string(path));
    BlueHost settings;
    ASSERT_TRUE(settings.Create("settings", 40, 300, 300, 100));
    auto exit = std::make_unique<isButtonWindow>();
    ASSERT_TRUE(exit->Create(settings.Hwnd(), kAdd, {{"Style", 10}, {"Caption", "E&xit"}}));
    const bool freeTheButton = path >= 3;
    int clicks = 0;
    exit->Model().events.Click = [&] {
      ++clicks;
      ::DestroyWindow(settings.Hwnd());
      if (freeTheButton) exit.reset();
    };
    HWND exitHwnd = exit->Hwnd();
    PumpMessages(100);
    witness.paints = 0;

    if (path % 3 == 0) {
      PointerTo(OnScreenAt(exitHwnd, 30, 15));
      LeftButton(true);
      LeftButton(false);
    } else if (path % 3 == 1) {
      ::SetFocus(exitHwnd);
      ::SendMessageA(exitHwnd, WM_KEYDOWN, VK_SPACE, 0);
      ::SendMessageA(exitHwnd, WM_KEYUP, VK_SPACE, 0);
    } else {
      ::SendMessageA(exitHwnd, BM_CLICK, 0, 0);
    }
    PumpMessages(150);
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(::IsWindow(exitHwnd));
    EXPECT_EQ(witness.paints, 0);
    if (!freeTheButton) {
      EXPECT_EQ(exit->Hwnd(), nullptr);
    }
  }
  PointerTo(kAway);
}

// The arrows and Tab move the focus to the next or previous tab stop of
// the whole top-level window, into and out of containers, also ones not
// marked for the dialog manager (the settings window's marked panels are
// walked end to end). Tab also raises MouseLeave.
TEST_F(ButtonShell, KeysWalkTheTabOrderOfTheWholeWindow) {
  const auto child = [](HWND parent, const char* cls, DWORD style, int x, int y) {
    return ::CreateWindowExA(0, cls, "", WS_CHILD | WS_VISIBLE | style, x, y, 120, 60, parent, nullptr,
                             ThisModule(), nullptr);
  };
  HWND edit = child(host.Hwnd(), "EDIT", WS_TABSTOP | WS_BORDER, 5, 5);
  HWND group = child(host.Hwnd(), "BUTTON", BS_GROUPBOX, 130, 5);
  HWND inGroup = child(group, "BUTTON", WS_TABSTOP | BS_PUSHBUTTON, 10, 20);
  ::ShowWindow(child(group, "BUTTON", WS_TABSTOP | BS_PUSHBUTTON, 10, 40), SW_HIDE);
  HWND panel = child(host.Hwnd(), "STATIC", 0, 5, 70);
  ::SetWindowPos(panel, nullptr, 0, 0, 450, 50, SWP_NOMOVE | SWP_NOZORDER);
  isButtonWindow first;
  isButtonWindow second;
  ASSERT_TRUE(first.Create(panel, {0, 0, 975, 435}, {{"Style", 10}, {"Caption", "Add"}}));
  ASSERT_TRUE(child(panel, "BUTTON", WS_TABSTOP | WS_DISABLED, 70, 0));
  ASSERT_TRUE(second.Create(panel, {2400, 0, 975, 435}, {{"Style", 10}, {"Caption", "Edit"}}));
  first.Model().events.MouseLeave = [this] { raised.push_back("MouseLeave"); };

  // Down and right go forwards: past the disabled button to the other
  // image button, out of the panel round to the edit box. Up and left go
  // back: out of the panel into the group box, past its hidden button.
  ::SetFocus(first.Hwnd());
  ::SendMessageA(first.Hwnd(), WM_KEYDOWN, VK_DOWN, 0);
  EXPECT_EQ(::GetFocus(), second.Hwnd());
  ::SendMessageA(second.Hwnd(), WM_KEYDOWN, VK_RIGHT, 0);
  EXPECT_EQ(::GetFocus(), edit);
  ::SetFocus(second.Hwnd());
  ::SendMessageA(second.Hwnd(), WM_KEYDOWN, VK_UP, 0);
  EXPECT_EQ(::GetFocus(), first.Hwnd());
  ::SendMessageA(first.Hwnd(), WM_KEYDOWN, VK_LEFT, 0);
  EXPECT_EQ(::GetFocus(), inGroup);
  ::SetFocus(first.Hwnd());
  ::SendMessageA(first.Hwnd(), WM_KEYDOWN, VK_TAB, 0);
  EXPECT_EQ(::GetFocus(), second.Hwnd());
  EXPECT_EQ(raised, Strings{"MouseLeave"});
  // The dialog manager takes it for a push button (its access key clicks).
  EXPECT_EQ(::SendMessageA(first.Hwnd(), WM_GETDLGCODE, 0, 0) & DLGC_BUTTON, DLGC_BUTTON);
}

}  // namespace
}  // namespace qm::win32
