#include "settings/tray.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace qm {
namespace {

using Log = std::vector<std::string>;

// Records the commands, and what the menu showed while open; answers with
// a scripted choice.
class Recorder final : public TrayCommands, public TrayPopup {
 public:
  void PauseForTrayMenu() override { log.push_back("pause"); }
  bool BringOpenMessageBoxToFront() override {
    if (boxOpen) log.push_back("box to front");
    return boxOpen;
  }
  void mnuSettings_Click() override { log.push_back("settings"); }
  void mnuStart_Click() override { log.push_back("start"); }
  void mnuStop_Click() override { log.push_back("stop"); }
  void mnuExit_Click() override { log.push_back("exit"); }
  TrayMenuItem Popup(const TrayMenu& menu) override {
    log.push_back(menu.IsOpen() ? "menu open" : "menu shown while closed");
    if (whileOpen) whileOpen();
    return choice;
  }
  Log log;
  bool boxOpen = false;
  TrayMenuItem choice = TrayMenuItem::None;
  std::function<void()> whileOpen;
};

// The items' captions and order are checked on the drawn menu in the
// shell test; here each command id names its item.
TEST(TrayMenuTest, EachCommandIdNamesItsItem) {
  for (const TrayMenuEntry& e : TrayMenu::Entries()) {
    if (!e.IsSeparator()) {
      EXPECT_EQ(TrayMenu::ItemOfCommand(e.commandId), e.item) << e.caption;
    }
  }
  EXPECT_EQ(TrayMenu::ItemOfCommand(0), TrayMenuItem::None);
}

TEST(TrayMenuTest, ALeftOrRightReleasePausesOpensTheMenuThenRunsTheChoice) {
  Recorder r;
  TrayMenu menu(r);
  for (TrayMenuItem item : {TrayMenuItem::Start, TrayMenuItem::Stop, TrayMenuItem::Exit, TrayMenuItem::None,
                            TrayMenuItem::Settings}) {
    r.choice = item;
    EXPECT_TRUE(menu.Form_MouseMove(item == TrayMenuItem::Stop ? 0x205 : 0x202, r));
    EXPECT_FALSE(menu.IsOpen());
  }
  // Settings is greyed until the settings window exists.
  EXPECT_EQ(r.log, (Log{"pause", "menu open", "start", "pause", "menu open", "stop", "pause", "menu open",
                        "exit", "pause", "menu open", "pause", "menu open"}));
  r.log.clear();
  menu.mnuSettingsEnabled = true;
  menu.Form_MouseMove(0x202, r);
  EXPECT_EQ(r.log, (Log{"pause", "menu open", "settings"}));
}

TEST(TrayMenuTest, MovesPressesAndClicksWhileOpenDoNothing) {
  Recorder r;
  TrayMenu menu(r);
  for (unsigned x : {0x200u, 0x201u, 0x203u, 0x204u, 0x206u, 0x208u, 0u, 514u + 65536u})
    EXPECT_FALSE(menu.Form_MouseMove(x, r)) << x;
  EXPECT_TRUE(r.log.empty());

  r.whileOpen = [&] { EXPECT_FALSE(menu.Form_MouseMove(0x205, r)); };
  menu.Form_MouseMove(0x202, r);
  EXPECT_EQ(r.log, (Log{"pause", "menu open"}));

  // The exit question chosen from the menu is open: a click on the icon
  // raises it, and neither pauses nor opens another menu.
  r.log.clear();
  r.choice = TrayMenuItem::Exit;
  menu.mnuSettingsEnabled = true;
  r.whileOpen = nullptr;
  menu.Form_MouseMove(0x202, r);
  r.boxOpen = true;
  EXPECT_FALSE(menu.Form_MouseMove(0x205, r));
  EXPECT_FALSE(menu.Form_MouseMove(0x202, r));
  EXPECT_EQ(r.log, (Log{"pause", "menu open", "exit", "box to front", "box to front"}));

  r.whileOpen = [] { throw std::runtime_error("menu failed"); };
  r.boxOpen = false;
  EXPECT_THROW(menu.Form_MouseMove(0x202, r), std::runtime_error);
  EXPECT_FALSE(menu.IsOpen());
}

TEST(TrayMenuTest, OnlyStartAndStopCarryCheckMarksAndOnlySettingsIsEverGreyed) {
  Recorder r;
  TrayMenu menu(r);
  for (bool start : {false, true}) {
    menu.mnuStartChecked = start;
    menu.mnuStopChecked = !start;
    EXPECT_EQ(menu.Checked(TrayMenuItem::Start), start);
    EXPECT_EQ(menu.Checked(TrayMenuItem::Stop), !start);
    for (TrayMenuItem item : {TrayMenuItem::Settings, TrayMenuItem::Exit, TrayMenuItem::None})
      EXPECT_FALSE(menu.Checked(item)) << static_cast<int>(item);
  }
  EXPECT_FALSE(menu.Enabled(TrayMenuItem::Settings));
  for (TrayMenuItem item : {TrayMenuItem::Start, TrayMenuItem::Stop, TrayMenuItem::Exit})
    EXPECT_TRUE(menu.Enabled(item));
}

TEST(TrayCallbackTest, TellsTheTrayCallbackFromTheOwnersOwnMouseMove) {
  EXPECT_EQ(TrayCallbackMouseMessage(1, 0x202), 0x202u);
  EXPECT_EQ(TrayCallbackMouseMessage(1, 0x200), 0x200u);  // the first mouse message
  EXPECT_EQ(TrayCallbackMouseMessage(1, 0x20E), 0x20Eu);  // and the last
  // Real moves at x 514: no button held, below the top row, another button
  // held; and x outside the mouse messages.
  EXPECT_EQ(TrayCallbackMouseMessage(0, 0x202), std::nullopt);
  EXPECT_EQ(TrayCallbackMouseMessage(1, 0x00010202), std::nullopt);
  EXPECT_EQ(TrayCallbackMouseMessage(2, 0x202), std::nullopt);
  EXPECT_EQ(TrayCallbackMouseMessage(1, 100), std::nullopt);
  EXPECT_EQ(TrayCallbackMouseMessage(1, 0x20F), std::nullopt);
}

TEST(TrayTipTest, TipsAreCutTo127CharactersOrAtANul) {
  EXPECT_EQ(FitTrayTip("Click for menu options."), "Click for menu options.");
  EXPECT_EQ(FitTrayTip(std::string(200, 'x')), std::string(127, 'x'));
  EXPECT_EQ(FitTrayTip(std::string_view("ab\0cd", 5)), "ab");
}

}  // namespace
}  // namespace qm
