#include "run/run_control.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "../../support/fake_clock.h"
#include "../../support/fake_prompts.h"
#include "../../support/flasher_doubles.h"
#include "../../support/temp_folder.h"

namespace qm {
namespace {

using namespace std::chrono_literals;
using Phrases = std::vector<std::string>;

class HostDouble final : public RunControlHost {
 public:
  bool SettingsWindowVisible() const override { return settingsVisible; }
  bool TrayMenuOpen() const override { return menuOpen; }
  void ShowStatus(std::string_view tip, StatusIcon icon) override {
    trayTip = tip;
    trayIcon = icon;
  }
  void SetMenuChecks(bool start, bool stop) override {
    startChecked = start;
    stopChecked = stop;
  }
  void ShowSettingsWindow() override { settingsVisible = true; }
  void HideSettingsWindow() override { settingsVisible = false; }
  FontSpec PreviewFont() const override { return previewFont; }
  void DoEvents() override { ++eventsRun; }
  bool MessageBoxOpen() const override { return boxOpen; }

  bool settingsVisible = true;  // the window is shown while it loads
  bool menuOpen = false;
  bool boxOpen = false;
  std::string trayTip = "Click for menu options.";
  StatusIcon trayIcon = StatusIcon::Running;
  bool startChecked = false;
  bool stopChecked = false;
  FontSpec previewFont{"Verdana", 20, true, false};
  int eventsRun = 0;
};

class RunControlTest : public ::testing::Test {
 protected:
  RunControlTest() {
    frequency->SetInterval(2000ms);
    display->SetInterval(100ms);
    flasher.Form_Load({1024, 768, 15, 15}, 0);
  }

  void Library(std::string_view state, std::initializer_list<std::pair<std::string, std::string>> lists) {
    folder.Put("\\_._", state);
    for (const auto& [name, content] : lists) folder.Put("\\Lists\\" + name + ".lst", content);
  }
  // The phrases shown while time passes, one per interval tick.
  Phrases Shown(int ticks) {
    Phrases seen;
    for (int i = 0; i < ticks; ++i) {
      clock.Advance(frequency->Interval());
      seen.push_back(view.labelVisible ? view.caption : "<nothing>");
      clock.Advance(display->Interval());
    }
    return seen;
  }

  test::TempFolder folder;
  test::FakeClock clock;
  std::unique_ptr<test::FakeClock::FakeTimer> frequency = clock.MakeTimer();
  std::unique_ptr<test::FakeClock::FakeTimer> display = clock.MakeTimer();
  test::StateOverlay view;
  test::FixedRandom random;
  HostDouble host;
  frmMessage flasher{view, *frequency, *display, random, host};
  RunControl run{flasher, host, SystemFileSystem(), folder.Path()};
  test::FakePrompts prompts;
};

TEST_F(RunControlTest, GathersCheckedCategoriesInStateFileOrderWithoutDuplicates) {
  Library("1Sleep\r\n0Focus\r\n7Calm\r\nxHealth\r\n\r\n1Missing",
          {{"Sleep", "1Rest now\r\n1I am calm\r\n0Unchecked phrase"},
           {"Focus", "1Never gathered"},
           {"Calm", "1I AM CALM\r\n1Breathe\r\n1"},
           {"Health", "1Not checked either"}});
  // Any digit but 0 checks a category; the first spelling of a phrase wins;
  // a phrase line holding only its mark is the empty phrase.
  EXPECT_EQ(run.GetCheckedPhrases(), (Phrases{"Rest now", "I am calm", "Breathe", ""}));
}

TEST_F(RunControlTest, GatheringALargeLibraryKeepsWhatOneByOneAddingGives) {
  // Phrases drawn from a small vocabulary, so that many repeat in other
  // cases (accented capitals included), over categories checked in an
  // order unlike their names', one of them with LF line ends.
  std::minstd_rand draw(7);
  const char* words[] = {"calm", "Sleep", "\xC9T\xC9", "\xE9t\xE9", "Rest",
                         "REST", "now",   "\x8Cuvre",  "\x9Cuvre"};
  std::string state;
  PhraseList expected;
  for (int c = 0; c < 12; ++c) {
    const std::string name = "Cat" + std::to_string((c * 7) % 12);
    state += (c % 4 == 3 ? "0" : "1") + name + "\r\n";
    std::string file;
    for (int p = 0; p < 300; ++p) {
      std::string phrase = std::string(words[draw() % 9]) + " " + words[draw() % 9] + " " + words[draw() % 9];
      const bool checked = draw() % 5 != 0;
      file += (checked ? "1" : "0") + phrase + (c == 5 ? "\n" : "\r\n");
      if (checked && c % 4 != 3) RunControl::AddToArray(expected, phrase);
    }
    folder.Put("\\Lists\\" + name + ".lst", file);
  }
  folder.Put("\\_._", state);
  ASSERT_TRUE(expected.has_value());
  EXPECT_LT(expected->size(), 9u * 9u * 9u);
  EXPECT_EQ(run.GetCheckedPhrases(), expected);
}

TEST_F(RunControlTest, AHandEditedStateFileCannotGatherFromOutsideTheListsFolder) {
  folder.Put("\\secret.lst", "1Outside the folder");
  folder.Put("\\Lists\\Inner\\deep.lst", "1Below the folder");
  Library("1..\\secret\r\n1../secret\r\n1Inner\\deep\r\n1Inner/deep\r\n1C:deep\r\n1Calm",
          {{"Calm", "1Inside"}});
  EXPECT_EQ(run.GetCheckedPhrases(), Phrases{"Inside"});
}

TEST_F(RunControlTest, GathersNothingFromMissingOrBlankFiles) {
  EXPECT_EQ(run.GetCheckedPhrases(), std::nullopt);
  Library("1Blank\r\n1Empty", {{"Blank", "   "}, {"Empty", ""}});
  EXPECT_EQ(run.GetCheckedPhrases(), std::nullopt);
  EXPECT_FALSE(RunControl::InArray(std::nullopt, "x"));
}

TEST_F(RunControlTest, StartButtonGathersHandsOverTheFontAndStarts) {
  Library("1Calm", {{"Calm", "1One\r\n1Two\r\n1Three"}});
  run.cmdStart_Click();
  EXPECT_FALSE(host.settingsVisible);
  EXPECT_TRUE(view.visible);
  EXPECT_EQ(view.font, host.previewFont);
  EXPECT_EQ(host.trayTip, "Subliminal Message are ON.");
  EXPECT_EQ(host.trayIcon, StatusIcon::Running);
  EXPECT_TRUE(host.startChecked);
  EXPECT_FALSE(host.stopChecked);
  // The index is 0 after creation, so the second phrase comes first.
  EXPECT_EQ(Shown(4), (Phrases{"Two", "Three", "One", "Two"}));
}

// Tray Stop sets the status, icon and marks, and the watchdog leaves the
// display stopped; Tray Start resumes with the list of the last Start
// button press, not what the files now hold.
TEST_F(RunControlTest, TrayStopHoldsThroughTheWatchdogAndTrayStartResumesTheLastList) {
  Library("1Calm", {{"Calm", "1One\r\n1Two"}});
  run.cmdStart_Click();
  run.PauseForTrayMenu();
  run.mnuStop_Click();
  EXPECT_EQ(host.trayTip, "Subliminal Message are OFF.");
  EXPECT_EQ(host.trayIcon, StatusIcon::Stopped);
  EXPECT_FALSE(host.startChecked);
  EXPECT_TRUE(host.stopChecked);
  for (int i = 0; i < 5; ++i) run.STimer1_Timer();
  clock.Advance(10s);
  EXPECT_FALSE(view.visible);
  EXPECT_FALSE(view.labelVisible);

  Library("1Other", {{"Other", "1Elsewhere"}});
  run.mnuStart_Click();
  EXPECT_EQ(Shown(2), (Phrases{"Two", "One"}));
}

// While the menu or the exit question it opened is up the watchdog waits;
// once both are gone (the question answered No) the display resumes.
TEST_F(RunControlTest, ADismissedTrayMenuResumesAtTheNextWatchdogTick) {
  Library("1Calm", {{"Calm", "1One\r\n1Two"}});
  run.cmdStart_Click();
  run.PauseForTrayMenu();
  for (auto [menu, box] : {std::pair{true, false}, std::pair{false, true}}) {
    host.menuOpen = menu;
    host.boxOpen = box;
    run.STimer1_Timer();
    EXPECT_TRUE(flasher.bStopped);
    EXPECT_FALSE(view.visible);
  }
  host.boxOpen = false;
  run.STimer1_Timer();
  EXPECT_FALSE(flasher.bStopped);
  EXPECT_TRUE(view.visible);
  EXPECT_EQ(Shown(1), (Phrases{"Two"}));
}

TEST_F(RunControlTest, StopButtonHoldsUntilTheSettingsWindowIsHidden) {
  Library("1Calm", {{"Calm", "1One\r\n1Two"}});
  run.cmdStart_Click();
  host.ShowSettingsWindow();
  run.cmdStop_Click();
  EXPECT_TRUE(flasher.bStopped);
  EXPECT_FALSE(view.visible);
  // Status, icon and check marks stay as they were.
  EXPECT_EQ(host.trayTip, "Subliminal Message are ON.");
  EXPECT_TRUE(host.startChecked);
  run.STimer1_Timer();
  EXPECT_TRUE(flasher.bStopped);
  host.HideSettingsWindow();
  run.STimer1_Timer();
  EXPECT_FALSE(flasher.bStopped);
  EXPECT_TRUE(view.visible);
}

TEST_F(RunControlTest, AFullScreenProgramPausesTheDisplayUntilItEndsButNotAStop) {
  test::SetAttention user;
  flasher.HeedUser(&user);
  Library("1Calm", {{"Calm", "1One\r\n1Two"}});
  run.cmdStart_Click();
  clock.Advance(frequency->Interval());  // "Two" is up when a game starts
  user.FullScreenProgram();
  run.STimer1_Timer();
  EXPECT_TRUE(flasher.bStopped);
  EXPECT_FALSE(view.visible);
  EXPECT_FALSE(view.labelVisible);
  user.foreground = {};
  run.STimer1_Timer();
  EXPECT_FALSE(flasher.bStopped);
  EXPECT_TRUE(view.visible);
  clock.Advance(display->Interval());  // the paused phrase's time runs out
  EXPECT_EQ(Shown(1), (Phrases{"One"}));

  // Stopped during a presentation: still stopped after it.
  user.state = NotificationState::PresentationMode;
  run.STimer1_Timer();
  run.mnuStop_Click();
  user.state.reset();
  run.STimer1_Timer();
  EXPECT_TRUE(flasher.bStopped);
  EXPECT_FALSE(view.visible);
}

TEST_F(RunControlTest, TheWatchdogRestartsAHaltedCycle) {
  Library("1Calm", {{"Calm", "1One\r\n1Two"}});
  run.cmdStart_Click();
  // Settings shown from the tray menu while the display runs: at the next
  // interval tick the phrase is put in, but neither timer is armed again.
  host.ShowSettingsWindow();
  clock.Advance(frequency->Interval());
  EXPECT_FALSE(frequency->Enabled());
  EXPECT_FALSE(display->Enabled());
  host.HideSettingsWindow();
  run.STimer1_Timer();
  EXPECT_TRUE(frequency->Enabled());
  EXPECT_FALSE(view.labelVisible);
}

TEST_F(RunControlTest, StartUpStopsTheFlasherThenStartsUnlessItIsAFirstRun) {
  Library("1Calm", {{"Calm", "1One\r\n1Two"}});
  run.StartUpBegin();
  EXPECT_TRUE(flasher.bStopped);
  EXPECT_EQ(flasher.MessageList, (Phrases{"One", "Two"}));
  EXPECT_EQ(run.StatusText(), "Click for menu options.");

  run.StartUpEnd("quillmere.exe /FirstRun", prompts);
  EXPECT_TRUE(host.settingsVisible);
  EXPECT_GE(host.eventsRun, 1);
  ASSERT_EQ(prompts.shown.size(), 1u);
  EXPECT_EQ(prompts.shown[0].text, "To view help click the 'Help' tab at the top of this window.");
  EXPECT_EQ(prompts.shown[0].icon, PromptIcon::Information);
  host.HideSettingsWindow();
  EXPECT_EQ(Shown(2), (Phrases{"<nothing>", "<nothing>"}));
  EXPECT_EQ(run.StatusText(), "Click for menu options.");

  run.StartUpEnd("quillmere.exe", prompts);
  EXPECT_FALSE(host.settingsVisible);
  EXPECT_EQ(Shown(1), (Phrases{"Two"}));
}

}  // namespace
}  // namespace qm
