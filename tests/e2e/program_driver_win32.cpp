#include "program_driver_win32.h"

#include <filesystem>
#include <thread>

namespace qm::test {

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
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

ProgramFolder::ProgramFolder() {
  std::filesystem::copy_file(BuiltProgramPath(), Native("\\quillmere.exe"));
}

RunningProgram::RunningProgram(const ProgramFolder& folder, const std::string& arguments) {
  const std::string exe = folder("\\quillmere.exe");
  std::string commandLine = "\"" + exe + "\"";
  if (!arguments.empty()) commandLine += " " + arguments;
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION info{};
  if (!::CreateProcessA(exe.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
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
    if (!WaitForExit(std::chrono::seconds(5))) ::TerminateProcess(process_, 1);
    WaitForExit(std::chrono::seconds(5));
  }
  ::CloseHandle(process_);
}

bool RunningProgram::Running() const {
  return process_ && ::WaitForSingleObject(process_, 0) == WAIT_TIMEOUT;
}

std::optional<DWORD> RunningProgram::WaitForExit(std::chrono::milliseconds timeout) {
  if (!process_) return std::nullopt;
  if (::WaitForSingleObject(process_, static_cast<DWORD>(timeout.count())) != WAIT_OBJECT_0) return std::nullopt;
  DWORD code = 0;
  ::GetExitCodeProcess(process_, &code);
  return code;
}

namespace {

struct WindowSearch {
  DWORD pid;
  const char* className;
  std::vector<HWND> found;
};

BOOL CALLBACK CollectWindow(HWND hwnd, LPARAM p) {
  auto& s = *reinterpret_cast<WindowSearch*>(p);
  DWORD pid = 0;
  ::GetWindowThreadProcessId(hwnd, &pid);
  char name[64] = {};
  ::GetClassNameA(hwnd, name, sizeof name);
  if (pid == s.pid && std::string(name) == s.className) s.found.push_back(hwnd);
  return TRUE;
}

}  // namespace

std::vector<HWND> RunningProgram::Windows(const char* className) const {
  WindowSearch search{processId_, className, {}};
  ::EnumWindows(CollectWindow, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

namespace {
HWND FirstOrNull(const std::vector<HWND>& windows) { return windows.empty() ? nullptr : windows.front(); }
HWND FirstVisible(const std::vector<HWND>& windows) {
  for (HWND w : windows)
    if (::IsWindowVisible(w)) return w;
  return nullptr;
}
}  // namespace

HWND RunningProgram::SettingsWindow() const { return FirstOrNull(Windows("QuillmereSettings")); }
HWND RunningProgram::Overlay() const { return FirstOrNull(Windows("QuillmereOverlay")); }
HWND RunningProgram::OpenMenu() const { return FirstVisible(Windows("#32768")); }
HWND RunningProgram::MessageBox() const { return FirstVisible(Windows("#32770")); }

std::string RunningProgram::MessageBoxText(HWND box) {
  char text[512] = {};
  // The message box keeps its text in the static control 0xFFFF.
  ::GetDlgItemTextA(box, 0xFFFF, text, sizeof text);
  return text;
}

void RunningProgram::TrayMouse(UINT mouseMessage) const {
  ::PostMessageA(SettingsWindow(), 0x200, 1, mouseMessage);
}

void RunningProgram::ChooseFromMenu(int stepsUp) const {
  const HWND menu = OpenMenu();
  for (int i = 0; i < stepsUp; ++i) ::PostMessageA(menu, WM_KEYDOWN, VK_UP, 0);
  ::PostMessageA(menu, WM_KEYDOWN, VK_RETURN, 0);
}

int CountScreenPixels(const RECT& area, COLORREF color) {
  const int width = area.right - area.left;
  const int height = area.bottom - area.top;
  if (width <= 0 || height <= 0) return 0;
  HDC screen = ::GetDC(nullptr);
  HDC memory = ::CreateCompatibleDC(screen);
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  HBITMAP bitmap = ::CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  HGDIOBJ old = ::SelectObject(memory, bitmap);
  ::BitBlt(memory, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
  int count = 0;
  const auto* pixels = static_cast<const DWORD*>(bits);
  const DWORD wanted = (GetRValue(color) << 16) | (GetGValue(color) << 8) | GetBValue(color);
  for (int i = 0; i < width * height; ++i)
    if ((pixels[i] & 0xFFFFFF) == wanted) ++count;
  ::SelectObject(memory, old);
  ::DeleteObject(bitmap);
  ::DeleteDC(memory);
  ::ReleaseDC(nullptr, screen);
  return count;
}

}  // namespace qm::test
