// The tab bar in each of its looks, one bar per row on the settings
// window's blue, each put in its state by the mouse messages a user's
// pointer would send. `tab_gallery [seconds]` closes itself after that many
// seconds (default: stays until closed).
#include <windows.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "controls/tab_menu_win32.h"
#include "../tests/win32/controls/tab_host_win32.h"

namespace qm::win32 {
namespace {

constexpr int kWidthTwips = 6870;  // as wide as the settings window
constexpr int kRowHeight = 64;     // pixels: the bar and its title below
constexpr int kBarTop = 8;

struct Row {
  const char* title;
  void (*setUp)(TabMenuWindow& bar);
};

void Move(HWND hwnd, int x, int y) {
  ::SendMessageA(hwnd, WM_MOUSEMOVE, 0, MAKELPARAM(x, y));
}
void Press(HWND hwnd, int x, int y) {
  ::SendMessageA(hwnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
  ::ReleaseCapture();
}

const Row kRows[] = {
    {"normal: nothing selected yet", [](TabMenuWindow&) {}},
    {"focused: \"Messages\" selected", [](TabMenuWindow& bar) { bar.Model().SetTabFocus(1); }},
    {"hover: pointer over \"Help\"",
     [](TabMenuWindow& bar) {
       bar.Model().SetTabFocus(1);
       Move(bar.TabHwnd(3), 30, 20);
     }},
    {"pressed: button down on \"About\"",
     [](TabMenuWindow& bar) {
       bar.Model().SetTabFocus(1);
       Press(bar.TabHwnd(4), 30, 20);
     }},
    {"menu button: hover",
     [](TabMenuWindow& bar) {
       bar.Model().SetTabFocus(2);
       Move(bar.MenuButtonHwnd(2), 10, 20);
     }},
    {"menu button: pressed",
     [](TabMenuWindow& bar) {
       bar.Model().SetTabFocus(3);
       Press(bar.MenuButtonHwnd(2), 10, 20);
     }},
};

// The host, with each row's title in white under its bar.
class Gallery : public BlueHost {
 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) override {
    if (msg == WM_PAINT) {
      PaintScope paint(Hwnd());
      Font font(::CreateFontA(-13, 0, 0, 0, FW_BOLD, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, "Arial"));
      SelectGuard select(paint.Dc(), font.Get());
      ::SetBkMode(paint.Dc(), TRANSPARENT);
      ::SetTextColor(paint.Dc(), RGB(255, 255, 255));
      int top = kBarTop + 35 + 4;
      for (const Row& row : kRows) {
        ::TextOutA(paint.Dc(), 8, top, row.title, lstrlenA(row.title));
        top += kRowHeight;
      }
      return 0;
    }
    if (msg == WM_TIMER || msg == WM_CLOSE) {
      ::PostQuitMessage(0);
      return 0;
    }
    return BlueHost::HandleMessage(msg, wParam, lParam);
  }
};

int Run(int seconds) {
  Gallery host;
  const int rows = static_cast<int>(std::size(kRows));
  if (!host.Create("tab_gallery", 20, 20, 458, kBarTop + rows * kRowHeight)) return 1;

  std::vector<std::unique_ptr<TabMenuWindow>> bars;
  for (int i = 0; i < rows; ++i) {
    auto& bar = *bars.emplace_back(std::make_unique<TabMenuWindow>());
    if (!bar.Create(host.Hwnd(), 0, (kBarTop + i * kRowHeight) * 15, kWidthTwips)) return 1;
    bar.Model().AddButton(1, "Messages");
    bar.Model().AddButton(1, "Help");
    bar.Model().AddButton(1, "About");
    bar.Model().AddButton(2, "");
    kRows[i].setUp(bar);
  }
  if (seconds > 0) ::SetTimer(host.Hwnd(), 1, static_cast<UINT>(seconds) * 1000, nullptr);

  MSG msg;
  while (::GetMessageA(&msg, nullptr, 0, 0) > 0) {
    ::TranslateMessage(&msg);
    ::DispatchMessageA(&msg);
  }
  return 0;
}

}  // namespace
}  // namespace qm::win32

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR commandLine, int) {
  return qm::win32::Run(std::atoi(commandLine));
}
