// The real program in a program folder that is against it: a file where its
// "Lists" folder should be, and a category file that another program holds
// open. The program keeps running, says what it could not do, and loses
// nothing. (A program folder without "Lists" at all is the first-run case of
// the settings window's tests: the first category makes the folder.)
#include <gtest/gtest.h>

#include <string>

#include "../support/file_holder_win32.h"
#include "program_driver_win32.h"
#include "real_input_win32.h"
#include "settings/settings_ids.h"

namespace qm::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* kSettings = "Arial\r\n28\r\nTrue\r\nFalse\r\n255\r\n200\r\n1";

TEST(HostileFolders, AFileInPlaceOfTheListsFolderIsNamedWhenACategoryCannotBeCreated) {
  ProgramFolder folder;
  folder.Put("\\Lists", "not a folder");
  folder.Put("\\__.__", kSettings);
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
  EXPECT_EQ(::SendMessageW(Control(form, kIdLstMessageCategories), 0x1004, 0, 0), 0);  // LVM_GETITEMCOUNT
  EXPECT_TRUE(program.Running());
}

TEST(HostileFolders, APhraseAddedWhileAnotherProgramHoldsItsFileIsRefusedAndSavedWithTheNext) {
  ProgramFolder folder;
  folder.Put("\\Lists\\Calm.lst", "1Breathe");
  folder.Put("\\_._", "1Calm");
  folder.Put("\\__.__", kSettings);
  RunningProgram program(folder, "firstrun");
  const HWND form = StartFirstRun(program);
  ASSERT_NE(form, nullptr);
  const HWND phrase = Control(form, kIdTxtEditWord);
  {
    FileHolder holder(QM_HOLD_FILE_EXE, folder("\\Lists\\Calm.lst"), 6000);
    ASSERT_TRUE(holder.Held());
    TypeInto(phrase, L"Hello");
    PressKey(VK_RETURN);
    const std::string message = Answer(program, IDOK);
    EXPECT_EQ(message,
              "The phrases of the category \"Calm\" could not be saved. Its file was left as it was.");
  }
  EXPECT_EQ(folder.Get("\\Lists\\Calm.lst"), "1Breathe");
  // The list still holds the phrase; the next change saves it with the rest.
  TypeInto(phrase, L"Again");
  PressKey(VK_RETURN);
  EXPECT_TRUE(WaitFor([&] { return folder.Get("\\Lists\\Calm.lst") == "1Again\r\n1Breathe\r\n1Hello"; }, 3s))
      << folder.Get("\\Lists\\Calm.lst");
}

}  // namespace
}  // namespace qm::test
