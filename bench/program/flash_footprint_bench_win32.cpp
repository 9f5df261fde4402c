// Ten thousand flashes through the real overlay, its real timers' tick
// handlers and the message loop, in one process: private memory, GDI and
// USER objects and handles before, after 1,000 and after 10,000 flashes of
// phrases of varying length in one font, as the program runs; flat figures
// mean nothing leaks. Then 1,000 flashes more in 100 fonts, one after the
// other, as when the user tries many fonts: the system's font cache may
// keep something of each font it has made.
#include <windows.h>
// (after windows.h, which it needs)
#include <psapi.h>

#include <chrono>
#include <cstdio>
#include <string>

#include "../../tests/support/flasher_doubles.h"
#include "../../tests/support/test_helpers_win32.h"
#include "display/message_window_win32.h"

namespace {

// Figures this system does not report read "n/a" (Wine reports no object
// counts and no private bytes; its committed and working-set figures
// still show a leak of any kind of object, as every object lives in the
// process's memory there).
void PrintFootprint(const char* when) {
  PROCESS_MEMORY_COUNTERS_EX memory{};
  memory.cb = sizeof memory;
  ::GetProcessMemoryInfo(::GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory),
                         sizeof memory);
  DWORD handles = 0;
  ::GetProcessHandleCount(::GetCurrentProcess(), &handles);
  const auto figure = [](unsigned long long value) {
    return value ? std::to_string(value) : std::string("n/a");
  };
  std::printf("  %-13s committed %s KiB  working set %s KiB  private %s KiB  GDI %s  USER %s  handles %s\n",
              when, figure(memory.PagefileUsage / 1024).c_str(), figure(memory.WorkingSetSize / 1024).c_str(),
              figure(memory.PrivateUsage / 1024).c_str(),
              figure(::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS)).c_str(),
              figure(::GetGuiResources(::GetCurrentProcess(), GR_USEROBJECTS)).c_str(),
              figure(handles).c_str());
  std::fflush(stdout);
}

}  // namespace

int main() {
  qm::test::ClosedHost host;
  qm::win32::MessageLoop loop;
  qm::win32::MessageWindow window(host, loop);
  qm::frmMessage& form = window.Form();
  form.SetLabelColor(qm::Rgb(200, 0, 0));
  qm::PhraseList::value_type phrases;
  for (int i = 0; i < 97; ++i)
    phrases.push_back("Phrase " + std::string(static_cast<std::size_t>(i % 40), 'x'));
  form.MessageList = qm::PhraseList{phrases};
  form.HideLabel();
  form.Show();
  form.bStopped = false;

  const auto flash = [&] {
    form.TimerFrequency_Timer();
    qm::test::Pump();  // the phrase is painted
    form.TimerDisplayLength_Timer();
    qm::test::Pump();
  };
  std::printf("ten thousand flashes through the overlay, in Arial 28 bold:\n");
  form.SetLabelFont({"Arial", 28, true, false, false, false});
  const auto start = std::chrono::steady_clock::now();
  PrintFootprint("before");
  for (int n = 1; n <= 10'000; ++n) {
    flash();
    if (n == 1'000) PrintFootprint("after 1,000");
  }
  PrintFootprint("after 10,000");
  std::printf("  %.1f s in all\n",
              std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  const char* faces[] = {"Arial", "Times New Roman", "Courier New", "Tahoma"};
  for (int font = 0; font < 100; ++font) {
    form.SetLabelFont({faces[font % 4], 8.0 + font / 4, font % 2 == 0, font % 3 == 0, false, false});
    for (int n = 0; n < 10; ++n) flash();
  }
  PrintFootprint("100 fonts more");
  form.bStopped = true;
  form.TimerFrequency().SetEnabled(false);
  form.TimerDisplayLength().SetEnabled(false);
  return 0;
}
