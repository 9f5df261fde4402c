// The real program from outside: how fast it starts, and what it costs
// while it runs. Prints figures for a person.
//
//   start      time from process creation until the tray icon is up (the
//              overlay, made right after the icon, exists), and until the
//              first phrase is on screen
//   big list   time from process creation until the phrase list holds a
//              100,000-phrase category, the first one, loaded at start
//   idle       processor time used in 10 s with a phrase every 30 s (only
//              the one-second watchdog ticks)
//   flashing   private memory and object counts after 5 s and after 60 s
//              of a phrase every second
#include <windows.h>
#include <commctrl.h>
#include <psapi.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "../../tests/e2e/program_driver_win32.h"
#include "settings/settings_ids.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using qm::test::ProgramFolder;
using qm::test::RunningProgram;
using qm::test::WaitFor;

void PutLibrary(const ProgramFolder& folder, int frequencySeconds) {
  folder.Put("\\Lists\\Calm.lst", "1I am calm\r\n1I breathe slowly\r\n1I am at ease");
  folder.Put("\\_._", "1Calm");
  folder.Put("\\__.__", "Arial\r\n28\r\nTrue\r\nFalse\r\n255\r\n1\r\n" + std::to_string(frequencySeconds));
}

double Ms(Clock::duration d) { return std::chrono::duration<double, std::milli>(d).count(); }

double CpuMs(HANDLE process) {
  FILETIME created, exited, kernel, user;
  if (!::GetProcessTimes(process, &created, &exited, &kernel, &user)) return 0;
  const auto value = [](FILETIME t) { return (static_cast<unsigned long long>(t.dwHighDateTime) << 32) | t.dwLowDateTime; };
  return static_cast<double>(value(kernel) + value(user)) / 10000.0;
}

void PrintFootprint(const char* when, HANDLE process) {
  PROCESS_MEMORY_COUNTERS_EX memory{};
  memory.cb = sizeof memory;
  ::GetProcessMemoryInfo(process, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory), sizeof memory);
  DWORD handles = 0;
  ::GetProcessHandleCount(process, &handles);
  // Figures this system does not report for another process read 0.
  const auto figure = [](unsigned long long value) { return value ? std::to_string(value) : std::string("n/a"); };
  std::printf("  %-22s private %s KiB  working set %s KiB  GDI %s  USER %s  handles %s\n", when,
              figure(memory.PrivateUsage / 1024).c_str(), figure(memory.WorkingSetSize / 1024).c_str(),
              figure(::GetGuiResources(process, GR_GDIOBJECTS)).c_str(),
              figure(::GetGuiResources(process, GR_USEROBJECTS)).c_str(), figure(handles).c_str());
}

}  // namespace

int main() {
  std::printf("start (5 runs, fresh program folder each):\n");
  std::vector<double> windows, phrase;
  for (int run = 0; run < 5; ++run) {
    ProgramFolder folder;
    PutLibrary(folder, 1);
    const auto t0 = Clock::now();
    RunningProgram program(folder);
    if (!WaitFor([&] { return program.SettingsWindow() && program.Overlay(); }, 10s)) {
      std::printf("  the program did not start\n");
      return 1;
    }
    windows.push_back(Ms(Clock::now() - t0));
    WaitFor([&] {
      return ::IsWindowVisible(program.Overlay()) &&
             program.OverlayPhrase() == std::optional<std::string>("I breathe slowly");  // the first phrase shown
    }, 5s);
    phrase.push_back(Ms(Clock::now() - t0));
  }
  std::sort(windows.begin(), windows.end());
  std::sort(phrase.begin(), phrase.end());
  std::printf("  tray icon and overlay: median %.0f ms (min %.0f, max %.0f)\n", windows[2], windows[0], windows[4]);
  std::printf("  first phrase:  median %.0f ms (one 1 s interval after start-up)\n", phrase[2]);

  {
    ProgramFolder folder;
    std::string big;
    big.reserve(100'000 * 20);
    for (int i = 0; i < 100'000; ++i) big += (i ? "\r\n1Phrase number " : "1Phrase number ") + std::to_string(i);
    folder.Put("\\Lists\\Big.lst", big);
    folder.Put("\\_._", "1Big");
    const auto t0 = Clock::now();
    RunningProgram program(folder, "firstrun");
    const auto filled = [&] {
      const HWND settings = program.SettingsWindow();
      const HWND list = settings ? ::GetDlgItem(settings, qm::kIdLstPhrases) : nullptr;
      return list && ::SendMessageA(list, LVM_GETITEMCOUNT, 0, 0) == 100'000;
    };
    if (WaitFor(filled, 120s))
      std::printf("big list: start-up with a 100,000-phrase category in the phrase list: %.0f ms\n",
                  Ms(Clock::now() - t0));
    else
      std::printf("big list: the phrase list did not reach 100,000 phrases in 120 s\n");
    PrintFootprint("with 100,000 phrases", program.Process());
  }

  {
    ProgramFolder folder;
    PutLibrary(folder, 30);
    RunningProgram program(folder);
    WaitFor([&] { return program.SettingsWindow() && program.Overlay(); }, 10s);
    std::this_thread::sleep_for(1s);
    const double before = CpuMs(program.Process());
    std::this_thread::sleep_for(10s);
    const double after = CpuMs(program.Process());
    if (after == 0)
      std::printf("idle: this system does not report another process's processor time\n");
    else
      std::printf("idle: %.1f ms of processor time in 10 s between phrases\n", after - before);
  }

  {
    ProgramFolder folder;
    PutLibrary(folder, 1);
    RunningProgram program(folder);
    WaitFor([&] { return program.SettingsWindow() && program.Overlay(); }, 10s);
    std::printf("flashing, a phrase a second:\n");
    std::this_thread::sleep_for(5s);
    PrintFootprint("after 5 s (~4 phrases)", program.Process());
    std::this_thread::sleep_for(55s);
    PrintFootprint("after 60 s (~59)", program.Process());
  }
  return 0;
}
