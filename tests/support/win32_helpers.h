// Helpers the Windows shell tests share: a window's text, the waiting
// window messages run, and the system's dialogs of this thread answered
// from a timer, as a person would answer them.
#pragma once

#include <windows.h>

#include <string>

namespace qm::test {

// The window's text with every character outside ASCII shown as "?".
inline std::string Text(HWND hwnd) {
  wchar_t text[4096] = {};
  const int n = ::GetWindowTextW(hwnd, text, 4096);
  std::string out;
  for (int i = 0; i < n; ++i) out += text[i] < 128 ? static_cast<char>(text[i]) : '?';
  return out;
}

// Runs the window messages that are waiting.
inline void Pump() {
  MSG msg;
  while (::PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
    ::TranslateMessage(&msg);
    ::DispatchMessageW(&msg);
  }
}

// The command the next answer gives the first visible dialog box of this
// thread, and whether one was answered since gAnswered was cleared.
inline WPARAM gAnswer = IDCANCEL;
inline bool gAnswered = false;

inline BOOL CALLBACK AnswerDialog(HWND hwnd, LPARAM) {
  char name[16] = {};
  if (!::IsWindowVisible(hwnd) || !::GetClassNameA(hwnd, name, sizeof name) || std::string(name) != "#32770")
    return TRUE;
  ::PostMessageW(hwnd, WM_COMMAND, gAnswer, 0);
  gAnswered = true;
  return FALSE;
}

// A timer procedure that answers one dialog.
inline void CALLBACK AnswerTimer(HWND, UINT, UINT_PTR, DWORD) {
  if (!gAnswered) ::EnumThreadWindows(::GetCurrentThreadId(), AnswerDialog, 0);
}

// A timer procedure that answers the open dialog at every tick.
inline void CALLBACK AnswerEveryTime(HWND, UINT, UINT_PTR, DWORD) {
  ::EnumThreadWindows(::GetCurrentThreadId(), AnswerDialog, 0);
}

}  // namespace qm::test
