// The settings window on the screen: its controls where the layout puts
// them at this screen's dots per inch, its pages shown and hidden by the tab
// bar, the Help and About files read at each click, and the editing boxes
// and lists wired to the library, all in a real window under the system's
// own controls.
#include "settings/settings_window_win32.h"

#include <gtest/gtest.h>
// After windows.h:
#include <commctrl.h>

#include <string>
#include <vector>

#include "../../support/test_helpers_win32.h"
#include "../../support/fake_prompts.h"
#include "../../support/settings_layout_check_win32.h"
#include "../../support/temp_folder.h"
#include "library/library_editing.h"
#include "settings/settings_ids.h"

namespace qm::win32 {
namespace {

using test::ExpectSettingsLayout;
using test::Pump;
using test::RectIn;
using test::Text;

using test::FakePrompts;
using test::TempFolder;

// The screen's own answer, not the program's: pixels for twips at the
// logical dots per inch of the screen.
struct ScreenScale {
  int dpiX = 96, dpiY = 96;
  ScreenScale() {
    const HDC dc = ::GetDC(nullptr);
    dpiX = ::GetDeviceCaps(dc, LOGPIXELSX);
    dpiY = ::GetDeviceCaps(dc, LOGPIXELSY);
    ::ReleaseDC(nullptr, dc);
  }
  int X(int twips) const { return ::MulDiv(twips, dpiX, 1440); }
  int Y(int twips) const { return ::MulDiv(twips, dpiY, 1440); }
  RECT Rect(int left, int top, int width, int height) const {
    return RECT{X(left), Y(top), X(left) + X(width), Y(top) + Y(height)};
  }
};

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
  HWND Control(int id) const {
    const HWND direct = ::GetDlgItem(form, id);
    return direct ? direct : ::GetDlgItem(panel, id);
  }
  bool Shown(int id) const { return ::IsWindowVisible(Control(id)) != FALSE; }
  void Click(int id) const { ::SendMessageW(Control(id), BM_CLICK, 0, 0); }
  void Type(int id, std::wstring_view keys) const {
    for (wchar_t c : keys) ::SendMessageW(Control(id), WM_CHAR, c, 1);
  }
  std::vector<std::string> ListTexts(int id) const {
    const HWND list = Control(id);
    std::vector<std::string> texts;
    const int count = ListView_GetItemCount(list);
    for (int i = 0; i < count; ++i) {
      wchar_t text[256] = {};
      LVITEMW item{};
      item.iSubItem = 0;
      item.pszText = text;
      item.cchTextMax = 256;
      ::SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
      std::string s;
      for (const wchar_t* p = text; *p; ++p) s += static_cast<char>(*p);
      texts.push_back(s);
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
  const ScreenScale s;
  RECT client{};
  ::GetClientRect(form, &client);
  EXPECT_EQ(Text(form), "Quillmere - Settings");
  EXPECT_NE(::SendMessageW(form, WM_GETICON, ICON_BIG, 0), 0);

  // Centred on the screen when first shown.
  RECT outer{};
  ::GetWindowRect(form, &outer);
  EXPECT_NEAR((outer.left + outer.right) / 2, ::GetSystemMetrics(SM_CXSCREEN) / 2, 1);
  EXPECT_NEAR((outer.top + outer.bottom) / 2, ::GetSystemMetrics(SM_CYSCREEN) / 2, 1);

  ExpectSettingsLayout(form, s.dpiY, 0);
  const RECT panelRect = RectIn(panel, form);
  // Only the top pixel row of Stop lies inside the window.
  EXPECT_EQ(client.bottom - RectIn(Control(kIdCmdStop), form).top, 1);
  EXPECT_EQ(Text(Control(kIdCmdStop)), "Stop");

  // The rich-text view: 180, 600, the window's outer width less 450, its
  // height up to the Start row at most.
  const RECT rtf = RectIn(Control(kIdRtfHelp), form);
  EXPECT_EQ(rtf.left, s.X(180));
  EXPECT_EQ(rtf.top, s.Y(600));
  EXPECT_NEAR(rtf.right - rtf.left, (outer.right - outer.left) - s.X(450), 1);
  const int formulaHeight = (outer.bottom - outer.top) - s.Y(1700);
  EXPECT_LE(rtf.bottom, panelRect.top + s.Y(5160));
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
    const auto font = reinterpret_cast<HFONT>(::SendMessageW(Control(id), WM_GETFONT, 0, 0));
    LOGFONTW lf{};
    ASSERT_TRUE(font && ::GetObjectW(font, sizeof lf, &lf)) << id;
    EXPECT_EQ(std::wstring(lf.lfFaceName), L"Arial") << id;
    EXPECT_GE(lf.lfWeight, FW_BOLD) << id;
  }
  // What the window paints: the blue beside the labels, white in them.
  ::RedrawWindow(form, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN | RDW_ERASE);
  RECT label{};
  ::GetWindowRect(Control(kIdLabel1), &label);
  const HDC screen = ::GetDC(nullptr);
  int white = 0, blue = 0;
  for (int y = label.top; y < label.bottom; ++y)
    for (int x = label.left; x < label.right; ++x) {
      const COLORREF c = ::GetPixel(screen, x, y);
      white += c == RGB(255, 255, 255);
      blue += c == kSettingsBlue;
    }
  const COLORREF beside = ::GetPixel(screen, label.left + 2, label.bottom + 2);
  ::ReleaseDC(nullptr, screen);
  EXPECT_GT(white, 20);
  EXPECT_GT(blue, white);
  EXPECT_EQ(beside, kSettingsBlue);
}

TEST_F(SettingsWindowTest, TabsShowTheirPagesAndReadTheirFilesAtEveryClick) {
  folder.Put("\\Help.rtf", "{\\rtf1\\ansi Help text one\\par}");
  folder.Put("\\About.rtf", "{\\rtf1\\ansi About text\\par}");
  Load();
  const std::vector<int> messagesPage{kIdLabel1,   kIdLabel2,    kIdLstMessageCategories, kIdLstPhrases,
                                      kIdTxtEditWord, kIdTxtEditCat, kIdCmdAdd,            kIdCmdEdit,
                                      kIdCmdDelete, kIdCmdAddCat, kIdCmdEditCat,           kIdCmdDeleteCat,
                                      kIdFraTimesAndDuration,     kIdFraFont};
  EXPECT_EQ(window->TabMenu().Model().SelectedItem(), "Messages");
  for (int id : messagesPage) EXPECT_TRUE(Shown(id)) << id;
  EXPECT_FALSE(Shown(kIdRtfHelp));
  EXPECT_FALSE(Shown(kIdLblVersion));

  window->TabMenu().Model().SetTabFocus(2);
  EXPECT_TRUE(Shown(kIdRtfHelp));
  EXPECT_TRUE(Shown(kIdLblVersion));
  for (int id : messagesPage) EXPECT_FALSE(Shown(id)) << id;
  for (int id : {kIdCmdStart, kIdCmdClose, kIdTabMenu}) EXPECT_TRUE(Shown(id)) << id;
  EXPECT_NE(Text(Control(kIdRtfHelp)).find("Help text one"), std::string::npos);

  window->TabMenu().Model().SetTabFocus(3);
  EXPECT_NE(Text(Control(kIdRtfHelp)).find("About text"), std::string::npos);
  EXPECT_TRUE(Shown(kIdLblVersion));

  // A changed file shows at the next click; a missing one leaves the box as
  // it was, without a message.
  folder.Put("\\Help.rtf", "{\\rtf1\\ansi Help text two\\par}");
  window->TabMenu().Model().SetTabFocus(2);
  EXPECT_NE(Text(Control(kIdRtfHelp)).find("Help text two"), std::string::npos);
  std::filesystem::remove(folder.Native("\\About.rtf"));
  const std::size_t before = prompts.shown.size();
  window->TabMenu().Model().SetTabFocus(3);
  EXPECT_TRUE(Shown(kIdRtfHelp));
  EXPECT_NE(Text(Control(kIdRtfHelp)).find("Help text two"), std::string::npos);
  EXPECT_EQ(prompts.shown.size(), before);

  window->TabMenu().Model().SetTabFocus(1);
  for (int id : messagesPage) EXPECT_TRUE(Shown(id)) << id;
  EXPECT_FALSE(Shown(kIdRtfHelp));
  EXPECT_FALSE(Shown(kIdLblVersion));
}

TEST_F(SettingsWindowTest, BothListsShowTheMarksOfTheirFiles) {
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
}

TEST_F(SettingsWindowTest, TypedKeysAndButtonsEditTheLibraryThroughTheBoxesAndLists) {
  folder.Put("\\Lists\\calm.lst", "1Breathe");
  folder.Put("\\Lists\\still.lst", "1Rest");
  folder.Put("\\_._", "0calm\r\n0still");
  Load();
  EXPECT_EQ(ListTexts(kIdLstMessageCategories), (std::vector<std::string>{"calm", "still"}));
  EXPECT_EQ(ListTexts(kIdLstPhrases), (std::vector<std::string>{"Breathe"}));

  // A click on a check box saves the mark.
  ListView_SetCheckState(Control(kIdLstMessageCategories), 0, TRUE);
  EXPECT_EQ(folder.Get("\\_._"), "1calm\r\n0still");

  // Highlighting a category in the list loads its phrases.
  ListView_SetItemState(Control(kIdLstMessageCategories), 1, LVIS_SELECTED | LVIS_FOCUSED,
                        LVIS_SELECTED | LVIS_FOCUSED);
  EXPECT_EQ(ListTexts(kIdLstPhrases), (std::vector<std::string>{"Rest"}));
  ListView_SetItemState(Control(kIdLstMessageCategories), 0, LVIS_SELECTED | LVIS_FOCUSED,
                        LVIS_SELECTED | LVIS_FOCUSED);
  EXPECT_EQ(ListTexts(kIdLstPhrases), (std::vector<std::string>{"Breathe"}));

  // Edit puts the phrase into its box; Add replaces it.
  ListView_SetItemState(Control(kIdLstPhrases), 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  Click(kIdCmdEdit);
  EXPECT_EQ(Text(Control(kIdTxtEditWord)), "Breathe");
  ::SetWindowTextW(Control(kIdTxtEditWord), L"Breathe out");
  Click(kIdCmdAdd);
  EXPECT_EQ(folder.Get("\\Lists\\calm.lst"), "1Breathe out");
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

}  // namespace
}  // namespace qm::win32
