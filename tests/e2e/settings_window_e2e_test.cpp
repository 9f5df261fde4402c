// The settings window as a user meets it at a first run, in one run of the
// real program that the tests below share in their order: the hint, the
// library edited by typing into its boxes and clicking its buttons with the
// bytes on disk checked afterwards, the tab order and access keys, and a
// checked category's phrases flashed after Start.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "program_driver_win32.h"
#include "real_input_win32.h"
#include "settings/settings_ids.h"

namespace qm::test {
namespace {

using namespace std::chrono_literals;

constexpr UINT kGetItemCount = 0x1004;  // LVM_GETITEMCOUNT

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
  static void TearDownTestSuite() {
    program.reset();
    folder.reset();
  }
  void SetUp() override { ASSERT_NE(form, nullptr); }
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

TEST_F(SettingsWindow, APastedDeviceNameIsRefusedWithAMessageAndCreatesNothing) {
  PasteInto(Control(form, kIdTxtEditCat), L"CON");
  EXPECT_TRUE(WaitFor([&] { return AsciiText(Control(form, kIdTxtEditCat)) == "CON"; }, 2s));
  Click(Control(form, kIdCmdAddCat));
  const std::string message = Answer(*program, IDOK);
  EXPECT_NE(message.find("\"CON\""), std::string::npos) << message;
  EXPECT_FALSE(folder->Has("\\Lists\\CON.lst"));
  EXPECT_EQ(folder->Get("\\_._"), "1Calm\r\n0Other");
}

TEST_F(SettingsWindow, TypingAndClickingAddsRenamesAndDeletesWithTheExpectedBytesOnDisk) {
  const HWND category = Control(form, kIdTxtEditCat);
  // The category box drops the full stop as it is typed.
  TypeInto(category, L"Re.lax");
  EXPECT_EQ(AsciiText(category), "Relax");
  Click(Control(form, kIdCmdAddCat));
  ASSERT_TRUE(WaitFor([&] { return folder->Has("\\Lists\\Relax.lst"); }, 3s));
  EXPECT_EQ(folder->Get("\\Lists\\Relax.lst"), "");
  EXPECT_EQ(folder->Get("\\_._"), "1Calm\r\n0Other\r\n0Relax");
  EXPECT_EQ(AsciiText(category), "");

  // Enter in the phrase box adds the phrase, checked.
  SelectRow(form, kIdLstMessageCategories, 2);
  TypeInto(Control(form, kIdTxtEditWord), L"Hello");
  PressKey(VK_RETURN);
  ASSERT_TRUE(WaitFor([&] { return folder->Get("\\Lists\\Relax.lst") == "1Hello"; }, 3s))
      << folder->Get("\\Lists\\Relax.lst");

  // Rename: Edit puts the name into the box, Add renames it.
  Click(Control(form, kIdCmdEditCat));
  EXPECT_TRUE(WaitFor([&] { return AsciiText(category) == "Relax"; }, 2s));
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
  EXPECT_EQ(::SendMessageW(Control(form, kIdLstMessageCategories), kGetItemCount, 0, 0), 2);
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

TEST_F(SettingsWindow, CheckingACategoryChangesWhatIsFlashedAfterStart) {
  // Click Calm's name, Space turns its check box off; Down goes to Other,
  // Space turns its check box on.
  SelectRow(form, kIdLstMessageCategories, 0);
  PressKey(VK_SPACE);
  PressKey(VK_DOWN);
  PressKey(VK_SPACE);
  EXPECT_TRUE(WaitFor([&] { return folder->Get("\\_._") == "0Calm\r\n1Other"; }, 3s)) << folder->Get("\\_._");

  // Alt+S presses Start: the window hides and only Other's phrase comes.
  // (The label holds its text from before, or the one it is made with,
  // until the first phrase comes.)
  const std::string before = program->OverlayPhrase().value_or("");
  PressAlt('S');
  ASSERT_TRUE(WaitFor([&] { return !::IsWindowVisible(form); }, 3s));
  std::vector<std::string> seen;
  const auto watch = [&] {
    const std::string p = program->OverlayPhrase().value_or("");
    if (!p.empty() && p != before && p != "I want to buy this program" && (seen.empty() || seen.back() != p))
      seen.push_back(p);
    return false;
  };
  WaitFor([&] { return watch() || !seen.empty(); }, 8s);
  WaitFor(watch, 2500ms);  // a few more seconds
  ASSERT_FALSE(seen.empty());
  for (const std::string& p : seen) EXPECT_EQ(p, "From other");
}

}  // namespace
}  // namespace qm::test
