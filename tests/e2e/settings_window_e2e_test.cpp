// The settings window as a user meets it at a first run, in one run of the
// real program that the tests below share in their order: the hint, the
// library edited by typing into its boxes and clicking its buttons with the
// bytes on disk checked afterwards, the tab order and access keys, the font
// chooser opened from "Edit Font" and answered in its own controls, the
// wheels turned with the mouse and the keys, a colour picked in the
// drop-down, each checked on the screen and in the settings file, and a
// checked category's phrases flashed in that colour after Start.
#include <gtest/gtest.h>

#include "real_input_win32.h"
// After windows.h:
#include <commctrl.h>
#include <dlgs.h>

#include <algorithm>
#include <vector>

#include "settings/settings_ids.h"

namespace qm::test {
namespace {

using namespace std::chrono_literals;

constexpr COLORREF kRed = RGB(255, 0, 0), kGrey = RGB(192, 192, 192);

// A library of two categories, one checked, no settings file, and a DATA01
// waiting to replace DATA; started with "firstrun".
class SettingsWindow : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder.emplace();
    folder->Put("\\Lists\\Calm.lst", "1From calm");
    folder->Put("\\Lists\\Other.lst", "1From other");
    folder->Put("\\_._", "1Calm\r\n0Other");
    folder->Put("\\DATA", "old");
    folder->Put("\\DATA01", "new");
    program.emplace(*folder, "firstrun");
    form = StartFirstRun(*program);
  }
  // Ended before the next suite starts its own copy (a second copy would
  // end at once).
  static void TearDownTestSuite() {
    program.reset();
    folder.reset();
  }
  void SetUp() override { ASSERT_NE(form, nullptr); }

  // The settings file after the font chooser's answer below, with a colour
  // and the wheels' positions.
  static std::string Settings(const char* colour, int duration, int frequency) {
    return "Courier New\r\n24\r\nTrue\r\nFalse\r\n" + std::string(colour) + "\r\n" +
           std::to_string(duration) + "\r\n" + std::to_string(frequency);
  }
  static RECT Preview() {
    RECT r{};
    ::GetWindowRect(Control(form, kIdPicture1), &r);
    return r;
  }

  static inline std::optional<ProgramFolder> folder;
  static inline std::optional<RunningProgram> program;
  static inline HWND form = nullptr;
};

TEST_F(SettingsWindow, AFirstRunShowsTheWindowPromotesPendingDataAndFlashesNothingUntilStart) {
  EXPECT_TRUE(::IsWindowVisible(form));
  EXPECT_EQ(folder->Get("\\DATA"), "new");
  EXPECT_FALSE(folder->Has("\\DATA01"));
  EXPECT_FALSE(WaitFor([&] { return program->OverlayShown(); }, 3s)) << "a first run starts nothing";
  EXPECT_FALSE(folder->Has("\\__.__")) << "missing settings are not written until a change";
}

TEST_F(SettingsWindow, TypingAndClickingAddsRenamesAndDeletesWithTheExpectedBytesOnDisk) {
  const HWND category = Control(form, kIdTxtEditCat);
  // The category box drops the full stop as it is typed.
  TypeInto(category, L"Re.lax");
  EXPECT_EQ(Text(category), "Relax");
  Click(Control(form, kIdCmdAddCat));
  ASSERT_TRUE(WaitFor([&] { return folder->Has("\\Lists\\Relax.lst"); }, 3s));
  EXPECT_EQ(folder->Get("\\Lists\\Relax.lst"), "");
  EXPECT_EQ(folder->Get("\\_._"), "1Calm\r\n0Other\r\n0Relax");
  EXPECT_EQ(Text(category), "");

  // Enter in the phrase box adds the phrase, checked.
  SelectRow(form, kIdLstMessageCategories, 2);
  TypeInto(Control(form, kIdTxtEditWord), L"Hello");
  PressKey(VK_RETURN);
  ASSERT_TRUE(WaitFor([&] { return folder->Get("\\Lists\\Relax.lst") == "1Hello"; }, 3s))
      << folder->Get("\\Lists\\Relax.lst");

  // Rename: Edit puts the name into the box, Add renames it.
  Click(Control(form, kIdCmdEditCat));
  EXPECT_TRUE(WaitFor([&] { return Text(category) == "Relax"; }, 2s));
  TypeInto(category, L"Rest");
  Click(Control(form, kIdCmdAddCat));
  ASSERT_TRUE(
      WaitFor([&] { return folder->Has("\\Lists\\Rest.lst") && !folder->Has("\\Lists\\Relax.lst"); }, 3s));
  EXPECT_EQ(folder->Get("\\Lists\\Rest.lst"), "1Hello");
  EXPECT_EQ(folder->Get("\\_._"), "1Calm\r\n0Other\r\n0Rest");

  // Deleting the last phrase deletes the category's file.
  Click(Control(form, kIdLstPhrases), 60, 10);
  Click(Control(form, kIdCmdDelete));
  EXPECT_TRUE(WaitFor([&] { return !folder->Has("\\Lists\\Rest.lst"); }, 3s));

  // Deleting the category asks first.
  Click(Control(form, kIdCmdDeleteCat));
  EXPECT_EQ(Answer(*program, IDYES), "Are you sure you wish to delete this category?");
  EXPECT_TRUE(WaitFor([&] { return folder->Get("\\_._") == "1Calm\r\n0Other"; }, 3s)) << folder->Get("\\_._");
  EXPECT_EQ(ListView_GetItemCount(Control(form, kIdLstMessageCategories)), 2);
}

TEST_F(SettingsWindow, TabWalksTheWholeWindowAndAltXAsksBeforeTheProgramEnds) {
  // From the category box, Tab reaches the lists, the editing buttons,
  // Start and Exit, and comes round to the box again.
  const HWND start = Control(form, kIdTxtEditCat);
  Click(start);
  ASSERT_TRUE(WaitFor([&] { return FocusedControl(form) == start; }, 3s));
  std::vector<int> visited;
  for (int i = 0; i < 30; ++i) {
    PressKey(VK_TAB);
    if (FocusedControl(form) == start) break;
    visited.push_back(::GetDlgCtrlID(FocusedControl(form)));
  }
  ASSERT_EQ(FocusedControl(form), start) << "Tab did not come round";
  for (int id : {kIdTxtEditWord, kIdLstMessageCategories, kIdLstPhrases, kIdCmdAddCat, kIdCmdDelete,
                 kIdCmdStart, kIdCmdClose})
    EXPECT_NE(std::find(visited.begin(), visited.end(), id), visited.end()) << id;

  // Alt+X presses Exit: the question, and No keeps the program. (Yes is the
  // tray's exit test.)
  PressAlt('X');
  EXPECT_EQ(Answer(*program, IDNO), "Are you sure you wish to exit the application?");
  EXPECT_TRUE(program->Running());
}

TEST_F(SettingsWindow, TheFontChooserFromEditFontStoresItsAnswerAndACancelStoresTheRoundedLook) {
  ASSERT_FALSE(folder->Has("\\__.__"));
  // Cancel: the preview's 9.75 points are stored as 10.
  HWND dialog = OpenFontChooser(*program, form);
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(Text(dialog), "Font");
  EXPECT_EQ(Text(::GetDlgItem(dialog, cmb3)), "10");
  Click(::GetDlgItem(dialog, IDCANCEL));
  ASSERT_TRUE(WaitFor([&] { return folder->Has("\\__.__"); }, 3s));
  EXPECT_EQ(folder->Get("\\__.__"), "Arial\r\n10\r\nFalse\r\nFalse\r\n12632256\r\n1\r\n1");

  // OK after stepping the face from Arial to the next one (Courier New),
  // typing 24 into the size and stepping the style down to Bold.
  const int greyBefore = CountScreenColour(Preview(), kGrey);
  dialog = OpenFontChooser(*program, form);
  ASSERT_NE(dialog, nullptr);
  const HWND faceEdit = ChooserEdit(dialog, cmb1), styleEdit = ChooserEdit(dialog, cmb2);
  ASSERT_TRUE(faceEdit && styleEdit && ChooserEdit(dialog, cmb3));
  Click(faceEdit);
  PressKey(VK_DOWN);
  EXPECT_EQ(Text(faceEdit), "Courier New");
  Click(ChooserEdit(dialog, cmb3));
  ::SendMessageW(ChooserEdit(dialog, cmb3), EM_SETSEL, 0, -1);
  TypeText(L"24");
  Click(styleEdit);
  PressKey(VK_HOME);
  PressKey(VK_DOWN);
  PressKey(VK_DOWN);
  EXPECT_EQ(Text(styleEdit), "Bold");
  Click(::GetDlgItem(dialog, IDOK));
  EXPECT_TRUE(WaitFor([&] { return folder->Get("\\__.__") == Settings("12632256", 1, 1); }, 3s))
      << folder->Get("\\__.__");
  // The preview's text grew: far more of its grey on the screen.
  ::Sleep(300);
  EXPECT_GT(CountScreenColour(Preview(), kGrey), greyBefore * 2);
}

TEST_F(SettingsWindow, TurningTheWheelsWithTheMouseAndTheKeysRelabelsThemAndSavesEachTurn) {
  const auto position = [](int id) {
    return static_cast<int>(::SendMessageW(Control(form, id), TBM_GETPOS, 0, 0));
  };
  // The wheel, its label and the settings file tell its position, or
  // `want`.
  const auto shown = [&](int id, int want = -1) {
    const bool duration = id == kIdBvlWheel1;
    return WaitFor(
        [&] {
          const int at = want < 0 ? position(id) : want;
          const std::string v = std::to_string(at);
          return position(id) == at &&
                 Text(Control(form, duration ? kIdLblDuration : kIdLblFrequency)) ==
                     (duration ? "Duration: " + v + " Millisecond(s)" : "Frequency: " + v + " Second(s)") &&
                 folder->Get("\\__.__") == (duration ? Settings("12632256", at, position(kIdBvlWheel2))
                                                     : Settings("12632256", position(kIdBvlWheel1), at));
        },
        3s);
  };
  ASSERT_EQ(position(kIdBvlWheel1), 1) << "the stored duration";

  // A click in the channel right of the thumb moves it up a page.
  RECT bar{};
  ::GetWindowRect(Control(form, kIdBvlWheel1), &bar);
  ClickScreen({bar.right - 12, (bar.top + bar.bottom) / 2});
  EXPECT_TRUE(WaitFor([&] { return position(kIdBvlWheel1) > 1; }, 3s));
  EXPECT_TRUE(shown(kIdBvlWheel1)) << Text(Control(form, kIdLblDuration)) << " " << folder->Get("\\__.__");

  // End, given with the wheel's focus, goes to the top.
  PressKey(VK_END);
  EXPECT_TRUE(shown(kIdBvlWheel1, 1000));

  // The frequency wheel: a click gives it the focus, the mouse wheel turns
  // it up two notches, End takes it to the top and Home to the bottom.
  ::GetWindowRect(Control(form, kIdBvlWheel2), &bar);
  const POINT over{bar.right - 4, (bar.top + bar.bottom) / 2};
  ClickScreen(over);
  const int before = position(kIdBvlWheel2);
  SendMouse(MOUSEEVENTF_WHEEL, over, static_cast<DWORD>(2 * WHEEL_DELTA));
  EXPECT_TRUE(shown(kIdBvlWheel2, std::min(before + 2, 30))) << position(kIdBvlWheel2);
  PressKey(VK_END);
  EXPECT_TRUE(shown(kIdBvlWheel2, 30));
  PressKey(VK_HOME);
  EXPECT_TRUE(shown(kIdBvlWheel2, 1));
}

// Drops the colour list with a click and clicks the row showing `text`.
void PickColour(const RunningProgram& program, HWND form, const wchar_t* text) {
  const HWND combo = Control(form, kIdColorPicker1);
  const int row =
      static_cast<int>(::SendMessageW(combo, CB_FINDSTRINGEXACT, -1, reinterpret_cast<LPARAM>(text)));
  Click(combo);
  HWND list = nullptr;
  ASSERT_TRUE(WaitFor([&] { return (list = program.Window("ComboLBox", true)) != nullptr; }, 3s));
  const int height = static_cast<int>(::SendMessageW(list, LB_GETITEMHEIGHT, 0, 0));
  const int top = static_cast<int>(::SendMessageW(list, LB_GETTOPINDEX, 0, 0));
  POINT at{8 + height, (row - top) * height + height / 2};
  ::ClientToScreen(list, &at);
  ClickScreen(at);
}

TEST_F(SettingsWindow, APickedColourShowsInThePreviewAndWhiteIsStoredAsAlmostWhite) {
  // The preview's two halves: the text on white and on black.
  RECT light = Preview(), dark = Preview();
  light.right = (light.left + light.right) / 2 - 2;
  dark.left = (dark.left + dark.right) / 2 + 2;
  EXPECT_EQ(CountScreenColour(Preview(), kRed), 0);

  PickColour(*program, form, L"White");
  EXPECT_TRUE(WaitFor([&] { return folder->Get("\\__.__") == Settings("16777214", 1000, 1); }, 3s));
  EXPECT_EQ(Text(Control(form, kIdColorPicker1)), "RGB 254, 255, 255");
  EXPECT_GT(CountScreenColour(dark, RGB(254, 255, 255)), 20);

  PickColour(*program, form, L"Red");
  EXPECT_TRUE(WaitFor([&] { return folder->Get("\\__.__") == Settings("255", 1000, 1); }, 3s))
      << folder->Get("\\__.__");
  ::Sleep(200);
  EXPECT_GT(CountScreenColour(light, kRed), 20) << "red on the white half";
  EXPECT_GT(CountScreenColour(dark, kRed), 20) << "red on the black half";
}

TEST_F(SettingsWindow, CheckingACategoryChangesWhatIsFlashedAfterStartInThePickedColour) {
  // Click Calm's name, Space turns its check box off; Down goes to Other,
  // Space turns its check box on.
  SelectRow(form, kIdLstMessageCategories, 0);
  PressKey(VK_SPACE);
  PressKey(VK_DOWN);
  PressKey(VK_SPACE);
  EXPECT_TRUE(WaitFor([&] { return folder->Get("\\_._") == "0Calm\r\n1Other"; }, 3s)) << folder->Get("\\_._");

  // Alt+S presses Start: the window hides and only Other's phrase comes,
  // in red. (The label holds its text from before, or the one it is made
  // with, until the first phrase comes.)
  const std::string before = program->OverlayPhrase().value_or("");
  PressAlt('S');
  ASSERT_TRUE(WaitFor([&] { return !::IsWindowVisible(form); }, 3s));
  std::vector<std::string> seen;
  bool red = false;
  WaitFor(
      [&] {
        const std::string p = program->OverlayPhrase().value_or("");
        if (!p.empty() && p != before && p != "I want to buy this program" &&
            (seen.empty() || seen.back() != p))
          seen.push_back(p);
        red = red || (p == "From other" && program->OverlayPixels(kRed) > 50);
        return false;
      },
      8s);
  EXPECT_TRUE(red) << "the picked colour on the screen";
  ASSERT_FALSE(seen.empty());
  for (const std::string& p : seen) EXPECT_EQ(p, "From other");
}

// The real program in a program folder that is against it: a file where its
// "Lists" folder should be. The program keeps running, says what it could
// not do, and loses nothing; with the file gone, the next category makes
// the folder. (A category file another program holds open is the shell
// tests' case.)
TEST(HostileFolders, AFileInPlaceOfTheListsFolderIsNamedWhenACategoryCannotBeCreated) {
  ProgramFolder folder;
  folder.Put("\\Lists", "not a folder");
  RunningProgram program(folder, "firstrun");
  const HWND form = StartFirstRun(program);
  ASSERT_NE(form, nullptr);

  TypeInto(Control(form, kIdTxtEditCat), L"Calm");
  Click(Control(form, kIdCmdAddCat));
  const std::string message = Answer(program, IDOK);
  EXPECT_NE(message.find("the folder \"Lists\" could not be made"), std::string::npos) << message;
  EXPECT_EQ(folder.Get("\\Lists"), "not a folder");
  EXPECT_FALSE(folder.Has("\\_._"));
  // Nothing is listed that has no file, and the program goes on.
  EXPECT_EQ(ListView_GetItemCount(Control(form, kIdLstMessageCategories)), 0);
  ASSERT_TRUE(program.Running());

  ASSERT_TRUE(folder.Remove("\\Lists"));
  TypeInto(Control(form, kIdTxtEditCat), L"Calm");
  Click(Control(form, kIdCmdAddCat));
  EXPECT_TRUE(WaitFor([&] { return folder.Has("\\Lists\\Calm.lst") && folder.Get("\\_._") == "0Calm"; }, 3s));
}

}  // namespace
}  // namespace qm::test
