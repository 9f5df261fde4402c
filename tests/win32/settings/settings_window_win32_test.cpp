// The settings window on the screen: its controls where the layout puts
// them at this screen's dots per inch and after a change of dpi, its pages
// shown and hidden by the tab bar, the Help and About files read at each
// click, the lists wired to the library and the timing wheels to the
// flasher and the settings file, all in a real window under the system's
// own controls. (Typing into the boxes and turning the wheels by the mouse
// are used in the end-to-end tests.)
#include "settings/settings_window_win32.h"

#include <gtest/gtest.h>
// After windows.h:
#include <commctrl.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include "../../support/fake_prompts.h"
#include "../../support/settings_layout_check_win32.h"
#include "../../support/temp_folder.h"
#include "../../support/test_helpers_win32.h"
#include "library/library_editing.h"
#include "settings/settings_ids.h"

namespace qm::win32 {
namespace {

using test::ExpectSettingsLayout;
using test::LayoutPixels;
using test::Pump;
using test::RectIn;
using test::Text;

using test::FakePrompts;
using test::TempFolder;

// The font a control was given (all zero without one), and its height in
// pixels.
LOGFONTW FontOf(HWND control) {
  LOGFONTW lf{};
  const auto font = reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0));
  if (font) ::GetObjectW(font, sizeof lf, &lf);
  return lf;
}
int FontHeight(HWND control) {
  return std::abs(static_cast<int>(FontOf(control).lfHeight));
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

class SettingsWindowTest : public ::testing::Test {
 protected:
  void Load(std::string_view commandLine = "firstrun") {
    window = std::make_unique<frmSettings>(loop, SystemFileSystem(), prompts, folder.Path());
    ASSERT_TRUE(window->Form_Load(commandLine));
    form = static_cast<Window&>(*window).Hwnd();
    panel = ::GetDlgItem(form, kIdPicture2);
    ASSERT_NE(panel, nullptr);
    Pump();
  }
  void TearDown() override {
    window.reset();
    Pump();
  }
  HWND Control(int id) const { return test::Control(form, id); }
  bool Shown(int id) const { return ::IsWindowVisible(Control(id)) != FALSE; }
  void Click(int id) const { ::SendMessageW(Control(id), BM_CLICK, 0, 0); }
  LRESULT Position(int id) const { return ::SendMessageW(Control(id), TBM_GETPOS, 0, 0); }
  static int ScreenDpi() {
    const HDC dc = ::GetDC(nullptr);
    const int dpi = ::GetDeviceCaps(dc, LOGPIXELSY);
    ::ReleaseDC(nullptr, dc);
    return dpi;
  }
  std::vector<std::string> ListTexts(int id) const {
    std::vector<std::string> texts;
    for (int i = 0; i < ListView_GetItemCount(Control(id)); ++i) {
      char text[256] = {};
      ListView_GetItemText(Control(id), i, 0, text, sizeof text);
      texts.emplace_back(text);
    }
    return texts;
  }

  TempFolder folder;
  FakePrompts prompts;
  MessageLoop loop;
  std::unique_ptr<frmSettings> window;
  HWND form = nullptr;
  HWND panel = nullptr;
};

TEST_F(SettingsWindowTest, ControlsStandWhereTheLayoutPutsThemAtThisScreensDpi) {
  Load();
  const int dpi = ScreenDpi();
  const auto px = [dpi](int twips) { return LayoutPixels(twips, dpi); };
  RECT client{};
  ::GetClientRect(form, &client);
  EXPECT_NE(::SendMessageW(form, WM_GETICON, ICON_BIG, 0), 0);

  // Centred on the screen when first shown.
  RECT outer{};
  ::GetWindowRect(form, &outer);
  EXPECT_NEAR((outer.left + outer.right) / 2, ::GetSystemMetrics(SM_CXSCREEN) / 2, 1);
  EXPECT_NEAR((outer.top + outer.bottom) / 2, ::GetSystemMetrics(SM_CYSCREEN) / 2, 1);

  ExpectSettingsLayout(form, dpi, 0);
  const RECT panelRect = RectIn(panel, form);
  // Only the top pixel row of Stop lies inside the window.
  EXPECT_EQ(client.bottom - RectIn(Control(kIdCmdStop), form).top, 1);
  EXPECT_EQ(Text(Control(kIdCmdStop)), "Stop");

  // The rich-text view: 180, 600, the window's outer width less 450, its
  // height up to the Start row at most.
  const RECT rtf = RectIn(Control(kIdRtfHelp), form);
  EXPECT_EQ(rtf.left, px(180));
  EXPECT_EQ(rtf.top, px(600));
  EXPECT_NEAR(rtf.right - rtf.left, (outer.right - outer.left) - px(450), 1);
  const int formulaHeight = (outer.bottom - outer.top) - px(1700);
  EXPECT_LE(rtf.bottom, panelRect.top + px(5160));
  EXPECT_LE(rtf.bottom - rtf.top, formulaHeight + 1);

  EXPECT_EQ(Text(Control(kIdLabel1)), "Select Your Categories");
  EXPECT_EQ(Text(Control(kIdLabel2)), "Add/Edit Subliminal Phrases");
  EXPECT_EQ(Text(Control(kIdFraTimesAndDuration)), "Times and Duration");
  EXPECT_EQ(Text(Control(kIdFraFont)), "Font");
  EXPECT_EQ(Text(Control(kIdCmdStart)), "&Start");
  EXPECT_EQ(Text(Control(kIdCmdClose)), "E&xit");
}

TEST_F(SettingsWindowTest, LabelsAreWhiteBoldArialAndTheBackgroundIsTheBlue) {
  Load();
  for (int id : {kIdLabel1, kIdLabel2, kIdFraTimesAndDuration, kIdFraFont}) {
    const LOGFONTW lf = FontOf(Control(id));
    EXPECT_EQ(std::wstring(lf.lfFaceName), L"Arial") << id;
    EXPECT_GE(lf.lfWeight, FW_BOLD) << id;
  }
  // What the window paints: the blue beside the labels, white in them.
  ::RedrawWindow(form, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN | RDW_ERASE);
  RECT label{};
  ::GetWindowRect(Control(kIdLabel1), &label);
  const int white = test::CountScreenColour(label, RGB(255, 255, 255));
  EXPECT_GT(white, 20);
  EXPECT_GT(test::CountScreenColour(label, kSettingsBlue), white);
  const HDC screen = ::GetDC(nullptr);
  const COLORREF beside = ::GetPixel(screen, label.left + 2, label.bottom + 2);
  ::ReleaseDC(nullptr, screen);
  EXPECT_EQ(beside, kSettingsBlue);
}

// Help and About are read at every click: a changed file shows at the
// next one, a missing one leaves the box as it was without a message.
TEST_F(SettingsWindowTest, TabsShowTheirPagesAndReadTheirFilesAtEveryClick) {
  folder.Put("\\Help.rtf", "{\\rtf1\\ansi Help text one\\par}");
  folder.Put("\\About.rtf", "{\\rtf1\\ansi About text\\par}");
  Load();
  EXPECT_EQ(window->TabMenu().Model().SelectedItem(), "Messages");
  EXPECT_FALSE(Shown(kIdRtfHelp));
  window->TabMenu().Model().SetTabFocus(2);
  EXPECT_TRUE(Shown(kIdRtfHelp));
  EXPECT_FALSE(Shown(kIdLstPhrases));
  EXPECT_TRUE(Shown(kIdCmdStart));
  EXPECT_NE(Text(Control(kIdRtfHelp)).find("Help text one"), std::string::npos);
  window->TabMenu().Model().SetTabFocus(3);
  EXPECT_NE(Text(Control(kIdRtfHelp)).find("About text"), std::string::npos);

  folder.Put("\\Help.rtf", "{\\rtf1\\ansi Help text two\\par}");
  window->TabMenu().Model().SetTabFocus(2);
  EXPECT_NE(Text(Control(kIdRtfHelp)).find("Help text two"), std::string::npos);
  std::filesystem::remove(folder.Native("\\About.rtf"));
  const std::size_t before = prompts.shown.size();
  window->TabMenu().Model().SetTabFocus(3);
  EXPECT_NE(Text(Control(kIdRtfHelp)).find("Help text two"), std::string::npos);
  EXPECT_EQ(prompts.shown.size(), before);
}

// Both lists show the marks of their files (a click on a check box saves
// its mark: the end-to-end tests' part); highlighting a category loads its
// phrases; Edit puts the highlighted phrase into its box and Add replaces
// it.
TEST_F(SettingsWindowTest, TheListsShowMarksLoadPhrasesAndTheButtonsEditThem) {
  folder.Put("\\Lists\\calm.lst", "1Breathe\r\n0Rest\r\n1Smile");
  folder.Put("\\Lists\\still.lst", "1Wait");
  folder.Put("\\_._", "1calm\r\n0still");
  Load();
  const auto checks = [&](int id) {
    std::vector<bool> shown;
    for (int i = 0; i < ListView_GetItemCount(Control(id)); ++i)
      shown.push_back(ListView_GetCheckState(Control(id), i) != 0);
    return shown;
  };
  EXPECT_EQ(checks(kIdLstMessageCategories), (std::vector<bool>{true, false}));
  EXPECT_EQ(checks(kIdLstPhrases), (std::vector<bool>{true, false, true}));
  EXPECT_EQ(ListTexts(kIdLstMessageCategories), (std::vector<std::string>{"calm", "still"}));
  for (auto [row, phrase] : {std::pair{1, "Wait"}, std::pair{0, "Breathe"}}) {
    ListView_SetItemState(Control(kIdLstMessageCategories), row, LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
    EXPECT_EQ(ListTexts(kIdLstPhrases).at(0), phrase);
  }
  ListView_SetItemState(Control(kIdLstPhrases), 0, LVIS_SELECTED | LVIS_FOCUSED,
                        LVIS_SELECTED | LVIS_FOCUSED);
  Click(kIdCmdEdit);
  EXPECT_EQ(Text(Control(kIdTxtEditWord)), "Breathe");
  ::SetWindowTextW(Control(kIdTxtEditWord), L"Breathe out");
  Click(kIdCmdAdd);
  EXPECT_EQ(folder.Get("\\Lists\\calm.lst"), "1Breathe out\r\n0Rest\r\n1Smile");
}

TEST_F(SettingsWindowTest, ANameOutsideWindows1252IsRefusedWithAMessageAndCreatesNothing) {
  Load();
  const std::size_t before = prompts.shown.size();
  ::SetWindowTextW(Control(kIdTxtEditCat), L"\u041a\u043e\u0442");  // Cyrillic, not in Windows-1252
  Click(kIdCmdAddCat);
  ASSERT_EQ(prompts.shown.size(), before + 1);
  EXPECT_EQ(prompts.shown.back().text, CategoryNameNotInCodePage());
  EXPECT_TRUE(ListTexts(kIdLstMessageCategories).empty());
}

// The timing wheels are the system's trackbars with their ends written
// beside them and their captions just before them (where a screen reader
// looks for a control's name), their ranges the wheels' own, set from the
// file; Page Down turns a wheel a page and the turn reaches the flasher
// (its caption and the file are the end-to-end tests' turns); a value the
// program sets shows.
TEST_F(SettingsWindowTest, TheWheelsAreTrackbarsWhoseTurnsReachTheFlasher) {
  folder.Put("\\__.__", "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n3");
  Load();
  char cls[64] = {};
  ::GetClassNameA(Control(kIdBvlWheel1), cls, sizeof cls);
  EXPECT_STREQ(cls, "msctls_trackbar32");
  EXPECT_EQ(::SendMessageW(Control(kIdBvlWheel1), TBM_GETRANGEMAX, 0, 0), 1000);
  EXPECT_EQ(::SendMessageW(Control(kIdBvlWheel2), TBM_GETRANGEMIN, 0, 0), 1);
  EXPECT_EQ(::SendMessageW(Control(kIdBvlWheel2), TBM_GETRANGEMAX, 0, 0), 30);
  EXPECT_EQ(Text(Control(kIdWheel1Max)), "1000");
  EXPECT_EQ(Text(Control(kIdWheel2Max)), "30");
  EXPECT_EQ(::GetWindow(Control(kIdBvlWheel1), GW_HWNDPREV), Control(kIdLblDuration));
  EXPECT_EQ(::GetWindow(Control(kIdBvlWheel2), GW_HWNDPREV), Control(kIdLblFrequency));
  // Each wheel lies inside the frame, below its caption's top.
  const RECT frame = RectIn(Control(kIdFraTimesAndDuration), form);
  for (auto [w, c] : {std::pair{kIdBvlWheel1, kIdLblDuration}, std::pair{kIdBvlWheel2, kIdLblFrequency}}) {
    const RECT wheel = RectIn(Control(w), form);
    RECT both{};
    EXPECT_TRUE(::IntersectRect(&both, &frame, &wheel) && ::EqualRect(&both, &wheel)) << w;
    EXPECT_GT(wheel.top, RectIn(Control(c), form).top) << w;
  }
  EXPECT_EQ(Position(kIdBvlWheel1), 50);
  EXPECT_EQ(Position(kIdBvlWheel2), 3);

  // Page Down moves 50 milliseconds.
  ::SendMessageW(Control(kIdBvlWheel1), WM_KEYDOWN, VK_NEXT, 1);
  ::SendMessageW(Control(kIdBvlWheel1), WM_KEYUP, VK_NEXT, 0xC0000001);
  Pump();
  EXPECT_EQ(Position(kIdBvlWheel1), 100);
  EXPECT_EQ(window->Flasher().TimerDisplayLength().Interval(), std::chrono::milliseconds(100));

  window->Timing().bvlWHEEL2.SetValue(17);
  EXPECT_EQ(Position(kIdBvlWheel2), 17);
  EXPECT_EQ(Text(Control(kIdLblFrequency)), "Frequency: 17 Second(s)");
}

// The window told that it moved to a monitor of another scaling
// (WM_DPICHANGED, as Windows sends it): it goes where it is told, every
// control stands where the layout puts it at the new dpi, and the fonts
// are made anew for it, at 150 % and 200 %; back at the first dpi
// everything is as it was.
using SettingsWindowDpi = SettingsWindowTest;

TEST_F(SettingsWindowDpi, TheLayoutAndTheFontsFollowTheWindowToAnotherScalingAndBack) {
  Load();
  const int first = ScreenDpi();
  const int other = first == 144 ? 96 : 144;
  const HWND label = Control(kIdLabel1);
  const HWND list = Control(kIdLstMessageCategories);
  const HWND box = Control(kIdTxtEditCat);
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
}

}  // namespace
}  // namespace qm::win32
