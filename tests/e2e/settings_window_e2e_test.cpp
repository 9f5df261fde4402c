// The settings window as a user meets it in the real program: opened from
// the tray menu or at the first run, its tabs clicked with the pointer, the
// library edited by typing into its boxes and clicking its buttons, with
// the bytes on disk checked afterwards, and a checked category's phrases
// flashed after Start.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "program_driver_win32.h"
#include "real_input_win32.h"
#include "settings/settings_ids.h"

namespace qm::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* kSettings = "Arial\r\n28\r\nTrue\r\nFalse\r\n255\r\n200\r\n1";
constexpr UINT kLeftRelease = 0x202;
constexpr int kSettingsItem = 4;

// A tab of the tab bar by its number (1 Messages, 2 Help, 3 About), clicked
// in the middle: the tabs are 1050 twips wide and 525 high.
void ClickTab(HWND form, int n) {
  const HDC dc = ::GetDC(nullptr);
  const int dpiX = ::GetDeviceCaps(dc, LOGPIXELSX), dpiY = ::GetDeviceCaps(dc, LOGPIXELSY);
  ::ReleaseDC(nullptr, dc);
  POINT at{::MulDiv(1050 * (n - 1) + 525, dpiX, 1440), ::MulDiv(262, dpiY, 1440)};
  ::ClientToScreen(form, &at);
  ClickScreen(at);
}


// The version written into the built program, read by the system.
std::string BuiltVersion() {
  const std::string path = BuiltProgramPath();
  DWORD ignored = 0;
  const DWORD size = ::GetFileVersionInfoSizeA(path.c_str(), &ignored);
  std::vector<char> data(size);
  VS_FIXEDFILEINFO* info = nullptr;
  UINT length = 0;
  if (size == 0 || !::GetFileVersionInfoA(path.c_str(), 0, size, data.data()) ||
      !::VerQueryValueA(data.data(), "\\", reinterpret_cast<void**>(&info), &length))
    return "(none)";
  return std::to_string(HIWORD(info->dwFileVersionMS)) + "." + std::to_string(LOWORD(info->dwFileVersionMS)) +
         "." + std::to_string(HIWORD(info->dwFileVersionLS));
}

TEST(SettingsWindow, TheTrayMenusSettingsOpensTheWindowAndEachTabShowsItsPage) {
  ProgramFolder folder;
  folder.Put("\\Lists\\Calm.lst", "1Breathe");
  folder.Put("\\_._", "1Calm");
  folder.Put("\\__.__", kSettings);
  folder.Put("\\Help.rtf", "{\\rtf1\\ansi How to use it\\par}");
  folder.Put("\\About.rtf", "{\\rtf1\\ansi All about it\\par}");
  RunningProgram program(folder);
  ASSERT_TRUE(program.Started()) << BuiltProgramPath();
  ASSERT_TRUE(WaitFor([&] { return program.SettingsWindow() && program.Overlay(); }, 10s));
  const HWND form = program.SettingsWindow();
  EXPECT_FALSE(::IsWindowVisible(form));

  program.TrayMouse(kLeftRelease);
  ASSERT_TRUE(WaitFor([&] { return program.OpenMenu() != nullptr; }, 3s));
  program.ChooseFromMenu(kSettingsItem);
  ASSERT_TRUE(WaitFor([&] { return ::IsWindowVisible(form) != FALSE; }, 3s));
  EXPECT_EQ(::GetForegroundWindow(), form);
  const HWND rtf = Control(form, kIdRtfHelp);
  const HWND version = Control(form, kIdLblVersion);
  const HWND categories = Control(form, kIdLstMessageCategories);
  EXPECT_TRUE(::IsWindowVisible(categories));
  EXPECT_FALSE(::IsWindowVisible(rtf));

  ClickTab(form, 2);
  EXPECT_TRUE(WaitFor([&] { return ::IsWindowVisible(rtf) != FALSE; }, 2s));
  EXPECT_NE(AsciiText(rtf).find("How to use it"), std::string::npos);
  EXPECT_FALSE(::IsWindowVisible(categories));
  EXPECT_TRUE(::IsWindowVisible(version));

  ClickTab(form, 3);
  EXPECT_TRUE(WaitFor([&] { return AsciiText(rtf).find("All about it") != std::string::npos; }, 2s));
  EXPECT_EQ(AsciiText(version), "Version " + BuiltVersion());

  ClickTab(form, 1);
  EXPECT_TRUE(WaitFor([&] { return ::IsWindowVisible(categories) != FALSE; }, 2s));
  EXPECT_FALSE(::IsWindowVisible(rtf));
  EXPECT_FALSE(::IsWindowVisible(version));
}

TEST(SettingsWindow, TypingAndClickingAddsRenamesAndDeletesWithTheExpectedBytesOnDisk) {
  ProgramFolder folder;
  folder.Put("\\__.__", kSettings);
  RunningProgram program(folder, "firstrun");
  const HWND form = StartFirstRun(program);
  ASSERT_NE(form, nullptr);
  const HWND category = Control(form, kIdTxtEditCat);
  const HWND phrase = Control(form, kIdTxtEditWord);

  // The category box drops the full stop as it is typed.
  TypeInto(category, L"Ca.lm");
  EXPECT_EQ(AsciiText(category), "Calm");
  Click(Control(form, kIdCmdAddCat));
  ASSERT_TRUE(WaitFor([&] { return folder.Has("\\Lists\\Calm.lst"); }, 3s));
  EXPECT_EQ(folder.Get("\\Lists\\Calm.lst"), "");
  EXPECT_EQ(folder.Get("\\_._"), "0Calm");
  EXPECT_EQ(AsciiText(category), "");

  // Enter in the phrase box adds the phrase, checked.
  TypeInto(phrase, L"Hello");
  PressKey(VK_RETURN);
  ASSERT_TRUE(WaitFor([&] { return folder.Get("\\Lists\\Calm.lst") == "1Hello"; }, 3s))
      << folder.Get("\\Lists\\Calm.lst");
  EXPECT_EQ(folder.Get("\\_._"), "0Calm");

  // Rename: Edit puts the name into the box, Add renames it.
  Click(Control(form, kIdCmdEditCat));
  EXPECT_TRUE(WaitFor([&] { return AsciiText(category) == "Calm"; }, 2s));
  TypeInto(category, L"Relax");
  Click(Control(form, kIdCmdAddCat));
  ASSERT_TRUE(WaitFor([&] { return folder.Has("\\Lists\\Relax.lst") && !folder.Has("\\Lists\\Calm.lst"); }, 3s));
  EXPECT_EQ(folder.Get("\\Lists\\Relax.lst"), "1Hello");
  EXPECT_EQ(folder.Get("\\_._"), "0Relax");

  // Deleting the last phrase deletes the category's file.
  const HWND phrases = Control(form, kIdLstPhrases);
  Click(phrases, 60, 10);
  Click(Control(form, kIdCmdDelete));
  EXPECT_TRUE(WaitFor([&] { return !folder.Has("\\Lists\\Relax.lst"); }, 3s));

  // Deleting the category asks first.
  Click(Control(form, kIdCmdDeleteCat));
  EXPECT_EQ(Answer(program, IDYES), "Are you sure you wish to delete this category?");
  EXPECT_TRUE(WaitFor([&] { return ::SendMessageW(Control(form, kIdLstMessageCategories), 0x1004, 0, 0) == 0; },
                      2s));  // LVM_GETITEMCOUNT
}

TEST(SettingsWindow, APastedDeviceNameIsRefusedWithAMessageAndCreatesNothing) {
  ProgramFolder folder;
  folder.Put("\\__.__", kSettings);
  RunningProgram program(folder, "firstrun");
  const HWND form = StartFirstRun(program);
  ASSERT_NE(form, nullptr);
  PasteInto(Control(form, kIdTxtEditCat), L"CON");
  EXPECT_TRUE(WaitFor([&] { return AsciiText(Control(form, kIdTxtEditCat)) == "CON"; }, 2s));
  Click(Control(form, kIdCmdAddCat));
  const std::string message = Answer(program, IDOK);
  EXPECT_NE(message.find("\"CON\""), std::string::npos) << message;
  EXPECT_FALSE(folder.Has("\\Lists\\CON.lst"));
  EXPECT_FALSE(folder.Has("\\_._"));
}

TEST(SettingsWindow, CheckingACategoryChangesWhatIsFlashedAfterStart) {
  ProgramFolder folder;
  folder.Put("\\Lists\\Calm.lst", "1From calm");
  folder.Put("\\Lists\\Other.lst", "1From other");
  folder.Put("\\_._", "1Calm\r\n0Other");
  folder.Put("\\__.__", kSettings);
  RunningProgram program(folder, "firstrun");
  const HWND form = StartFirstRun(program);
  ASSERT_NE(form, nullptr);

  // Click Calm's name, Space turns its check box off; Down goes to
  // Other, Space turns its check box on.
  const HWND list = Control(form, kIdLstMessageCategories);
  Click(list, 60, 8);
  PressKey(VK_SPACE);
  PressKey(VK_DOWN);
  PressKey(VK_SPACE);
  EXPECT_TRUE(WaitFor([&] { return folder.Get("\\_._") == "0Calm\r\n1Other"; }, 3s)) << folder.Get("\\_._");

  // Alt+S presses Start: the window hides and Other's phrase comes. (The
  // label holds its text from before until the first phrase comes.)
  const std::string before = program.OverlayPhrase().value_or("");
  Key(VK_MENU, false);
  PressKey('S');
  Key(VK_MENU, true);
  ASSERT_TRUE(WaitFor([&] { return !::IsWindowVisible(form); }, 3s));
  std::vector<std::string> seen;
  WaitFor(
      [&] {
        const auto p = program.OverlayPhrase();
        if (p && !p->empty() && *p != before && (seen.empty() || seen.back() != *p)) seen.push_back(*p);
        return !seen.empty();
      },
      8s);
  // A few more seconds: only Other's phrase ever comes.
  WaitFor(
      [&] {
        const auto p = program.OverlayPhrase();
        if (p && !p->empty() && seen.back() != *p) seen.push_back(*p);
        return false;
      },
      2500ms);
  ASSERT_FALSE(seen.empty());
  for (const std::string& p : seen) EXPECT_EQ(p, "From other");
}

// The control of the program that has the keyboard focus.
HWND FocusedControl(HWND form) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  return ::GetGUIThreadInfo(::GetWindowThreadProcessId(form, nullptr), &info) ? info.hwndFocus : nullptr;
}

TEST(SettingsWindow, TabWalksTheWholeWindowAndAltXAsksBeforeTheProgramEnds) {
  ProgramFolder folder;
  folder.Put("\\Lists\\Calm.lst", "1From calm");
  folder.Put("\\_._", "1Calm");
  RunningProgram program(folder, "firstrun");
  const HWND form = StartFirstRun(program);
  ASSERT_NE(form, nullptr);

  // From the category box, Tab reaches the lists, the editing buttons,
  // Start and Exit, and comes round to the box again.
  const HWND start = Control(form, kIdTxtEditCat);
  Click(start);
  ASSERT_TRUE(WaitFor([&] { return FocusedControl(form) == start; }, 3s));
  std::vector<int> visited;
  for (int i = 0; i < 30; ++i) {
    PressKey(VK_TAB);
    const HWND now = FocusedControl(form);
    if (now == start) break;
    visited.push_back(::GetDlgCtrlID(now));
  }
  ASSERT_EQ(FocusedControl(form), start) << "Tab did not come round";
  for (int id : {kIdTxtEditWord, kIdLstMessageCategories, kIdLstPhrases, kIdCmdAddCat, kIdCmdDelete, kIdCmdStart,
                 kIdCmdClose})
    EXPECT_NE(std::find(visited.begin(), visited.end(), id), visited.end()) << id;

  // Alt+X presses Exit: the question; No keeps everything, Yes ends it.
  for (int answer : {IDNO, IDYES}) {
    Key(VK_MENU, false);
    PressKey('X');
    Key(VK_MENU, true);
    EXPECT_EQ(Answer(program, answer), "Are you sure you wish to exit the application?");
  }
  EXPECT_EQ(program.WaitForExit(5s), std::optional<DWORD>(0));
  EXPECT_EQ(folder.Get("\\_._"), "1Calm");  // nothing written at the end
}

}  // namespace
}  // namespace qm::test
