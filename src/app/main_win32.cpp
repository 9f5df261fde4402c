// Quillmere's entry point: one copy at a time, the settings window's
// start-up, then the message loop until the program ends.
#include <windows.h>

#include "platform/application_win32.h"
#include "platform/file_system.h"
#include "platform/message_loop_win32.h"
#include "platform/system_dll_win32.h"
#include "settings/settings_window_win32.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR commandLine, int) {
  // Libraries the program loads itself come from the system folder only,
  // never from the program's folder or the current one.
  qm::win32::sys::UseSafeLibrarySearch();

  // A second copy ends at once, leaving the first one untouched.
  qm::win32::InstanceGuard instance("Quillmere.SingleInstance");
  if (instance.PrevInstance()) return 0;

  qm::win32::MessageLoop loop;
  qm::win32::MessageBoxPrompts prompts;
  qm::win32::frmSettings settings(loop, qm::SystemFileSystem(), prompts, qm::win32::ProgramFolder());
  if (!settings.Form_Load(commandLine ? commandLine : "")) return 1;
  return loop.Run();
}
