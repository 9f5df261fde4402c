// Another program that holds a file open, sharing nothing, for a while:
// the helper program hold_file (tests/win32/library), started and waited for.
#pragma once

#include <windows.h>

#include <cstdio>
#include <string>

#include "platform/wide_text_win32.h"

namespace qm::test {

class FileHolder {
 public:
  FileHolder(const char* holderExe, const std::wstring& path, int milliseconds) {
    std::wstring line =
        L"\"" + *win32::WidenStrict(holderExe) + L"\" \"" + path + L"\" " + std::to_wstring(milliseconds);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    // A busy machine may refuse a new process for a moment: tried again.
    bool started = false;
    for (int tries = 0; tries < 5 && !started; ++tries) {
      started = ::CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                                 &info_) != FALSE;
      if (!started) {
        std::printf("the holder did not start (error %lu)\n", ::GetLastError());
        std::fflush(stdout);
        ::Sleep(200);
      }
    }
    if (!started) return;
    ::CloseHandle(info_.hThread);
    // Held once a reader that shares everything is refused.
    for (int tries = 0; tries < 2000; ++tries) {
      const HANDLE probe =
          ::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                        nullptr, OPEN_EXISTING, 0, nullptr);
      if (probe == INVALID_HANDLE_VALUE && ::GetLastError() == ERROR_SHARING_VIOLATION) {
        held_ = true;
        return;
      }
      if (probe != INVALID_HANDLE_VALUE) ::CloseHandle(probe);
      DWORD code = 0;
      if (::GetExitCodeProcess(info_.hProcess, &code) && code != STILL_ACTIVE) {
        std::printf("holder ended with %lu\n", code);
        std::fflush(stdout);
        return;
      }
      ::Sleep(10);
    }
  }
  ~FileHolder() { Release(); }
  FileHolder(const FileHolder&) = delete;
  FileHolder& operator=(const FileHolder&) = delete;
  bool Held() const { return held_; }
  // Waits for the helper to end, and so to let the file go.
  void Release() {
    if (!info_.hProcess) return;
    ::WaitForSingleObject(info_.hProcess, 10000);
    ::CloseHandle(info_.hProcess);
    info_.hProcess = nullptr;
  }

 private:
  PROCESS_INFORMATION info_{};
  bool held_ = false;
};

}  // namespace qm::test
