#include "program_driver_win32.h"

#include <atomic>

namespace qm::test {

namespace fs = std::filesystem;

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
    if (HWND w = SettingsWindow()) ::PostMessageA(w, WM_CLOSE, 0, 0);
    if (!WaitForExit(std::chrono::seconds(5))) ::TerminateProcess(process_, 1);
    WaitForExit(std::chrono::seconds(5));
  }
  ::CloseHandle(process_);
}

}  // namespace qm::test
