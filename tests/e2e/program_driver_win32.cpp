#include "program_driver_win32.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "../support/overlay_phrase_win32.h"

namespace qm::test {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

std::string BuiltProgramPath() {
  std::string path = QM_PROGRAM_EXE;
  for (char& c : path)
    if (c == '/') c = '\\';
  if (!path.empty() && path.front() == '\\') path = "Z:" + path;
  return path;
}

bool WaitFor(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
  const auto end = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    if (condition()) return true;
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(10ms);
  }
}

ProgramFolder::ProgramFolder() {
  static std::atomic<int> counter{0};
  path_ = (fs::temp_directory_path() / kProgramFolderStem).wstring() + L"-" +
          std::to_wstring(::GetTickCount64()) + L"-" + std::to_wstring(::GetCurrentProcessId()) + L"-" +
          std::to_wstring(++counter);
  fs::create_directory(path_);
  fs::copy_file(BuiltProgramPath(), (*this)("\\quillmere.exe"));
}

ProgramFolder::~ProgramFolder() {
  std::error_code ec;
  // Read-only files must not keep the folder alive.
  for (const auto& entry : fs::recursive_directory_iterator(path_, ec))
    fs::permissions(entry.path(), fs::perms::owner_write, fs::perm_options::add, ec);
  fs::remove_all(path_, ec);
}

std::wstring ProgramFolder::operator()(std::string_view relative) const {
  return path_ + std::wstring(relative.begin(), relative.end());
}

void ProgramFolder::Put(std::string_view relative, std::string_view bytes) const {
  const fs::path path = (*this)(relative);
  std::error_code ec;
  fs::create_directories(path.parent_path(), ec);
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string ProgramFolder::Get(std::string_view relative) const {
  std::ifstream in(fs::path((*this)(relative)), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

bool ProgramFolder::Has(std::string_view relative) const {
  std::error_code ec;
  return fs::exists((*this)(relative), ec);
}

bool ProgramFolder::Remove(std::string_view relative) const {
  std::error_code ec;
  return fs::remove((*this)(relative), ec);
}

RunningProgram::RunningProgram(const ProgramFolder& folder, const std::string& arguments) {
  const std::wstring exe = folder("\\quillmere.exe");
  std::wstring commandLine = L"\"" + exe + L"\"";
  if (!arguments.empty()) commandLine += L" " + std::wstring(arguments.begin(), arguments.end());
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION info{};
  if (!::CreateProcessW(exe.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        folder.Path().c_str(), &startup, &info))
    return;
  ::CloseHandle(info.hThread);
  process_ = info.hProcess;
  processId_ = info.dwProcessId;
}

RunningProgram::~RunningProgram() {
  if (!process_) return;
  if (Running()) {
    // Politely first, so the tray icon goes; then by force.
    if (HWND w = SettingsWindow()) ::PostMessageA(w, WM_CLOSE, 0, 0);
    if (!WaitForExit(5s)) ::TerminateProcess(process_, 1);
    WaitForExit(5s);
  }
  ::CloseHandle(process_);
}

std::optional<DWORD> RunningProgram::WaitForExit(std::chrono::milliseconds timeout) {
  if (!process_ || ::WaitForSingleObject(process_, static_cast<DWORD>(timeout.count())) != WAIT_OBJECT_0)
    return std::nullopt;
  DWORD code = 0;
  ::GetExitCodeProcess(process_, &code);
  return code;
}

bool RunningProgram::WaitForWindows() const {
  return Started() && WaitFor([&] { return SettingsWindow() && Overlay(); }, 10s);
}

HWND RunningProgram::Window(const char* className, bool visible) const {
  for (HWND w = nullptr; (w = ::FindWindowExA(nullptr, w, className, nullptr)) != nullptr;) {
    DWORD pid = 0;
    ::GetWindowThreadProcessId(w, &pid);
    if (pid == processId_ && (!visible || ::IsWindowVisible(w))) return w;
  }
  return nullptr;
}

std::string RunningProgram::MessageBoxText(HWND box) {
  char text[512] = {};
  // The message box keeps its text in the static control 0xFFFF.
  ::GetDlgItemTextA(box, 0xFFFF, text, sizeof text);
  return text;
}

std::optional<std::string> RunningProgram::OverlayPhrase() const {
  const HWND overlay = Overlay();
  return overlay ? AskOverlayPhrase(overlay) : std::nullopt;
}

int RunningProgram::OverlayPixels(COLORREF colour) const {
  RECT r{};
  return OverlayShown() && ::GetWindowRect(Overlay(), &r) ? CountScreenColour(r, colour) : 0;
}

bool RunningProgram::TrayMouse(UINT mouseMessage) const {
  // The icon's callback message, from icon 1.
  ::PostMessageA(SettingsWindow(), 0x200, 1, mouseMessage);
  return WaitFor([&] { return OpenMenu() != nullptr; }, 3s);
}

bool RunningProgram::ChooseFromMenu(TrayItem item) const {
  const HWND menu = OpenMenu();
  for (int i = 0; i < item; ++i) ::PostMessageA(menu, WM_KEYDOWN, VK_UP, 0);
  ::PostMessageA(menu, WM_KEYDOWN, VK_RETURN, 0);
  return WaitFor([&] { return OpenMenu() == nullptr; }, 3s);
}

}  // namespace qm::test
