// The overlay's private answer to "which phrase is in your label?".
//
// The overlay's window text stays empty, so window lists and accessibility
// tools never read the phrases. A program that wants the phrase (the
// program's own tests, which run it as another process) sends the overlay
// the registered message named kOverlayPhraseQuery with wParam = a window
// of its own. The overlay answers, before that send returns, by sending
// that window WM_COPYDATA: wParam the overlay, dwData kOverlayPhraseReply,
// and the label's text as bytes (no NUL). The send's result is 1 when the
// answer was given, 0 otherwise.
#pragma once

#include <windows.h>

namespace qm::win32 {

inline constexpr const wchar_t* kOverlayPhraseQuery = L"Quillmere.OverlayPhrase";
inline constexpr ULONG_PTR kOverlayPhraseReply = 0x51504850;  // "PHPQ"

}  // namespace qm::win32
