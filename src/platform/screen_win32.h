// clsScreen: the whole physical screen (the desktop window and its device
// context) for the rest of the program. It caches the display's size,
// colour depth and twips per pixel, lists the display devices and the
// installed fonts, and makes the pens, brushes and fonts its drawing uses.
// Creating one reads the display; destroying one repaints the whole
// desktop. Raised errors are qm::RuntimeError with the source "<exe name>"
// followed by the member's tag.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "platform/gdi_win32.h"
#include "platform/screen.h"
#include "platform/twips.h"

namespace qm::win32 {

// The screen's logical dots per inch (LOGPIXELSX/Y of a screen DC): the
// measure of an inch every window of the program lays itself out with, and
// the flasher places its phrases with. 96 each way when no DC can be had.
Dpi ScreenLogicalDpi();

// The system's text for an error code (FormatMessageA, at most 260
// characters), cut at the first NUL, one trailing CR LF removed.
std::string GetApiErrorText(DWORD code);

// A DC of the screen and the pen, brush and font clsScreen selected into
// it. At the end of the scope the DC's own objects are put back, the DC is
// released against its window, and the selected objects are freed.
class ScreenDc {
 public:
  // Takes over a DC from GetDC (clsScreen::hDC); a null DC is allowed and
  // makes every Select fail.
  ScreenDc(HDC dc, HWND window) : dc_(dc), window_(window) {}
  ~ScreenDc();
  ScreenDc(const ScreenDc&) = delete;
  ScreenDc& operator=(const ScreenDc&) = delete;

  HDC Get() const { return dc_; }

  // Selects the object, freeing the one of its kind this scope selected
  // before. False (and the object freed) when the select fails.
  bool Select(Brush brush) { return SelectOwned(brush_, oldBrush_, std::move(brush)); }
  bool Select(Pen pen) { return SelectOwned(pen_, oldPen_, std::move(pen)); }
  bool Select(Font font) { return SelectOwned(font_, oldFont_, std::move(font)); }

 private:
  template <typename H>
  bool SelectOwned(GdiObject<H>& slot, HGDIOBJ& original, GdiObject<H> object);

  HDC dc_;
  HWND window_;
  // Freed as members, after the destructor's body put the originals back.
  Brush brush_;
  Pen pen_;
  Font font_;
  HGDIOBJ oldBrush_ = nullptr;
  HGDIOBJ oldPen_ = nullptr;
  HGDIOBJ oldFont_ = nullptr;
};

class clsScreen : public ScreenModel {
 public:
  // Reads the display (size, depth, twips, devices, fonts) and checks that
  // the colours, pen, brush and font can be made. Without a desktop window
  // or a screen DC it shows a critical message box and raises.
  clsScreen();
  // The same, showing those two boxes through messageBox.
  explicit clsScreen(ScreenMessageBox messageBox);
  // Repaints the whole desktop (Clear forgetting the history), then clears
  // the history; the program's waiting window events are left queued, so
  // none of them runs while the program is being torn down. Nothing
  // escapes.
  ~clsScreen();
  clsScreen(const clsScreen&) = delete;
  clsScreen& operator=(const clsScreen&) = delete;

  // Reads the desktop window and, through dc (or a DC of its own when dc is
  // null), the devices, the metrics and the installed fonts.
  bool RefreshDisplayInfo(HDC dc = nullptr);
  // Metrics from the DC. Contained: false when they could not be read.
  bool ReadDeviceCaps(HDC dc);
  void GetDevices();
  // Lists the installed fonts again (the shared list is emptied first).
  bool EnumerateFonts(HDC dc);

  // A fresh DC of the whole screen; the caller releases it (ScreenDc).
  HDC hDC() const;
  // The desktop window.
  HWND hwnd() const { return desktop_; }

  // Invalidates and repaints the whole desktop at once, and forgets the
  // history when asked. It dispatches none of the window events waiting in
  // the queue: they stay there for the loop that owns them. Contained: the
  // result says whether the repaint was asked for.
  bool Clear(bool forgetHistory);

  // The RGB value of a colour (a system colour gives its current colour),
  // or -1 when it does not translate.
  std::int32_t TranslateColor(OleColor color) const;
  // A pen of PenStyle and PenWidth, and a brush of BrushSyle and
  // BrushHatch, in the colour.
  Pen GetPen(OleColor color) const;
  Brush GetBrush(OleColor color) const;
  // Text colours, the shapes' brush (BackColor_Scr) and pen (ForeColor_Scr)
  // into the DC.
  bool SetColors(ScreenDc& dc) const;
  // The font of the record at the DC's resolution.
  // (win32::Font: the name Font alone is the font property here.)
  win32::Font GetFont(HDC dc, const ScreenFont& font) const;
  bool SetDisplayFont(ScreenDc& dc, win32::Font font) const;

 private:
  [[noreturn]] void RaiseApiError(ScreenFailure where) const;
  COLORREF ColorRef(OleColor color) const;

  HWND desktop_ = nullptr;
};

// Adds each reported face name to the FontNameList given as list.
int CALLBACK EnumFontFamExProc(const LOGFONTA* font, const TEXTMETRICA* metrics, DWORD fontType, LPARAM list);

}  // namespace qm::win32
