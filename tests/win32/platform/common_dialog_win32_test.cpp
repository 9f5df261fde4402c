// The common dialog wrapper with the system's own font chooser, answered by
// the test as a person would: OK or Cancel on the open dialog.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "../../support/test_helpers_win32.h"
#include "platform/common_dialog_win32.h"

namespace qm::win32 {
namespace {

using test::AnswerEveryTime;
using test::AnswerTimer;
using test::gAnswer;
using test::gAnswered;

// Opens the chooser with a timer standing by to answer it.
template <class F>
void Answering(WPARAM answer, F&& open) {
  gAnswer = answer;
  gAnswered = false;
  const UINT_PTR timer = ::SetTimer(nullptr, 0, 200, AnswerTimer);
  open();
  ::KillTimer(nullptr, timer);
  EXPECT_TRUE(gAnswered) << "no dialog was open to answer";
}

class Recorder final : public CommonDialogEvents {
 public:
  void InitDialog(HWND) override { events.push_back("init"); }
  void DialogClose() override { events.push_back("close"); }
  void ConfirmOK(bool& cancel) override {
    events.push_back("ok");
    cancel = keepOpenOnce;
    keepOpenOnce = false;
  }
  bool keepOpenOnce = false;
  std::vector<std::string> events;
};

TEST(CommonDialogFont, OkReturnsTheChosenFontAndCancelLeavesEverythingAsItWas) {
  Recorder recorder;
  cCommonDialog dialog(&recorder);
  dialog.SetFontName("Arial");
  dialog.SetFontSize(24);
  dialog.SetFontBold(true);
  dialog.SetFontItalic(false);
  dialog.flags = 1;
  dialog.HookDialog = true;
  Answering(IDOK, [&] { dialog.ShowFont(); });
  EXPECT_EQ(dialog.Worker().APIReturn(), 1);
  EXPECT_EQ(dialog.FontName(), "Arial");
  EXPECT_EQ(dialog.FontSize(), 24);
  EXPECT_TRUE(dialog.FontBold());
  EXPECT_FALSE(dialog.FontItalic());
  // The dialog kept what it was asked for, and its notifications came back.
  EXPECT_EQ(dialog.flags & 0x41u, 0x41u);
  ASSERT_FALSE(recorder.events.empty());
  EXPECT_EQ(recorder.events.front(), "init");

  dialog.SetFontName("Courier New");
  dialog.SetFontSize(10);
  dialog.SetFontBold(false);
  dialog.HookDialog = false;
  recorder.events.clear();
  Answering(IDCANCEL, [&] { EXPECT_NO_THROW(dialog.ShowFont()); });
  EXPECT_EQ(dialog.Worker().APIReturn(), 0);
  EXPECT_EQ(dialog.FontName(), "Courier New");
  EXPECT_EQ(dialog.FontSize(), 10);
  EXPECT_FALSE(dialog.FontBold());
  EXPECT_TRUE(recorder.events.empty());  // not hooked: no events
}

TEST(CommonDialogFile, SaveReturnsThePathAndTheHookCanKeepTheDialogOpenOnce) {
  wchar_t folder[MAX_PATH] = {};
  ::GetTempPathW(MAX_PATH, folder);
  std::string path;
  for (const wchar_t* c = folder; *c; ++c) path += static_cast<char>(*c);  // an ASCII folder here
  path += "Quillmere-save.lst";
  Recorder recorder;
  cCommonDialog dialog(&recorder);
  dialog.FileName = path;
  dialog.Filter = "Lists|*.lst|All files|*.*";
  dialog.HookDialog = true;
  // The first OK is refused by the hook, the second closes the dialog.
  recorder.keepOpenOnce = true;
  gAnswer = IDOK;
  const UINT_PTR timer = ::SetTimer(nullptr, 0, 300, AnswerEveryTime);
  EXPECT_NO_THROW(dialog.ShowSave());
  ::KillTimer(nullptr, timer);
  EXPECT_EQ(dialog.Worker().APIReturn(), 1);
  EXPECT_EQ(dialog.FileName, path);
  EXPECT_EQ(std::count(recorder.events.begin(), recorder.events.end(), "ok"), 2);
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
      EXPECT_EQ(e.Number(), 13705);
      EXPECT_EQ(e.Description(), "Invalid WinHelp Command Passed to ShowHelp function.");
      EXPECT_NE(e.Source().find(".cCommonDialog"), std::string::npos);
    }
  }
}

}  // namespace
}  // namespace qm::win32
