// The common dialog wrapper with the system's own dialogs, answered by the
// test as a person would. (The font chooser that the program opens is
// answered with OK and with Cancel by the end-to-end tests.)
#include "platform/common_dialog_win32.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "../../support/test_helpers_win32.h"

namespace qm::win32 {
namespace {

using test::AnswerEveryTime;

class Recorder final : public CommonDialogEvents {
 public:
  void InitDialog(HWND) override { events.push_back("init"); }
  void ConfirmOK(bool& cancel) override {
    events.push_back("ok");
    cancel = keepOpenOnce;
    keepOpenOnce = false;
  }
  bool keepOpenOnce = false;
  std::vector<std::string> events;
};

TEST(CommonDialogFile, SaveReturnsThePathAndTheHookCanKeepTheDialogOpenOnce) {
  // An ASCII folder here.
  const std::string path = (std::filesystem::temp_directory_path() / "Quillmere-save.lst").string();
  Recorder recorder;
  cCommonDialog dialog(&recorder);
  dialog.FileName = path;
  dialog.Filter = "Lists|*.lst|All files|*.*";
  dialog.HookDialog = true;
  // The first OK is refused by the hook, the second closes the dialog.
  recorder.keepOpenOnce = true;
  const UINT_PTR timer = ::SetTimer(nullptr, 0, 300, AnswerEveryTime);
  EXPECT_NO_THROW(dialog.ShowSave());
  ::KillTimer(nullptr, timer);
  EXPECT_EQ(dialog.Worker().APIReturn(), 1);
  EXPECT_EQ(dialog.FileName, path);
  EXPECT_EQ(std::count(recorder.events.begin(), recorder.events.end(), "ok"), 2);
  EXPECT_EQ(recorder.events.front(), "init");
  EXPECT_EQ(dialog.Worker().VBGetFileTitle(path).value_or(""), "Quillmere-save.lst");
}

TEST(CommonDialogHelp, TheMultiKeyAndPositionCommandsAreRefused) {
  cCommonDialog dialog;
  for (UINT command : {513u, 515u}) {
    dialog.HelpCommand = command;
    try {
      dialog.ShowHelp();
      ADD_FAILURE() << command << " was not refused";
    } catch (const RuntimeError& e) {
      EXPECT_EQ(e.Number(), 13705);  // refused before the help program is asked
    }
  }
}

}  // namespace
}  // namespace qm::win32
