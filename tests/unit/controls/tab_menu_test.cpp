// The tab bar's model: where buttons go, which picture each shows, and the
// events that clicks and mouse moves raise.
#include "controls/tab_menu.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace qm {
namespace {

// A bar with "Messages", "Help", "About" (elements 2, 3, 4) that records
// its events as "click:<SelectedItem>" and "menu:<SelectedItem>".
struct SettingsBar {
  TabMenu bar;
  std::vector<std::string> raised;

  SettingsBar() {
    bar.events.ItemClick = [this] { raised.push_back("click:" + bar.SelectedItem()); };
    bar.events.ItemMenuClick = [this] { raised.push_back("menu:" + bar.SelectedItem()); };
    bar.AddButton(1, "Messages");
    bar.AddButton(1, "Help");
    bar.AddButton(1, "About");
  }
  TabButton& Messages() { return bar.Tab(2); }
  TabButton& Help() { return bar.Tab(3); }
  TabButton& About() { return bar.Tab(4); }
};

void ExpectNormal(const TabButton& tab) {
  EXPECT_FALSE(tab.HasFocus()) << tab.ButtonText();
  EXPECT_EQ(tab.ImgButton(), TabPicture::Normal) << tab.ButtonText();
  EXPECT_EQ(tab.LblTextColor(), 0x00400000u) << tab.ButtonText();
}

void ExpectFocused(const TabButton& tab) {
  EXPECT_TRUE(tab.HasFocus()) << tab.ButtonText();
  EXPECT_EQ(tab.ImgButton(), TabPicture::Down) << tab.ButtonText();
  EXPECT_EQ(tab.LblTextColor(), 0x00FFFFFFu) << tab.ButtonText();
}

// Each button goes at the right-hand end: tabs 1050 wide with their
// dividers inside at their right edges, menu buttons 405 wide. Other styles
// add nothing and raise nothing.
TEST(TabMenuLayout, AddButtonPutsEachButtonAtTheRightHandEnd) {
  SettingsBar s;
  std::vector<const TabElement*> created;
  s.bar.ElementCreated = [&](TabElement& e) { created.push_back(&e); };
  for (std::int16_t style : {2, 1, 0, 3, -1, 2, 2, 1}) s.bar.AddButton(style, "x");
  ASSERT_EQ(s.bar.TabButtonUBound(), 6);
  ASSERT_EQ(s.bar.TabButtonMenuUBound(), 4);
  EXPECT_TRUE(s.raised.empty());

  std::vector<int> lefts;
  for (std::int16_t i = 2; i <= 4; ++i) lefts.push_back(s.bar.Tab(i).Bounds().left);
  for (const TabElement* e : created) lefts.push_back(e->Bounds().left);
  EXPECT_EQ(lefts, (std::vector<int>{0, 1050, 2100, 3150, 3555, 4605, 5010, 5415}));
  for (std::int16_t i = 2; i <= 6; ++i) {
    const TabButton& tab = s.bar.Tab(i);
    EXPECT_EQ(tab.Bounds(), (TwipRect{tab.Bounds().left, 0, 1050, 525})) << i;
    EXPECT_TRUE(tab.Visible());
    const TwipRect sep = tab.Separator().Bounds();
    EXPECT_EQ(sep.left, tab.ImgButtonRect().width);
    EXPECT_LE(sep.left + sep.width, tab.Bounds().width);
  }
  EXPECT_EQ(s.bar.MenuButton(2).Bounds().width, 405);
  EXPECT_TRUE(s.bar.MenuButton(2).Visible());
  EXPECT_EQ(s.About().LblText(), "About");
  EXPECT_FALSE(s.bar.Tab(1).Visible() || s.bar.MenuButton(1).Visible()) << "the templates stay hidden";
}

TEST(TabMenuLayout, APlaceBeyond16BitsIsRefusedBeforeAnythingIsAdded) {
  TabMenu bar;
  for (int i = 0; i < 32; ++i) bar.AddButton(1, "t");  // the 32nd at 32550
  EXPECT_EQ(bar.Tab(33).Bounds().left, 32550);
  EXPECT_THROW(bar.AddButton(1, "t"), std::overflow_error);
  EXPECT_THROW(bar.AddButton(2, ""), std::overflow_error);
  EXPECT_EQ(bar.TabButtonUBound(), 33);
  EXPECT_EQ(bar.TabButtonMenuUBound(), 1);
  EXPECT_THROW(bar.Tab(0), std::out_of_range);
  EXPECT_THROW(bar.Tab(34), std::out_of_range);
  EXPECT_THROW(bar.MenuButton(2), std::out_of_range);
}

// A new caption tells the window to repaint; the same caption again does not.
TEST(TabMenuLayout, SetTextRepaintsOnlyForANewCaption) {
  SettingsBar s;
  int changes = 0;
  s.Help().Changed = [&] { ++changes; };
  s.Help().SetText("Help");
  EXPECT_EQ(changes, 0);
  s.Help().SetText("Hilfe");
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(s.Help().LblText(), "Hilfe");
}

TEST(TabMenuClicks, SetTabFocusSelectsTheNthAddedTabAndReclickingRaisesAgain) {
  SettingsBar s;
  s.bar.SetTabFocus(1);
  EXPECT_EQ(s.raised, (std::vector<std::string>{"click:Messages"}));
  ExpectFocused(s.Messages());
  ExpectNormal(s.Help());
  ExpectNormal(s.About());

  s.bar.SetTabFocus(3);
  s.About().ImgButton_Click();
  EXPECT_EQ(s.raised, (std::vector<std::string>{"click:Messages", "click:About", "click:About"}));
  ExpectNormal(s.Messages());
  ExpectFocused(s.About());

  s.bar.SetTabFocus(4);  // a number without a tab does nothing
  EXPECT_EQ(s.raised.size(), 3u);
}

TEST(TabMenuClicks, TheReceiverRunsBeforeTheClickedTabTakesItsFocusedLook) {
  SettingsBar s;
  s.bar.SetTabFocus(1);
  bool checked = false;
  s.bar.events.ItemClick = [&] {
    EXPECT_EQ(s.bar.SelectedItem(), "Help");
    ExpectNormal(s.Messages());  // the others have already lost the focus
    // The clicked one is only pressed: its picture, not its caption colour.
    EXPECT_FALSE(s.Help().HasFocus());
    EXPECT_EQ(s.Help().ImgButton(), TabPicture::Down);
    EXPECT_EQ(s.Help().LblTextColor(), 0x00400000u);
    // The receiver may grow the bar while it handles the click.
    for (int i = 0; i < 20; ++i) s.bar.AddButton(1, "More");
    checked = true;
  };
  s.Help().ImgButton_MouseDown();
  s.Help().ImgButton_Click();
  EXPECT_TRUE(checked);
  ExpectFocused(s.Help());
  ExpectNormal(s.Messages());
}

TEST(TabMenuClicks, AMenuButtonReportsItsNumberLessOneAndLeavesTheTabsAlone) {
  SettingsBar s;
  s.bar.AddButton(2, "ignored");
  s.bar.AddButton(2, "");
  s.bar.SetTabFocus(1);
  s.raised.clear();

  s.bar.MenuButton(2).ImgButton_Click();
  s.bar.MenuButton(3).ImgButton_Click();
  EXPECT_EQ(s.raised, (std::vector<std::string>{"menu:1", "menu:2"}));
  ExpectFocused(s.Messages());
  EXPECT_EQ(s.bar.MenuButton(2).ImgButton(), TabPicture::Normal) << "a menu button has no focused look";
}

TEST(TabMenuHover, HoverMovesFromButtonToButtonButNeverOntoTheFocusedTab) {
  SettingsBar s;
  s.bar.AddButton(2, "");
  int redraws = 0;
  s.Help().Changed = [&] { ++redraws; };

  s.Help().ImgButton_MouseDown();
  s.Help().ImgButton_MouseMove();  // dragged without releasing
  s.Help().ImgButton_MouseMove();
  EXPECT_EQ(s.Help().ImgButton(), TabPicture::Over);
  EXPECT_EQ(redraws, 2) << "only a change of look asks for a redraw";

  s.About().ImgButton_MouseMove();
  EXPECT_EQ(s.About().ImgButton(), TabPicture::Over);
  EXPECT_EQ(s.Help().ImgButton(), TabPicture::Normal);

  TabButtonMenu& menu = s.bar.MenuButton(2);
  menu.ImgButton_MouseMove();
  EXPECT_EQ(menu.ImgButton(), TabPicture::Over);
  EXPECT_EQ(s.About().ImgButton(), TabPicture::Normal);

  // The tab with the menu button's element number does not take the menu
  // button's hover away: the bar skips that number in both lists.
  s.Messages().ImgButton_MouseMove();
  EXPECT_EQ(menu.ImgButton(), TabPicture::Over);
  s.Help().ImgButton_MouseMove();
  EXPECT_EQ(menu.ImgButton(), TabPicture::Normal);

  // The focused tab keeps its look, yet a move over it takes the hover
  // away from the others.
  s.bar.SetTabFocus(1);
  s.Messages().ImgButton_MouseMove();
  s.Help().ImgButton_MouseMove();
  EXPECT_EQ(s.Help().ImgButton(), TabPicture::Over);
  s.Messages().ImgButton_MouseMove();
  ExpectFocused(s.Messages());
  EXPECT_EQ(s.Help().ImgButton(), TabPicture::Normal);
}

}  // namespace
}  // namespace qm
