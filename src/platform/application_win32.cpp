#include "platform/application_win32.h"

#include <string>
#include <string_view>

namespace qm::win32 {

std::string ProgramFolder() {
  std::string path(MAX_PATH, '\0');
  for (;;) {
    const DWORD n = ::GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (n == 0) return ".";
    if (n < path.size()) {
      path.resize(n);
      break;
    }
    path.resize(path.size() * 2);  // a long path: try again with more room
  }
  const auto slash = path.find_last_of("\\/");
  return slash == std::string::npos ? std::string(".") : path.substr(0, slash);
}

InstanceGuard::InstanceGuard(const char* name) {
  mutex_ = ::CreateMutexA(nullptr, FALSE, name);
  // Taken by another copy, or (access denied) by a copy of another user's
  // session that we may not open: either way one runs already.
  prevInstance_ = (mutex_ != nullptr && ::GetLastError() == ERROR_ALREADY_EXISTS) ||
                  (mutex_ == nullptr && ::GetLastError() == ERROR_ACCESS_DENIED);
}

InstanceGuard::~InstanceGuard() {
  if (mutex_) ::CloseHandle(mutex_);
}

PromptAnswer MessageBoxPrompts::Show(std::string_view text, PromptIcon icon, PromptButtons buttons) {
  UINT type = MB_SETFOREGROUND;
  switch (icon) {
    case PromptIcon::Exclamation: type |= MB_ICONEXCLAMATION; break;
    case PromptIcon::Critical: type |= MB_ICONSTOP; break;
    case PromptIcon::Question: type |= MB_ICONQUESTION; break;
    case PromptIcon::Information: type |= MB_ICONINFORMATION; break;
  }
  type |= buttons == PromptButtons::YesNo ? MB_YESNO : MB_OK;
  const std::string body(text);
  const std::string title(kAppTitle);
  ++open_;
  const int answer = ::MessageBoxA(nullptr, body.c_str(), title.c_str(), type);
  --open_;
  switch (answer) {
    case IDYES: return PromptAnswer::Yes;
    case IDNO: return PromptAnswer::No;
    default: return buttons == PromptButtons::YesNo ? PromptAnswer::No : PromptAnswer::Ok;
  }
}

namespace {

BOOL CALLBACK RaiseMessageBox(HWND hwnd, LPARAM found) {
  char name[16] = {};
  if (!::IsWindowVisible(hwnd) || !::GetClassNameA(hwnd, name, sizeof name) ||
      std::string_view(name) != "#32770")
    return TRUE;
  *reinterpret_cast<HWND*>(found) = hwnd;
  return TRUE;  // the last one found is the innermost box
}

}  // namespace

void MessageBoxPrompts::BringToFront() {
  if (!IsOpen()) return;
  HWND box = nullptr;
  ::EnumThreadWindows(::GetCurrentThreadId(), RaiseMessageBox, reinterpret_cast<LPARAM>(&box));
  if (!box) return;
  ::SetWindowPos(box, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
  ::SetForegroundWindow(box);
}

void MessagePump::DoEvents() {
  MSG msg;
  while (::PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
    if (msg.message == WM_QUIT) {
      ::PostQuitMessage(static_cast<int>(msg.wParam));
      return;
    }
    ::TranslateMessage(&msg);
    ::DispatchMessageA(&msg);
  }
}

}  // namespace qm::win32
