// Owners of GDI and USER handles: one small move-only type per kind, copy
// deleted, so no path leaks or double-frees a pen, brush, font, bitmap,
// region, icon, menu or device context. Non-owning uses take the raw handle.
// Kernel handles (files, mutexes, timers, find handles) and visual-style
// themes have their owners in handle_win32.h.
#pragma once

#include <windows.h>

#include <cmath>
#include <string>
#include <utility>

#include "platform/ansi_text.h"
#include "platform/font_spec.h"
#include "platform/wide_text_win32.h"

namespace qm::win32 {

// A GDI object (pen, brush, font, bitmap, region) freed with DeleteObject.
template <typename H>
class GdiObject {
 public:
  GdiObject() = default;
  explicit GdiObject(H h) : h_(h) {}
  ~GdiObject() { Reset(); }
  GdiObject(GdiObject&& o) noexcept : h_(std::exchange(o.h_, nullptr)) {}
  GdiObject& operator=(GdiObject&& o) noexcept {
    if (this != &o) Reset(std::exchange(o.h_, nullptr));
    return *this;
  }
  GdiObject(const GdiObject&) = delete;
  GdiObject& operator=(const GdiObject&) = delete;

  H Get() const { return h_; }
  explicit operator bool() const { return h_ != nullptr; }
  void Reset(H h = nullptr) {
    if (h_) ::DeleteObject(h_);
    h_ = h;
  }
  // Gives the handle up without deleting it (the caller now owns it).
  H Release() { return std::exchange(h_, nullptr); }

 private:
  H h_ = nullptr;
};

using Pen = GdiObject<HPEN>;
using Brush = GdiObject<HBRUSH>;
using Font = GdiObject<HFONT>;
using Bitmap = GdiObject<HBITMAP>;
using Region = GdiObject<HRGN>;

// Selects an object into a DC and puts the previous one back at the end of
// the scope. Does nothing for a null DC or object.
class SelectGuard {
 public:
  SelectGuard(HDC dc, HGDIOBJ obj) : dc_(dc), old_(dc && obj ? ::SelectObject(dc, obj) : nullptr) {}
  ~SelectGuard() {
    if (dc_ && old_ && old_ != HGDI_ERROR) ::SelectObject(dc_, old_);
  }
  SelectGuard(const SelectGuard&) = delete;
  SelectGuard& operator=(const SelectGuard&) = delete;

 private:
  HDC dc_;
  HGDIOBJ old_;
};

// A DC from GetDC, released against its window at the end of the scope.
class WindowDC {
 public:
  explicit WindowDC(HWND hwnd) : hwnd_(hwnd), dc_(::GetDC(hwnd)) {}
  ~WindowDC() {
    if (dc_) ::ReleaseDC(hwnd_, dc_);
  }
  WindowDC(const WindowDC&) = delete;
  WindowDC& operator=(const WindowDC&) = delete;
  HDC Get() const { return dc_; }
  explicit operator bool() const { return dc_ != nullptr; }

 private:
  HWND hwnd_;
  HDC dc_;
};

// A memory DC compatible with another, deleted at the end of the scope.
class MemoryDC {
 public:
  explicit MemoryDC(HDC compatible) : dc_(::CreateCompatibleDC(compatible)) {}
  ~MemoryDC() {
    if (dc_) ::DeleteDC(dc_);
  }
  MemoryDC(const MemoryDC&) = delete;
  MemoryDC& operator=(const MemoryDC&) = delete;
  HDC Get() const { return dc_; }
  explicit operator bool() const { return dc_ != nullptr; }

 private:
  HDC dc_;
};

// Painting between BeginPaint and EndPaint.
class PaintScope {
 public:
  explicit PaintScope(HWND hwnd) : hwnd_(hwnd) { ::BeginPaint(hwnd_, &ps_); }
  ~PaintScope() { ::EndPaint(hwnd_, &ps_); }
  PaintScope(const PaintScope&) = delete;
  PaintScope& operator=(const PaintScope&) = delete;
  HDC Dc() const { return ps_.hdc; }
  const RECT& Area() const { return ps_.rcPaint; }

 private:
  HWND hwnd_;
  PAINTSTRUCT ps_{};
};

// An icon or cursor made at run time (not a shared resource), freed with
// DestroyIcon.
class Icon {
 public:
  Icon() = default;
  explicit Icon(HICON h) : h_(h) {}
  ~Icon() { Reset(); }
  Icon(Icon&& o) noexcept : h_(std::exchange(o.h_, nullptr)) {}
  Icon& operator=(Icon&& o) noexcept {
    if (this != &o) Reset(std::exchange(o.h_, nullptr));
    return *this;
  }
  Icon(const Icon&) = delete;
  Icon& operator=(const Icon&) = delete;
  HICON Get() const { return h_; }
  explicit operator bool() const { return h_ != nullptr; }
  void Reset(HICON h = nullptr) {
    if (h_) ::DestroyIcon(h_);
    h_ = h;
  }

 private:
  HICON h_ = nullptr;
};

// A menu freed with DestroyMenu.
class Menu {
 public:
  Menu() = default;
  explicit Menu(HMENU h) : h_(h) {}
  ~Menu() { Reset(); }
  Menu(Menu&& o) noexcept : h_(std::exchange(o.h_, nullptr)) {}
  Menu& operator=(Menu&& o) noexcept {
    if (this != &o) Reset(std::exchange(o.h_, nullptr));
    return *this;
  }
  Menu(const Menu&) = delete;
  Menu& operator=(const Menu&) = delete;
  HMENU Get() const { return h_; }
  explicit operator bool() const { return h_ != nullptr; }
  void Reset(HMENU h = nullptr) {
    if (h_) ::DestroyMenu(h_);
    h_ = h;
  }

 private:
  HMENU h_ = nullptr;
};

// A font of the face (Windows-1252), size in points and styles, at the
// screen's vertical dots per inch.
inline Font MakeFont(const FontSpec& font, int dpiY) {
  LOGFONTW lf{};
  lf.lfHeight = -static_cast<LONG>(std::lround(font.size * dpiY / 72.0));
  lf.lfWeight = font.bold ? FW_BOLD : FW_NORMAL;
  lf.lfItalic = font.italic;
  lf.lfUnderline = font.underline;
  lf.lfStrikeOut = font.strikethrough;
  lf.lfCharSet = DEFAULT_CHARSET;
  const std::wstring face = Widen(AnsiToUtf8(font.name));
  ::lstrcpynW(lf.lfFaceName, face.c_str(), LF_FACESIZE);
  return Font(::CreateFontIndirectW(&lf));
}

}  // namespace qm::win32
