// The common dialog wrapper with the system's own dialogs, answered by the
// test as a person would. (The font chooser that the program opens is
// answered with OK and with Cancel by the end-to-end tests.)
#include "platform/common_dialog_win32.h"

#include <gtest/gtest.h>
#include <windows.h>

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
  void ConfirmOK(bool&) override { events.push_back("ok"); }
  std::vector<std::string> events;
};

// The file dialogs are not used by the program: one save, answered with OK,
// returns the path and passes the hook its events.
TEST(CommonDialogFile, SaveReturnsThePathAndTheHookSeesItsEvents) {
  // An ASCII folder here.
  const std::string path = (std::filesystem::temp_directory_path() / "Quillmere-save.lst").string();
  Recorder recorder;
  cCommonDialog dialog(&recorder);
  dialog.FileName = path;
  dialog.HookDialog = true;
  const UINT_PTR timer = ::SetTimer(nullptr, 0, 300, AnswerEveryTime);
  EXPECT_NO_THROW(dialog.ShowSave());
  ::KillTimer(nullptr, timer);
  EXPECT_EQ(dialog.FileName, path);
  EXPECT_EQ(recorder.events, (std::vector<std::string>{"init", "ok"}));
}

}  // namespace
}  // namespace qm::win32
