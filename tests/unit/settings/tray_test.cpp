#include "settings/tray.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace qm {
namespace {

class RecordingCommands final : public TrayCommands {
 public:
  void PauseForTrayMenu() override { log.push_back("pause"); }
  void mnuSettings_Click() override { log.push_back("settings"); }
  void mnuStart_Click() override { log.push_back("start"); }
  void mnuStop_Click() override { log.push_back("stop"); }
  void mnuExit_Click() override { log.push_back("exit"); }
  std::vector<std::string> log;
};

// Records what the menu showed while it was open and answers with a choice.
class ScriptedPopup final : public TrayPopup {
 public:
  explicit ScriptedPopup(RecordingCommands& commands) : commands_(commands) {}
  TrayMenuItem Popup(const TrayMenu& menu) override {
    commands_.log.push_back(menu.IsOpen() ? "menu open" : "menu shown while closed");
    if (whileOpen) whileOpen();
    return choice;
  }
  TrayMenuItem choice = TrayMenuItem::None;
  std::function<void()> whileOpen;

 private:
  RecordingCommands& commands_;
};

using Log = std::vector<std::string>;

TEST(TrayMenuTest, ListsItsItemsTopToBottom) {
  std::vector<std::string> shown;
  std::set<unsigned> ids;
  for (const TrayMenuEntry& e : TrayMenu::Entries()) {
    shown.push_back(e.IsSeparator() ? "-" : std::string(e.caption));
    if (!e.IsSeparator()) {
      ids.insert(e.commandId);
      EXPECT_EQ(TrayMenu::ItemOfCommand(e.commandId), e.item);
    }
  }
  EXPECT_EQ(shown, (std::vector<std::string>{"Settings", "-", "Start", "Stop", "-", "Exit Application"}));
  EXPECT_EQ(ids.size(), 4u);
  EXPECT_FALSE(ids.contains(0));
  EXPECT_EQ(TrayMenu::ItemOfCommand(0), TrayMenuItem::None);
  EXPECT_EQ(TrayMenu::ItemOfCommand(99), TrayMenuItem::None);
}

TEST(TrayMenuTest, ALeftOrRightReleasePausesThenOpensTheMenuThenRunsTheChoice) {
  for (unsigned release : {0x202u, 0x205u}) {
    RecordingCommands commands;
    TrayMenu menu(commands);
    ScriptedPopup popup(commands);
    popup.choice = TrayMenuItem::Stop;
    EXPECT_TRUE(menu.Form_MouseMove(release, popup));
    EXPECT_EQ(commands.log, (Log{"pause", "menu open", "stop"}));
    EXPECT_FALSE(menu.IsOpen());
  }
}

TEST(TrayMenuTest, MovesPressesAndDoubleClicksDoNothing) {
  RecordingCommands commands;
  TrayMenu menu(commands);
  ScriptedPopup popup(commands);
  for (unsigned x : {0x200u, 0x201u, 0x203u, 0x204u, 0x206u, 0x207u, 0x208u, 0u, 514u + 65536u})
    EXPECT_FALSE(menu.Form_MouseMove(x, popup)) << x;
  EXPECT_TRUE(commands.log.empty());
}

TEST(TrayMenuTest, EachItemRunsItsCommandAndSettingsOnlyOnceEnabled) {
  RecordingCommands commands;
  TrayMenu menu(commands);
  ScriptedPopup popup(commands);
  for (TrayMenuItem item : {TrayMenuItem::Settings, TrayMenuItem::Start, TrayMenuItem::Stop,
                            TrayMenuItem::Exit, TrayMenuItem::None}) {
    popup.choice = item;
    menu.Form_MouseMove(0x202, popup);
  }
  EXPECT_EQ(commands.log, (Log{"pause", "menu open", "pause", "menu open", "start", "pause", "menu open",
                               "stop", "pause", "menu open", "exit", "pause", "menu open"}));
  EXPECT_FALSE(menu.Enabled(TrayMenuItem::Settings));

  commands.log.clear();
  menu.mnuSettingsEnabled = true;
  EXPECT_TRUE(menu.Enabled(TrayMenuItem::Settings));
  menu.Run(TrayMenuItem::Settings);
  EXPECT_EQ(commands.log, (Log{"settings"}));
}

TEST(TrayMenuTest, CheckMarksFollowTheirFlags) {
  RecordingCommands commands;
  TrayMenu menu(commands);
  EXPECT_FALSE(menu.Checked(TrayMenuItem::Start));
  EXPECT_FALSE(menu.Checked(TrayMenuItem::Stop));
  menu.mnuStopChecked = true;
  EXPECT_FALSE(menu.Checked(TrayMenuItem::Start));
  EXPECT_TRUE(menu.Checked(TrayMenuItem::Stop));
  menu.mnuStartChecked = true;
  EXPECT_TRUE(menu.Checked(TrayMenuItem::Start));
  EXPECT_FALSE(menu.Checked(TrayMenuItem::Exit));
}

TEST(TrayMenuTest, AClickWhileTheMenuIsOpenIsIgnoredAndAFailingMenuLeavesItClosed) {
  RecordingCommands commands;
  TrayMenu menu(commands);
  ScriptedPopup popup(commands);
  popup.whileOpen = [&] { EXPECT_FALSE(menu.Form_MouseMove(0x205, popup)); };
  popup.choice = TrayMenuItem::Start;
  menu.Form_MouseMove(0x202, popup);
  EXPECT_EQ(commands.log, (Log{"pause", "menu open", "start"}));

  popup.whileOpen = [] { throw std::runtime_error("menu failed"); };
  EXPECT_THROW(menu.Form_MouseMove(0x202, popup), std::runtime_error);
  EXPECT_FALSE(menu.IsOpen());
}

TEST(TrayCallbackTest, TellsTheTrayCallbackFromTheOwnersOwnMouseMove) {
  EXPECT_EQ(TrayCallbackMouseMessage(1, 0x202), 0x202u);
  EXPECT_EQ(TrayCallbackMouseMessage(1, 0x205), 0x205u);
  EXPECT_EQ(TrayCallbackMouseMessage(1, 0x200), 0x200u);
  // A real move at x 514: no button held, or below the top row, or another
  // button held, or x outside the mouse messages.
  EXPECT_EQ(TrayCallbackMouseMessage(0, 0x202), std::nullopt);
  EXPECT_EQ(TrayCallbackMouseMessage(1, 0x00010202), std::nullopt);
  EXPECT_EQ(TrayCallbackMouseMessage(2, 0x202), std::nullopt);
  EXPECT_EQ(TrayCallbackMouseMessage(1, 100), std::nullopt);
  EXPECT_EQ(TrayCallbackMouseMessage(1, 0x20F), std::nullopt);
}

TEST(TrayTipTest, TipsAreCutTo127CharactersOrAtANul) {
  EXPECT_EQ(FitTrayTip("Click for menu options."), "Click for menu options.");
  const std::string longTip(200, 'x');
  EXPECT_EQ(FitTrayTip(longTip), std::string(127, 'x'));
  EXPECT_EQ(FitTrayTip(std::string(127, 'y')), std::string(127, 'y'));
  EXPECT_EQ(FitTrayTip(std::string_view("ab\0cd", 5)), "ab");
  EXPECT_EQ(FitTrayTip(""), "");
}

}  // namespace
}  // namespace qm
