// The settings window told that it moved to a monitor of another scaling
// (WM_DPICHANGED, as Windows sends it): it goes where it is told, every
// control stands where the layout puts it at the new dpi, and the fonts
// are made anew for it, at 150 % and 200 %; back at the first dpi
// everything is as it was.
#include "settings/settings_window_win32.h"

#include <gtest/gtest.h>

#include "../../support/fake_prompts.h"
#include "../../support/settings_layout_check_win32.h"
#include "../../support/temp_folder.h"
#include "../../support/test_helpers_win32.h"

namespace qm::win32 {
namespace {

using test::ExpectSettingsLayout;
using test::Pump;

// The height of the font a control was given, in pixels.
int FontHeight(HWND control) {
  const auto font = reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0));
  LOGFONTW lf{};
  if (!font || !::GetObjectW(font, sizeof lf, &lf)) return 0;
  return static_cast<int>(lf.lfHeight < 0 ? -lf.lfHeight : lf.lfHeight);
}

// What Windows sends when the window crosses to a monitor of `to` dots
// per inch: the new dpi both ways, and the window's rectangle scaled from
// `from`, its top left corner kept.
void SendDpiChanged(HWND form, int from, int to) {
  RECT r{};
  ::GetWindowRect(form, &r);
  RECT suggested{r.left, r.top, r.left + ::MulDiv(r.right - r.left, to, from),
                 r.top + ::MulDiv(r.bottom - r.top, to, from)};
  ::SendMessageW(form, WM_DPICHANGED, MAKEWPARAM(to, to), reinterpret_cast<LPARAM>(&suggested));
  Pump();
}

TEST(SettingsWindowDpi, TheLayoutAndTheFontsFollowTheWindowToAnotherScalingAndBack) {
  test::TempFolder folder;
  test::FakePrompts prompts;
  MessageLoop loop;
  auto window = std::make_unique<frmSettings>(loop, SystemFileSystem(), prompts, folder.Path());
  ASSERT_TRUE(window->Form_Load("firstrun"));
  const HWND form = static_cast<Window&>(*window).Hwnd();
  Pump();

  const HDC screen = ::GetDC(nullptr);
  const int first = ::GetDeviceCaps(screen, LOGPIXELSY);
  ::ReleaseDC(nullptr, screen);
  const int other = first == 144 ? 96 : 144;
  const HWND panel = ::GetDlgItem(form, kIdPicture2);
  const HWND label = ::GetDlgItem(panel, kIdLabel1);
  const HWND list = ::GetDlgItem(form, kIdLstMessageCategories);
  const HWND box = ::GetDlgItem(form, kIdTxtEditCat);
  const int labelFont = FontHeight(label), listFont = FontHeight(list), boxFont = FontHeight(box);
  RECT before{};
  ::GetWindowRect(form, &before);

  // 150 % and 200 % (or 100 % from a screen at 150 %).
  int now = first;
  for (const int dpi : {other, 192}) {
    SendDpiChanged(form, now, dpi);
    now = dpi;
    ExpectSettingsLayout(form, dpi, 1);
    RECT moved{};
    ::GetWindowRect(form, &moved);
    EXPECT_EQ(moved.left, before.left);
    EXPECT_EQ(moved.top, before.top);
    // Arial 9.75 pt bold and regular, and the interface font, at the new
    // dpi.
    EXPECT_EQ(FontHeight(label), ::MulDiv(975, dpi, 7200)) << dpi;
    EXPECT_EQ(FontHeight(list), ::MulDiv(975, dpi, 7200)) << dpi;
    EXPECT_NEAR(FontHeight(box), ::MulDiv(boxFont, dpi, first), 1) << dpi;
  }

  SendDpiChanged(form, now, first);
  ExpectSettingsLayout(form, first, 0);
  EXPECT_EQ(FontHeight(label), labelFont);
  EXPECT_EQ(FontHeight(list), listFont);
  EXPECT_EQ(FontHeight(box), boxFont);
  window.reset();
  Pump();
}

}  // namespace
}  // namespace qm::win32
