// The tab bar on the (virtual) screen under Wine: mouse messages turned
// into the bar's events, and the pictures and caption colours that reach
// the screen. (The end-to-end tests click the tabs with the real pointer.)
#include "controls/tab_menu_win32.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "../../support/test_helpers_win32.h"
#include "tab_host_win32.h"

namespace qm::win32 {
namespace {

LPARAM At(int x, int y) {
  return MAKELPARAM(x, y);
}

// The colour of a picture at a share of its width and height.
COLORREF PictureColour(HBITMAP picture, double fx, double fy) {
  BITMAP info{};
  ::GetObjectA(picture, sizeof info, &info);
  MemoryDC dc(nullptr);
  SelectGuard select(dc.Get(), picture);
  return ::GetPixel(dc.Get(), static_cast<int>(fx * info.bmWidth), static_cast<int>(fy * info.bmHeight));
}

// The largest difference of the three channels.
int Distance(COLORREF a, COLORREF b) {
  return std::max({std::abs(GetRValue(a) - GetRValue(b)), std::abs(GetGValue(a) - GetGValue(b)),
                   std::abs(GetBValue(a) - GetBValue(b))});
}
bool Near(COLORREF a, COLORREF b) {
  return Distance(a, b) <= 12;
}

// Settings-window-like: the blue window with a bar of "Messages", "Help",
// "About" and one menu button, recording the bar's events.
class TabShell : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(host.Create("tab bar test", 40, 60, 458, 120));
    ASSERT_TRUE(bar.Create(host.Hwnd(), 0, 0, 6870));
    TabMenu& m = bar.Model();
    m.events.ItemClick = [this] { raised.push_back("click:" + bar.Model().SelectedItem()); };
    m.events.ItemMenuClick = [this] { raised.push_back("menu:" + bar.Model().SelectedItem()); };
    m.AddButton(1, "Messages");
    m.AddButton(1, "Help");
    m.AddButton(1, "About");
    m.AddButton(2, "");
    PumpMessages(150);
  }

  HWND Tab(int n) const { return bar.TabHwnd(static_cast<std::int16_t>(n + 1)); }
  HWND Menu() const { return bar.MenuButtonHwnd(2); }

  void Click(HWND button, int x = 30, int y = 10) {
    ::SendMessageA(button, WM_LBUTTONDOWN, MK_LBUTTON, At(x, y));
    ::SendMessageA(button, WM_LBUTTONUP, 0, At(x, y));
  }

  // Pixels of a tab's caption box that are near white and that are dark.
  struct CaptionInk {
    int white = 0;
    int dark = 0;
  };
  CaptionInk Caption(HWND tab) {
    ::UpdateWindow(tab);
    PumpMessages(100);
    RECT label = bar.ToPixels(bar.Model().Tab(2).LblTextRect());
    ::MapWindowPoints(tab, nullptr, reinterpret_cast<POINT*>(&label), 2);
    CaptionInk ink;
    for (const COLORREF c : test::CaptureScreen(label)) {
      if (GetRValue(c) > 235 && GetGValue(c) > 235 && GetBValue(c) > 235) ++ink.white;
      if (GetRValue(c) < 90 && GetGValue(c) < 90 && GetBValue(c) < 130) ++ink.dark;
    }
    return ink;
  }

  BlueHost host;
  TabMenuWindow bar;
  std::vector<std::string> raised;
};

TEST_F(TabShell, ClicksRaiseTheBarsEvents) {
  Click(Tab(2));
  Click(Menu(), 10, 20);
  EXPECT_EQ(raised, (std::vector<std::string>{"click:Help", "menu:1"}));

  // Only a left button that went down and came up on the picture counts.
  raised.clear();
  Click(Tab(3), 67, 10);  // on the divider
  ::SendMessageA(Tab(3), WM_LBUTTONUP, 0, At(30, 10));
  ::SendMessageA(Tab(1), WM_LBUTTONDOWN, MK_LBUTTON, At(30, 10));
  ::SendMessageA(Tab(1), WM_LBUTTONUP, 0, At(300, 10));  // released off the tab
  ::SendMessageA(Tab(1), WM_RBUTTONDOWN, MK_RBUTTON, At(30, 10));
  ::SendMessageA(Tab(1), WM_RBUTTONUP, 0, At(30, 10));
  EXPECT_TRUE(raised.empty());
  EXPECT_EQ(bar.Model().Tab(2).ImgButton(), TabPicture::Down) << "pressed, but not focused";
  EXPECT_EQ(::GetCapture(), nullptr);
}

TEST_F(TabShell, TheScreenShowsEachTabsLook) {
  const TabPictures& pictures = bar.Pictures();
  // The foot of each picture tells them apart: the strip's edge, the
  // hover line, and the selected tab's blue running into the page.
  const COLORREF normal = PictureColour(pictures.tabNormal.Get(), 0.5, 0.99);
  const COLORREF over = PictureColour(pictures.tabOver.Get(), 0.5, 0.99);
  const COLORREF down = PictureColour(pictures.tabDown.Get(), 0.5, 0.99);
  ASSERT_GT(Distance(normal, over), 30);
  ASSERT_GT(Distance(over, down), 30);

  bar.Model().SetTabFocus(1);
  ::SendMessageA(Tab(2), WM_MOUSEMOVE, 0, At(20, 20));
  EXPECT_PRED2(Near, Painted(Tab(1), 32, 34), down);
  EXPECT_PRED2(Near, Painted(Tab(2), 32, 34), over);
  EXPECT_PRED2(Near, Painted(Tab(3), 32, 34), normal);

  // The focused tab's caption is white on its blue; the others' are dark.
  const CaptionInk focused = Caption(Tab(1));
  EXPECT_GT(focused.white, 15);
  EXPECT_EQ(focused.dark, 0);
  const CaptionInk other = Caption(Tab(3));
  EXPECT_GT(other.dark, 15);

  // The menu button shows its own pictures.
  ::SendMessageA(Menu(), WM_MOUSEMOVE, 0, At(10, 20));
  EXPECT_PRED2(Near, Painted(Menu(), 11, 34), PictureColour(pictures.menuOver.Get(), 0.5, 0.99));
}

}  // namespace
}  // namespace qm::win32
