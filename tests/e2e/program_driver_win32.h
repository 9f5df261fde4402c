// Drives the real quillmere.exe from outside, as a user's desktop would: a
// copy of the program in a fresh folder of its own, started as a process,
// found by its windows (the hidden settings window, the overlay), clicked
// through the tray callback and answered through its message boxes.
#pragma once

#include <windows.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "../support/overlay_phrase_win32.h"
#include "../support/test_helpers_win32.h"

namespace qm::test {

// The built program, from the build (a POSIX path under Wine becomes the
// Z: drive's).
inline std::string BuiltProgramPath() {
  std::string path = QM_PROGRAM_EXE;
  for (char& c : path)
    if (c == '/') c = '\\';
  return path.starts_with('\\') ? "Z:" + path : path;
}

// A fresh program folder in the temporary folder, holding its own copy of
// quillmere.exe, removed with everything in it afterwards. Its name holds
// Cyrillic and CJK letters (kProgramFolderStem): the program runs from a
// folder named in any script. It is made, filled, read and removed through
// wide-character paths only. Relative parts begin with "\" and are ASCII.
inline constexpr std::wstring_view kProgramFolderStem =
    L"quillmere-e2e-\u041f\u0440\u043e\u0432\u0435\u0440\u043a\u0430-\u6e2c\u8a66";

class ProgramFolder {
 public:
  ProgramFolder();
  ~ProgramFolder();
  ProgramFolder(const ProgramFolder&) = delete;
  ProgramFolder& operator=(const ProgramFolder&) = delete;

  const std::wstring& Path() const { return path_; }
  // The folder's path followed by a relative part beginning with "\".
  std::wstring operator()(std::string_view relative) const {
    return path_ + std::wstring(relative.begin(), relative.end());
  }

  // Direct access for setting up and checking, bypassing the program.
  // Put makes the folders on the way.
  void Put(std::string_view relative, std::string_view bytes) const {
    const std::filesystem::path path = (*this)(relative);
    std::error_code ec;
    std::filesystem::create_directories(path.parent_path(), ec);
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  std::string Get(std::string_view relative) const {
    std::ifstream in(std::filesystem::path((*this)(relative)), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }
  bool Has(std::string_view relative) const {
    std::error_code ec;
    return std::filesystem::exists((*this)(relative), ec);
  }
  bool Remove(std::string_view relative) const {
    std::error_code ec;
    return std::filesystem::remove((*this)(relative), ec);
  }

 private:
  std::wstring path_;
};

// The tray menu's items, counted up from the bottom.
enum TrayItem { kExitItem = 1, kStopItem, kStartItem, kSettingsItem };

class RunningProgram {
 public:
  // Starts the folder's quillmere.exe with the command line's arguments.
  RunningProgram(const ProgramFolder& folder, const std::string& arguments = "");
  // Ends the program if it still runs: politely first, so the tray icon
  // goes; then by force.
  ~RunningProgram();
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  bool Started() const { return process_ != nullptr; }
  HANDLE Process() const { return process_; }
  bool Running() const { return process_ && ::WaitForSingleObject(process_, 0) == WAIT_TIMEOUT; }
  // Waits for the program to end; its exit code, or nothing on time-out.
  std::optional<DWORD> WaitForExit(std::chrono::milliseconds timeout) const {
    DWORD code = 0;
    if (!process_ || ::WaitForSingleObject(process_, static_cast<DWORD>(timeout.count())) != WAIT_OBJECT_0 ||
        !::GetExitCodeProcess(process_, &code))
      return std::nullopt;
    return code;
  }
  // Waits for the settings window and the overlay to be made.
  bool WaitForWindows() const {
    return Started() && WaitFor([&] { return SettingsWindow() && Overlay(); }, std::chrono::seconds(10));
  }

  // The program's first top-level window of a class, or its first visible
  // one.
  HWND Window(const char* className, bool visible = false) const {
    for (HWND w = nullptr; (w = ::FindWindowExA(nullptr, w, className, nullptr)) != nullptr;) {
      DWORD pid = 0;
      ::GetWindowThreadProcessId(w, &pid);
      if (pid == processId_ && (!visible || ::IsWindowVisible(w))) return w;
    }
    return nullptr;
  }
  HWND SettingsWindow() const { return Window("QuillmereSettings"); }
  HWND Overlay() const { return Window("QuillmereOverlay"); }
  // The tray menu while it is open, a message box or the font chooser while
  // one is shown.
  HWND OpenMenu() const { return Window("#32768", true); }
  HWND MessageBox() const { return Window("#32770", true); }
  // The phrase in the overlay's label, asked of the overlay (its window
  // text is empty); nothing when there is no overlay or it did not answer.
  std::optional<std::string> OverlayPhrase() const {
    return Overlay() ? AskOverlayPhrase(Overlay()) : std::nullopt;
  }
  bool OverlayShown() const { return Overlay() && ::IsWindowVisible(Overlay()); }
  // Pixels of a colour on the screen where the overlay shows (none while it
  // is hidden).
  int OverlayPixels(COLORREF colour) const {
    RECT r{};
    return OverlayShown() && ::GetWindowRect(Overlay(), &r) ? CountScreenColour(r, colour) : 0;
  }

  // The notification area's report of a mouse message over the icon (the
  // icon's callback message 0x200 from icon 1); true once the tray menu is
  // open.
  bool TrayMouse(UINT mouseMessage) const {
    ::PostMessageA(SettingsWindow(), 0x200, 1, mouseMessage);
    return WaitFor([&] { return OpenMenu() != nullptr; }, std::chrono::seconds(3));
  }
  // Picks a tray menu item by the keyboard (steps up from the bottom, then
  // Enter); true once the menu is gone.
  bool ChooseFromMenu(TrayItem item) const {
    const HWND menu = OpenMenu();
    for (int i = 0; i < item; ++i) ::PostMessageA(menu, WM_KEYDOWN, VK_UP, 0);
    ::PostMessageA(menu, WM_KEYDOWN, VK_RETURN, 0);
    return WaitFor([&] { return OpenMenu() == nullptr; }, std::chrono::seconds(3));
  }
  // Opens the tray menu with a click on the icon and picks an item.
  bool ChooseFromTray(TrayItem item) const { return TrayMouse(WM_LBUTTONUP) && ChooseFromMenu(item); }

 private:
  HANDLE process_ = nullptr;
  DWORD processId_ = 0;
};

}  // namespace qm::test
