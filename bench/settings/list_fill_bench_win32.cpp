// The settings window loading a category of many phrases into its phrase
// list, in this process: the time from the start of the window's set-up
// until the list holds every phrase. The set-up loads the first category's
// phrases twice (once as it is highlighted, once more after the Help view is
// sized), so this is two fills of the list. Prints a line per size.
#include <windows.h>
#include <commctrl.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

#include "../../tests/support/fake_prompts.h"
#include "../../tests/support/temp_folder.h"
#include "library/line_file.h"
#include "platform/file_system.h"
#include "platform/message_loop_win32.h"
#include "settings/settings_ids.h"
#include "settings/settings_window_win32.h"

int main() {
  using Clock = std::chrono::steady_clock;
  std::printf("the settings window's set-up with one category of N phrases, until the phrase list holds them:\n");
  for (int phrases : {1'000, 10'000, 30'000, 100'000}) {
    qm::test::TempFolder folder;
    std::string text;
    for (int i = 0; i < phrases; ++i) text += (i ? "\r\n1Phrase number " : "1Phrase number ") + std::to_string(i);
    qm::SystemFileSystem().MakeFolder(folder.Path() + "\\Lists");
    qm::SystemFileSystem().WriteAll(folder.Path() + "\\Lists\\Big.lst", text);
    qm::SystemFileSystem().WriteAll(folder.Path() + "\\_._", "1Big");
    qm::win32::MessageLoop loop;
    qm::test::FakePrompts prompts;
    const auto start = Clock::now();
    auto window = std::make_unique<qm::win32::frmSettings>(loop, qm::SystemFileSystem(), prompts, folder.Path());
    window->Form_Load("firstrun");
    const HWND list = ::GetDlgItem(static_cast<qm::win32::Window&>(*window).Hwnd(), qm::kIdLstPhrases);
    const auto count = ::SendMessageW(list, LVM_GETITEMCOUNT, 0, 0);
    const double ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    std::printf("  %7d phrases: %8.0f ms (%lld listed)\n", phrases, ms, static_cast<long long>(count));
    std::fflush(stdout);
    window.reset();
  }
  return 0;
}
