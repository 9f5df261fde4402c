// The overlay's phrase, asked of the overlay as the tests do: its window
// text stays empty, so it answers a private message with WM_COPYDATA.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "display/overlay_query_win32.h"

namespace qm::test {

// Takes the overlay's answer into the std::optional its window holds.
inline LRESULT CALLBACK OverlayAnswerProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg != WM_COPYDATA) return ::DefWindowProcW(hwnd, msg, wParam, lParam);
  auto* answer = reinterpret_cast<std::optional<std::string>*>(::GetWindowLongPtrW(hwnd, GWLP_USERDATA));
  const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
  if (!answer || data->dwData != qm::win32::kOverlayPhraseReply) return FALSE;
  *answer = std::string(static_cast<const char*>(data->lpData), data->cbData);
  return TRUE;
}

// The phrase in the overlay's label; nothing when it did not answer.
inline std::optional<std::string> AskOverlayPhrase(HWND overlay) {
  static const ATOM windowClass = [] {
    WNDCLASSW c{};
    c.lpfnWndProc = OverlayAnswerProc;
    c.hInstance = ::GetModuleHandleW(nullptr);
    c.lpszClassName = L"QuillmereTestPhraseAnswer";
    return ::RegisterClassW(&c);
  }();
  const HWND receiver =
      ::CreateWindowExW(0, reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(windowClass)), L"", 0, 0, 0, 0, 0,
                        HWND_MESSAGE, nullptr, ::GetModuleHandleW(nullptr), nullptr);
  if (!receiver) return std::nullopt;
  std::optional<std::string> answer;
  ::SetWindowLongPtrW(receiver, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&answer));
  DWORD_PTR result = 0;
  const bool sent =
      ::SendMessageTimeoutW(overlay, ::RegisterWindowMessageW(qm::win32::kOverlayPhraseQuery),
                            reinterpret_cast<WPARAM>(receiver), 0, SMTO_ABORTIFHUNG, 2000, &result) != 0;
  ::DestroyWindow(receiver);
  if (!sent || result != 1) return std::nullopt;
  return answer;
}

}  // namespace qm::test
