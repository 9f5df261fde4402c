// The program as a user meets it: started from its folder, living in the
// notification area, flashing the checked categories' phrases, paused and
// stopped from the tray menu, ended through the exit question.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "program_driver_win32.h"

namespace qm::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* kSettings = "Arial\r\n28\r\nTrue\r\nFalse\r\n255\r\n1000\r\n1";
constexpr const char* kCalm = "1First phrase\r\n1Second phrase\r\n1Third phrase\r\n0Left out";
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr UINT kLeftPress = 0x201, kLeftRelease = 0x202, kRightRelease = 0x205;
constexpr int kExitItem = 1, kStopItem = 2, kStartItem = 3;

// A library of two categories, one checked, and the settings above: a red
// phrase every two seconds (1 s apart, 1000 ms on screen).
void PutLibrary(const ProgramFolder& folder) {
  folder.Put("\\Lists\\Calm.lst", kCalm);
  folder.Put("\\Lists\\Other.lst", "1From the unchecked category");
  folder.Put("\\_._", "1Calm\r\n0Other");
  folder.Put("\\__.__", kSettings);
}

bool OverlayShown(const RunningProgram& program) {
  const HWND overlay = program.Overlay();
  return overlay && ::IsWindowVisible(overlay);
}

// Red pixels where the overlay is: a phrase on the screen.
bool PhraseOnScreen(const RunningProgram& program) {
  const HWND overlay = program.Overlay();
  RECT r{};
  return overlay && ::IsWindowVisible(overlay) && ::GetWindowRect(overlay, &r) &&
         CountScreenColour(r, kRed) > 0;
}

std::string WindowText(HWND hwnd) {
  char text[256] = {};
  ::GetWindowTextA(hwnd, text, sizeof text);
  return text;
}

// The phrase in the overlay's label, as the overlay tells it when asked.
std::string Phrase(const RunningProgram& program) {
  return program.OverlayPhrase().value_or("");
}

// A button release over the icon; true once the menu is open.
bool ClickTheIcon(const RunningProgram& program, UINT release = kLeftRelease) {
  program.TrayMouse(release);
  return WaitFor([&] { return program.OpenMenu() != nullptr; }, 3s);
}

void StartAndWaitForTheWindow(RunningProgram& program) {
  ASSERT_TRUE(program.Started()) << BuiltProgramPath();
  ASSERT_TRUE(WaitFor([&] { return program.SettingsWindow() && program.Overlay(); }, 10s));
}

TEST(Program, StartsInTheTrayAndFlashesTheCheckedPhrasesInOrderInTheStoredLook) {
  ProgramFolder folder;
  PutLibrary(folder);
  RunningProgram program(folder);
  StartAndWaitForTheWindow(program);

  EXPECT_FALSE(::IsWindowVisible(program.SettingsWindow())) << "a normal start ends with the window hidden";
  char caption[64] = {};
  ::GetWindowTextA(program.SettingsWindow(), caption, sizeof caption);
  EXPECT_STREQ(caption, "Quillmere - Settings");

  // Watch three phrases come: the overlay's phrase follows the list's order,
  // and the phrases are seen on the screen in red. The flasher starts at
  // the list's first element and steps on before it shows one, so the
  // second phrase comes first.
  std::vector<std::string> seen;
  int redPhrases = 0;
  bool overlayWasForeground = false;
  bool overlayHadText = false;
  std::string lastRed;
  // The text the overlay is created with, before any phrase.
  const std::string atLoad = "I want to buy this program";
  WaitFor(
      [&] {
        const HWND overlay = program.Overlay();
        const std::string text = Phrase(program);
        if (!text.empty() && text != atLoad && (seen.empty() || seen.back() != text)) seen.push_back(text);
        if (PhraseOnScreen(program)) {
          overlayHadText = overlayHadText || ::GetWindowTextLengthW(overlay) != 0;
          if (text != lastRed) {
            lastRed = text;
            ++redPhrases;
          }
        }
        overlayWasForeground = overlayWasForeground || ::GetForegroundWindow() == overlay;
        return seen.size() >= 4;
      },
      20s);
  ASSERT_GE(seen.size(), 3u);
  EXPECT_EQ(seen[0], "Second phrase");
  EXPECT_EQ(seen[1], "Third phrase");
  EXPECT_EQ(seen[2], "First phrase");
  EXPECT_GE(redPhrases, 2) << "the stored colour (255, red) on the screen";
  EXPECT_FALSE(overlayHadText) << "a phrase on the screen is never the overlay's window text";
  EXPECT_FALSE(overlayWasForeground);
  EXPECT_TRUE(::GetWindowLongA(program.Overlay(), GWL_EXSTYLE) & WS_EX_TOPMOST);

  // Running writes nothing: every file is as it was.
  EXPECT_EQ(folder.Get("\\__.__"), kSettings);
  EXPECT_EQ(folder.Get("\\_._"), "1Calm\r\n0Other");
  EXPECT_EQ(folder.Get("\\Lists\\Calm.lst"), kCalm);
}

TEST(Program, ASecondCopyEndsAtOnceAndTheFirstRunsOn) {
  ProgramFolder folder;
  PutLibrary(folder);
  RunningProgram first(folder);
  StartAndWaitForTheWindow(first);

  RunningProgram second(folder);
  ASSERT_TRUE(second.Started());
  EXPECT_EQ(second.WaitForExit(5s), 0u);
  EXPECT_TRUE(second.Windows("QuillmereSettings").empty());
  EXPECT_TRUE(first.Running());
  EXPECT_TRUE(WaitFor([&] { return PhraseOnScreen(first); }, 8s));
}

TEST(Program, AClickOnTheIconPausesAndOpensTheMenuAndDismissingItResumes) {
  ProgramFolder folder;
  PutLibrary(folder);
  RunningProgram program(folder);
  StartAndWaitForTheWindow(program);
  ASSERT_TRUE(WaitFor([&] { return OverlayShown(program); }, 5s));

  // A press alone does nothing; the release opens the menu.
  program.TrayMouse(kLeftPress);
  EXPECT_FALSE(WaitFor([&] { return program.OpenMenu() != nullptr; }, 500ms));
  EXPECT_TRUE(OverlayShown(program));

  ASSERT_TRUE(ClickTheIcon(program, kRightRelease));
  EXPECT_FALSE(OverlayShown(program)) << "the click hides the overlay";
  // While the menu is open the watchdog keeps the display paused.
  EXPECT_FALSE(WaitFor([&] { return OverlayShown(program); }, 2500ms));

  ::PostMessageA(program.SettingsWindow(), WM_CANCELMODE, 0, 0);
  ASSERT_TRUE(WaitFor([&] { return program.OpenMenu() == nullptr; }, 3s));
  EXPECT_TRUE(WaitFor([&] { return OverlayShown(program); }, 5s)) << "resumed by the watchdog";
  EXPECT_TRUE(WaitFor([&] { return PhraseOnScreen(program); }, 8s));
}

TEST(Program, TrayStopKeepsTheDisplayStoppedUntilTrayStart) {
  ProgramFolder folder;
  PutLibrary(folder);
  RunningProgram program(folder);
  StartAndWaitForTheWindow(program);
  ASSERT_TRUE(WaitFor([&] { return OverlayShown(program); }, 5s));

  ASSERT_TRUE(ClickTheIcon(program));
  program.ChooseFromMenu(kStopItem);
  ASSERT_TRUE(WaitFor([&] { return program.OpenMenu() == nullptr; }, 3s));
  EXPECT_FALSE(WaitFor([&] { return OverlayShown(program); }, 3500ms)) << "the watchdog keeps it stopped";

  ASSERT_TRUE(ClickTheIcon(program));
  program.ChooseFromMenu(kStartItem);
  ASSERT_TRUE(WaitFor([&] { return program.OpenMenu() == nullptr; }, 3s));
  EXPECT_TRUE(WaitFor([&] { return OverlayShown(program); }, 5s));
  EXPECT_TRUE(WaitFor([&] { return PhraseOnScreen(program); }, 8s));
}

TEST(Program, ExitAsksAndOnlyYesEndsTheProgramWithoutWritingAnything) {
  ProgramFolder folder;
  PutLibrary(folder);
  RunningProgram program(folder);
  StartAndWaitForTheWindow(program);

  const auto askToExit = [&] {
    EXPECT_TRUE(ClickTheIcon(program));
    program.ChooseFromMenu(kExitItem);
    HWND box = nullptr;
    EXPECT_TRUE(WaitFor([&] { return (box = program.MessageBox()) != nullptr; }, 3s));
    return box;
  };

  HWND box = askToExit();
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(WindowText(box), "Quillmere");
  EXPECT_EQ(RunningProgram::MessageBoxText(box), "Are you sure you wish to exit the application?");
  ::PostMessageA(box, WM_COMMAND, IDNO, 0);
  ASSERT_TRUE(WaitFor([&] { return program.MessageBox() == nullptr; }, 3s));
  EXPECT_TRUE(program.Running());
  EXPECT_TRUE(WaitFor([&] { return PhraseOnScreen(program); }, 8s)) << "No leaves it running";

  box = askToExit();
  ASSERT_NE(box, nullptr);
  ::PostMessageA(box, WM_COMMAND, IDYES, 0);
  EXPECT_EQ(program.WaitForExit(5s), 0u);
  EXPECT_EQ(folder.Get("\\__.__"), kSettings);
  EXPECT_EQ(folder.Get("\\_._"), "1Calm\r\n0Other");
}

TEST(Program, StartUpPromotesPendingDataAndAFirstRunStaysStoppedUntilStart) {
  ProgramFolder folder;
  PutLibrary(folder);
  folder.Put("\\DATA", "old");
  folder.Put("\\DATA01", "new");
  ASSERT_TRUE(folder.Remove("\\__.__"));
  RunningProgram program(folder, "FirstRun");
  StartAndWaitForTheWindow(program);
  // The window shows with its hint, which is answered first.
  HWND hint = nullptr;
  ASSERT_TRUE(WaitFor([&] { return (hint = program.MessageBox()) != nullptr; }, 5s));
  EXPECT_EQ(RunningProgram::MessageBoxText(hint), "To view help click the 'Help' tab at the top of this window.");
  EXPECT_TRUE(::IsWindowVisible(program.SettingsWindow()));
  ::PostMessageA(hint, WM_COMMAND, IDOK, 0);
  ASSERT_TRUE(WaitFor([&] { return program.MessageBox() == nullptr; }, 5s));

  EXPECT_EQ(folder.Get("\\DATA"), "new");
  EXPECT_FALSE(folder.Has("\\DATA01"));
  EXPECT_FALSE(WaitFor([&] { return OverlayShown(program); }, 3s)) << "a first run starts nothing";
  EXPECT_FALSE(folder.Has("\\__.__")) << "missing settings are not written until a change";

  ASSERT_TRUE(ClickTheIcon(program));
  program.ChooseFromMenu(kStartItem);
  EXPECT_TRUE(WaitFor([&] { return OverlayShown(program); }, 5s));
  // (No settings file: the label keeps its own grey, so the text tells.)
  EXPECT_TRUE(WaitFor([&] { return Phrase(program) == "Second phrase"; }, 8s));
}

}  // namespace
}  // namespace qm::test
