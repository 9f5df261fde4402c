// The read-only rich-text view of the Help and About pages (rtfHelp): a
// RichEdit control of class "RICHEDIT50W" from msftedit.dll, which is
// loaded from the system folder only, never from the program folder or the
// current one.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace qm::win32 {

class RichTextBox {
 public:
  RichTextBox() = default;
  ~RichTextBox();
  RichTextBox(const RichTextBox&) = delete;
  RichTextBox& operator=(const RichTextBox&) = delete;

  // Creates the box, hidden, as a child of `parent` at the rectangle (pixels,
  // relative to the parent's client area), with the background colour.
  // False when the library or the window could not be had.
  bool Create(HWND parent, const RECT& bounds, COLORREF background, int id);
  HWND Hwnd() const { return hwnd_; }

  // Replaces the content with the rich text in `bytes` (the bytes of an
  // .rtf file). Text that is not rich text shows as plain text.
  bool LoadRtf(std::string_view bytes);
  // The content as plain text, UTF-8.
  std::string Text() const;

 private:
  HWND hwnd_ = nullptr;
  HMODULE library_ = nullptr;
};

}  // namespace qm::win32
