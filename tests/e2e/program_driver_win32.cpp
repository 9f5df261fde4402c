#include "program_driver_win32.h"

#include <atomic>
#include <thread>

#include "../support/overlay_phrase_win32.h"

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

namespace {

std::wstring Widen(std::string_view text) {
  if (text.empty()) return {};
  const int n = ::MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(n), L'\0');
  ::MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), wide.data(), n);
  return wide;
}

// Removes a folder and everything in it; read-only files too.
void RemoveTree(const std::wstring& folder) {
  WIN32_FIND_DATAW found{};
  HANDLE search = ::FindFirstFileW((folder + L"\\*").c_str(), &found);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      const std::wstring name = found.cFileName;
      if (name == L"." || name == L"..") continue;
      const std::wstring path = folder + L"\\" + name;
      if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
        RemoveTree(path);
      } else {
        ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        ::DeleteFileW(path.c_str());
      }
    } while (::FindNextFileW(search, &found));
    ::FindClose(search);
  }
  ::RemoveDirectoryW(folder.c_str());
}

}  // namespace

ProgramFolder::ProgramFolder() {
  static std::atomic<int> counter{0};
  wchar_t temp[MAX_PATH + 1] = {};
  ::GetTempPathW(MAX_PATH + 1, temp);
  path_ = temp;
  while (!path_.empty() && path_.back() == L'\\') path_.pop_back();
  path_ += L"\\";
  path_ += kProgramFolderStem;
  path_ += L"-" + std::to_wstring(::GetTickCount64()) + L"-" + std::to_wstring(::GetCurrentProcessId()) +
           L"-" + std::to_wstring(++counter);
  ::CreateDirectoryW(path_.c_str(), nullptr);
  ::CopyFileW(Widen(BuiltProgramPath()).c_str(), (*this)("\\quillmere.exe").c_str(), FALSE);
}

ProgramFolder::~ProgramFolder() {
  RemoveTree(path_);
}

std::wstring ProgramFolder::operator()(std::string_view relative) const {
  return path_ + Widen(relative);
}

void ProgramFolder::Put(std::string_view relative, std::string_view bytes) const {
  const std::wstring path = (*this)(relative);
  // The folders on the way.
  for (std::size_t slash = path_.size() + 1; (slash = path.find(L'\\', slash)) != std::wstring::npos; ++slash)
    ::CreateDirectoryW(path.substr(0, slash).c_str(), nullptr);
  HANDLE file =
      ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  DWORD written = 0;
  ::WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  ::CloseHandle(file);
}

std::string ProgramFolder::Get(std::string_view relative) const {
  HANDLE file = ::CreateFileW((*this)(relative).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  std::string bytes;
  char buffer[4096];
  DWORD read = 0;
  while (::ReadFile(file, buffer, sizeof buffer, &read, nullptr) && read > 0) bytes.append(buffer, read);
  ::CloseHandle(file);
  return bytes;
}

bool ProgramFolder::Has(std::string_view relative) const {
  return ::GetFileAttributesW((*this)(relative).c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool ProgramFolder::Remove(std::string_view relative) const {
  return ::DeleteFileW((*this)(relative).c_str()) != 0;
}

RunningProgram::RunningProgram(const ProgramFolder& folder, const std::string& arguments) {
  const std::wstring exe = folder("\\quillmere.exe");
  std::wstring commandLine = L"\"" + exe + L"\"";
  if (!arguments.empty()) commandLine += L" " + Widen(arguments);
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
  if (::WaitForSingleObject(process_, static_cast<DWORD>(timeout.count())) != WAIT_OBJECT_0)
    return std::nullopt;
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
HWND FirstOrNull(const std::vector<HWND>& windows) {
  return windows.empty() ? nullptr : windows.front();
}
HWND FirstVisible(const std::vector<HWND>& windows) {
  for (HWND w : windows)
    if (::IsWindowVisible(w)) return w;
  return nullptr;
}
}  // namespace

HWND RunningProgram::SettingsWindow() const {
  return FirstOrNull(Windows("QuillmereSettings"));
}
HWND RunningProgram::Overlay() const {
  return FirstOrNull(Windows("QuillmereOverlay"));
}
HWND RunningProgram::OpenMenu() const {
  return FirstVisible(Windows("#32768"));
}
HWND RunningProgram::MessageBox() const {
  return FirstVisible(Windows("#32770"));
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

HWND RunningProgram::VisibleWindow(const char* className) const {
  return FirstVisible(Windows(className));
}

void RunningProgram::TrayMouse(UINT mouseMessage) const {
  ::PostMessageA(SettingsWindow(), 0x200, 1, mouseMessage);
}

void RunningProgram::ChooseFromMenu(int stepsUp) const {
  const HWND menu = OpenMenu();
  for (int i = 0; i < stepsUp; ++i) ::PostMessageA(menu, WM_KEYDOWN, VK_UP, 0);
  ::PostMessageA(menu, WM_KEYDOWN, VK_RETURN, 0);
}

}  // namespace qm::test
