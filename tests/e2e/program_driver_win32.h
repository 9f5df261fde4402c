// Drives the real quillmere.exe from outside, as a user's desktop would: a
// copy of the program in a fresh folder of its own, started as a process,
// found by its windows (the hidden settings window, the overlay), clicked
// through the tray callback and answered through its message boxes.
#pragma once

#include <windows.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "../support/temp_folder.h"

namespace qm::test {

// The built program, from the build (a POSIX path under Wine becomes the
// Z: drive's).
std::string BuiltProgramPath();

// Polls until the condition holds or the time is up; true when it held.
bool WaitFor(const std::function<bool()>& condition, std::chrono::milliseconds timeout);

// A program folder with its own copy of quillmere.exe, removed afterwards.
class ProgramFolder : public TempFolder {
 public:
  ProgramFolder();
};

class RunningProgram {
 public:
  // Starts the folder's quillmere.exe with the command line's arguments.
  RunningProgram(const ProgramFolder& folder, const std::string& arguments = "");
  // Ends the program if it still runs.
  ~RunningProgram();
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  bool Started() const { return process_ != nullptr; }
  HANDLE Process() const { return process_; }
  bool Running() const;
  // Waits for the program to end; its exit code, or nothing on time-out.
  std::optional<DWORD> WaitForExit(std::chrono::milliseconds timeout);

  // The program's top-level windows of a class (visible or not).
  std::vector<HWND> Windows(const char* className) const;
  HWND SettingsWindow() const;
  HWND Overlay() const;
  // The tray menu while it is open, a message box while one is shown.
  HWND OpenMenu() const;
  HWND MessageBox() const;
  // The message box's text.
  static std::string MessageBoxText(HWND box);

  // The notification area's report of a mouse message over the icon.
  void TrayMouse(UINT mouseMessage) const;
  // Picks a tray menu item by the keyboard: steps up from the bottom
  // (1 Exit Application, 2 Stop, 3 Start) and presses Enter.
  void ChooseFromMenu(int stepsUp) const;

 private:
  HANDLE process_ = nullptr;
  DWORD processId_ = 0;
};

// Pixels of one colour in a rectangle of the screen.
int CountScreenPixels(const RECT& area, COLORREF color);

}  // namespace qm::test
