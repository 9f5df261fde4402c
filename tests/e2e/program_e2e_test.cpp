// The program as a user meets it, in one run that the tests below share in
// their order: started from its folder, living in the notification area,
// flashing the checked categories' phrases in order and in the stored
// colour, one copy at a time, paused by a click on its icon, stopped and
// started and its settings window opened from the tray menu, its phrases
// keeping away while another program fills the screen, and ended through
// the exit question. (How the overlay stands among windows, clicks going
// through it, no focus taken, no window text, is the shell tests' part.)
#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "real_input_win32.h"

namespace qm::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* kSettings = "Arial\r\n28\r\nTrue\r\nFalse\r\n255\r\n1000\r\n1";
constexpr const char* kCalm = "1First phrase\r\n1Second phrase\r\n1Third phrase\r\n0Left out";
constexpr COLORREF kRed = RGB(255, 0, 0), kGrey = RGB(128, 128, 128);

// Red pixels where the overlay is: a phrase on the screen. (The test's own
// windows are served meanwhile.)
bool PhraseOnScreen(const RunningProgram& program) {
  Pump();
  return program.OverlayPixels(kRed) > 0;
}

// A library of two categories, one checked, and the settings above: a red
// phrase every two seconds (1 s apart, 1000 ms on screen).
class Program : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder.emplace();
    folder->Put("\\Lists\\Calm.lst", kCalm);
    folder->Put("\\Lists\\Other.lst", "1From the unchecked category");
    folder->Put("\\_._", "1Calm\r\n0Other");
    folder->Put("\\__.__", kSettings);
    program.emplace(*folder);
    program->WaitForWindows();
  }
  // Ended before the next suite starts its own copy (a second copy would
  // end at once).
  static void TearDownTestSuite() {
    program.reset();
    folder.reset();
  }
  static inline std::optional<ProgramFolder> folder;
  static inline std::optional<RunningProgram> program;
};

TEST_F(Program, StartsInTheTrayAndFlashesTheCheckedPhrasesInOrderInTheStoredColour) {
  ASSERT_TRUE(program->WaitForWindows()) << BuiltProgramPath();
  EXPECT_FALSE(::IsWindowVisible(program->SettingsWindow())) << "a normal start ends with the window hidden";
  EXPECT_EQ(Text(program->SettingsWindow()), "Quillmere - Settings");

  // Watch phrases come: the overlay's phrase follows the list's order, and
  // the phrases are seen on the screen in red. The flasher starts at the
  // list's first element and steps on before it shows one, so the second
  // phrase comes first. "I want to buy this program" is the overlay's text
  // before any phrase.
  std::vector<std::string> seen;
  std::set<std::string> red;
  WaitFor(
      [&] {
        const std::string text = program->OverlayPhrase().value_or("");
        if (!text.empty() && text != "I want to buy this program" && (seen.empty() || seen.back() != text))
          seen.push_back(text);
        if (PhraseOnScreen(*program)) red.insert(text);
        return seen.size() >= 4;
      },
      20s);
  seen.resize(3);
  EXPECT_EQ(seen, (std::vector<std::string>{"Second phrase", "Third phrase", "First phrase"}));
  EXPECT_GE(red.size(), 2u) << "the stored colour (255, red) on the screen";
}

TEST_F(Program, ASecondCopyEndsAtOnceAndTheFirstRunsOn) {
  RunningProgram second(*folder);
  ASSERT_TRUE(second.Started());
  EXPECT_EQ(second.WaitForExit(5s), 0u);
  EXPECT_EQ(second.SettingsWindow(), nullptr);
  EXPECT_TRUE(program->Running());
  EXPECT_TRUE(WaitFor([&] { return PhraseOnScreen(*program); }, 8s));
}

TEST_F(Program, AClickOnTheIconPausesAndOpensTheMenuAndDismissingItResumes) {
  ASSERT_TRUE(WaitFor([&] { return program->OverlayShown(); }, 5s));
  ASSERT_TRUE(program->TrayMouse(WM_RBUTTONUP));
  EXPECT_FALSE(program->OverlayShown()) << "the click hides the overlay";
  // While the menu is open the watchdog keeps the display paused.
  EXPECT_FALSE(WaitFor([&] { return program->OverlayShown(); }, 2500ms));

  ::PostMessageA(program->SettingsWindow(), WM_CANCELMODE, 0, 0);
  ASSERT_TRUE(WaitFor([&] { return program->OpenMenu() == nullptr; }, 3s));
  EXPECT_TRUE(WaitFor([&] { return program->OverlayShown(); }, 5s)) << "resumed by the watchdog";
  EXPECT_TRUE(WaitFor([&] { return PhraseOnScreen(*program); }, 8s));
}

TEST_F(Program, TrayStopKeepsTheDisplayStoppedUntilTrayStart) {
  ASSERT_TRUE(program->ChooseFromTray(kStopItem));
  EXPECT_FALSE(WaitFor([&] { return program->OverlayShown(); }, 3500ms)) << "the watchdog keeps it stopped";
  ASSERT_TRUE(program->ChooseFromTray(kStartItem));
  EXPECT_TRUE(WaitFor([&] { return PhraseOnScreen(*program); }, 8s));
}

TEST_F(Program, TheTrayMenusSettingsOpensTheWindowInFrontAndStartHidesIt) {
  const HWND form = program->SettingsWindow();
  ASSERT_TRUE(program->ChooseFromTray(kSettingsItem));
  ASSERT_TRUE(WaitFor([&] { return ::IsWindowVisible(form) != FALSE; }, 3s));
  EXPECT_EQ(::GetForegroundWindow(), form);
  EXPECT_FALSE(WaitFor([&] { return program->OverlayShown(); }, 2500ms)) << "no phrase over the open window";
  PressAlt('S');
  EXPECT_TRUE(WaitFor([&] { return !::IsWindowVisible(form); }, 3s));
  EXPECT_TRUE(WaitFor([&] { return PhraseOnScreen(*program); }, 8s));
}

TEST_F(Program, AFullScreenProgramKeepsPhrasesAwayUntilItCloses) {
  const int width = ::GetSystemMetrics(SM_CXSCREEN), height = ::GetSystemMetrics(SM_CYSCREEN);
  std::string before;
  {
    // Another program one row short of the screen is not full-screen:
    // phrases come over it. (Wine stacks a window shown after the overlay
    // above it, top-most or not, until the overlay is shown again: tray Stop
    // hides it, Start shows it.)
    ColourWindow other(kGrey, {0, 0, width, height - 1}, 0);
    ASSERT_TRUE(program->ChooseFromTray(kStopItem) && program->ChooseFromTray(kStartItem));
    ::SetForegroundWindow(other.Hwnd());
    ASSERT_EQ(::GetForegroundWindow(), other.Hwnd());
    ASSERT_TRUE(WaitFor([&] { return PhraseOnScreen(*program); }, 10s)) << "a phrase over a window";

    // Full-screen: within the watchdog's second the display pauses, and no
    // phrase comes while the program fills the screen.
    ::SetWindowPos(other.Hwnd(), HWND_TOP, 0, 0, width, height, 0);
    ::SetForegroundWindow(other.Hwnd());
    EXPECT_TRUE(WaitFor(
        [&] {
          Pump();
          return !program->OverlayShown();
        },
        3s))
        << "the overlay is put away";
    before = program->OverlayPhrase().value_or("");
    EXPECT_FALSE(WaitFor(
        [&] { return PhraseOnScreen(*program) || program->OverlayPhrase().value_or("") != before; }, 4s))
        << "a phrase came over a full-screen program";
    ASSERT_EQ(::GetForegroundWindow(), other.Hwnd());
  }
  // Closed, and the user back in an ordinary window: phrases come back by
  // themselves.
  ColourWindow ordinary(kGrey, {0, 0, width, height / 2}, 0);
  ::SetForegroundWindow(ordinary.Hwnd());
  EXPECT_TRUE(WaitFor(
      [&] { return PhraseOnScreen(*program) && program->OverlayPhrase().value_or("") != before; }, 8s))
      << "phrases resume after the full-screen program";
}

TEST_F(Program, ExitAsksAndOnlyYesEndsTheProgramWithoutWritingAnything) {
  ASSERT_TRUE(program->ChooseFromTray(kExitItem));
  ASSERT_TRUE(WaitFor([&] { return program->MessageBox() != nullptr; }, 3s));
  EXPECT_EQ(Text(program->MessageBox()), "Quillmere");
  EXPECT_EQ(Answer(*program, IDNO), "Are you sure you wish to exit the application?");
  EXPECT_TRUE(program->Running());
  EXPECT_TRUE(WaitFor([&] { return PhraseOnScreen(*program); }, 8s)) << "No leaves it running";

  ASSERT_TRUE(program->ChooseFromTray(kExitItem));
  EXPECT_EQ(Answer(*program, IDYES), "Are you sure you wish to exit the application?");
  EXPECT_EQ(program->WaitForExit(5s), 0u);
  // Running writes nothing: every file is as it was.
  EXPECT_EQ(folder->Get("\\__.__"), kSettings);
  EXPECT_EQ(folder->Get("\\_._"), "1Calm\r\n0Other");
  EXPECT_EQ(folder->Get("\\Lists\\Calm.lst"), kCalm);
}

}  // namespace
}  // namespace qm::test
