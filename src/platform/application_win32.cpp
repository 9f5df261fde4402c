#include "platform/application_win32.h"

#include <sddl.h>

#include <vector>

#include <string>
#include <string_view>

#include "platform/wide_text_win32.h"

namespace qm::win32 {

std::wstring ProgramFilePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD n = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (n == 0) return {};
    // A full buffer means the path may have been cut short: try again with
    // more room (long paths reach 32767 characters).
    if (n < path.size() || path.size() > 65536) {
      path.resize(n);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

std::string ProgramFolder() {
  const std::wstring path = ProgramFilePath();
  const auto slash = path.find_last_of(L"\\/");
  if (slash == std::wstring::npos) return ".";
  return NarrowStrict(std::wstring_view(path).substr(0, slash)).value_or(".");
}

std::string ExecutableName() {
  std::wstring name = ProgramFilePath();
  const auto slash = name.find_last_of(L"\\/");
  if (slash != std::wstring::npos) name.erase(0, slash + 1);
  const auto dot = name.rfind(L'.');
  if (dot != std::wstring::npos && dot > 0) name.erase(dot);
  return NarrowStrict(name).value_or("");
}

namespace {

// The user's security identifier as text ("S-1-5-21-..."), empty when it
// cannot be read.
std::wstring UserSid() {
  KernelHandle token;
  {
    HANDLE raw = nullptr;
    if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &raw)) return {};
    token.Reset(raw);
  }
  DWORD size = 0;
  ::GetTokenInformation(token.Get(), TokenUser, nullptr, 0, &size);
  std::vector<BYTE> buffer(size);
  if (size == 0 || !::GetTokenInformation(token.Get(), TokenUser, buffer.data(), size, &size)) return {};
  LPWSTR text = nullptr;
  if (!::ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(buffer.data())->User.Sid, &text)) return {};
  std::wstring sid(text);
  ::LocalFree(text);
  return sid;
}

}  // namespace

std::wstring InstanceObjectName(const char* name) {
  // The session's own namespace, and the user's identifier in the name: a
  // copy of another user, or in another session, neither blocks this one
  // nor is blocked by it.
  return L"Local\\" + Widen(name) + L"." + UserSid();
}

InstanceGuard::InstanceGuard(const char* name)
    : mutex_(::CreateMutexW(nullptr, FALSE, InstanceObjectName(name).c_str())) {
  // Only this user's own copy in this session can hold the name.
  prevInstance_ = mutex_.Valid() && ::GetLastError() == ERROR_ALREADY_EXISTS;
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
  const std::wstring body = Widen(text);
  const std::wstring title = Widen(kAppTitle);
  ++open_;
  const int answer = ::MessageBoxW(nullptr, body.c_str(), title.c_str(), type);
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
