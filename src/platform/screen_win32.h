// clsScreen: the whole physical screen (the desktop window and its device
// context) for the rest of the program. It caches the display's size,
// colour depth and twips per pixel, lists the display devices and the
// installed fonts, and makes the pens, brushes and fonts its drawing uses.
// Creating one reads the display; destroying one repaints the whole
// desktop. It also changes the display's resolution, draws on the desktop
// with a history it can draw again, and reads and sets class cursors and
// the active window. Raised errors are qm::RuntimeError with the source
// "<exe name>" followed by the member's tag.
#pragma once

#include <windows.h>
// These need windows.h before them.
#include <ole2.h>
#include <olectl.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

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

// A picture object (an OLE picture), released when the last holder lets
// it go.
using Picture = std::shared_ptr<IPicture>;

// The program's loaded forms, in the order they were loaded, as
// ActiveForm and ActiveControl look for them. A form joins when its window
// is made and leaves when it is destroyed; nothing else searches the list.
void FormLoaded(HWND form);
void FormUnloaded(HWND form);
const std::vector<HWND>& LoadedForms();

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

  // Changes the display to the size of the resolution code (0: 320 x 240
  // ... 6: 1600 x 1200) and to the depth when it is not 0, or only asks
  // the driver whether it could (testOnly). A screen already at that size
  // and depth is left alone. restartNeeded tells that the change takes
  // effect only after a restart. A refusal raises with the driver's result.
  bool ChangeResolution(std::int32_t code, std::int32_t depth, bool& restartNeeded, bool testOnly);

  // Drawing on the desktop, in device pixels of the screen, with the
  // colours, pen and brush of the moment. Contained: the result says
  // whether the shape was drawn and LastError() what stopped it. While
  // EnableRefresh is on, each call is recorded (arguments and the four
  // colours) whether it drew or not; arguments refused before drawing (a
  // radius below 1, no points, a rectangle neither filled nor outlined, no
  // picture, an empty text) are not recorded.
  bool DrawArc(std::int32_t x, std::int32_t y, std::int32_t radius, std::int32_t startX, std::int32_t startY,
               float startAngle, float sweepAngle);
  bool DrawEllipse(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom);
  bool DrawHalfCircle(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
                      std::int32_t radial1X, std::int32_t radial1Y, std::int32_t radial2X,
                      std::int32_t radial2Y);
  bool DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
  // The picture is the file at path (UTF-8) when path is not empty, else
  // the picture object, else a bitmap of the caller's (which stays the
  // caller's). A width or height of 0 is the picture's own.
  bool DrawPicture(std::int32_t x, std::int32_t y, const std::string& path, const Picture& picture,
                   HBITMAP bitmap, std::int32_t width, std::int32_t height, bool stretch);
  // Without explicit radials the slice runs counter-clockwise from three
  // o'clock through angle degrees (RadialsOfAngle); 0 degrees draws nothing.
  bool DrawPie(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom, float angle,
               bool explicitRadials, std::int32_t radial1X, std::int32_t radial1Y, std::int32_t radial2X,
               std::int32_t radial2Y);
  bool DrawPolygon(const std::vector<std::int32_t>& xs, const std::vector<std::int32_t>& ys,
                   std::int32_t count);
  bool DrawPolyline(std::int32_t startX, std::int32_t startY, const std::vector<std::int32_t>& xs,
                    const std::vector<std::int32_t>& ys, std::int32_t count);
  bool DrawRectangle(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
                     bool filled, bool outlined);
  // One line, or lines broken at words, in the Font; the text is UTF-8.
  bool drawText(const std::string& text, std::int32_t x, std::int32_t y, bool wordWrap);
  // Draws the history again, list by list (arcs, ellipses, half circles,
  // lines, pictures, pies, polygons, polylines, rectangles, texts), each
  // with the colours of its time; the first drawing that fails ends it.
  // The colours of before come back. Contained.
  bool Refresh();

  // The DC's current drawing position, read without moving it; and moving
  // it. A null DC raises "Invalid DC Specified".
  bool GetCurrentXY(HDC dc, std::int32_t& x, std::int32_t& y) const;
  bool SetCurrentXY(HDC dc, std::int32_t x, std::int32_t y) const;

  // The cursor file for MousePointer 1 (UTF-8 path): taken when it opens
  // for reading and is an .ico, .cur or .ani file (else the user is told).
  using ScreenModel::MouseIcon;
  void MouseIcon(std::string path);
  // The code of the class cursor of the window (null: the desktop window):
  // the first of kStandardCursorIds it is, else 1.
  std::int32_t MousePointer(HWND window = nullptr) const;
  // Sets the class cursor of the window (null: the desktop window) to a
  // standard cursor, or with code 1 to the MouseIcon file's. Contained.
  // A file cursor belongs to this object: it is destroyed when a later
  // let replaces it in its class, or when the object ends (the class gets
  // the arrow back first, while the window lives). Standard cursors are
  // the system's and are never destroyed.
  bool MousePointer(HWND window, std::int32_t code);
  // Joins (attach) or parts this thread's input state and the window's
  // thread's. False for no window; true at once for a window of this
  // thread.
  bool AttachThread(HWND window, bool attach) const;

  // The foreground window; raises when there is none.
  HWND ActiveWindow() const;
  // The window with the keyboard focus in the foreground window's thread.
  HWND ActiveObject() const;
  // The loaded form that is this thread's active window, or null.
  HWND ActiveForm() const;
  // The focused control of that form (a window inside it), or null.
  HWND ActiveControl() const;

  // A picture object over the bitmap (and palette); the picture owns the
  // bitmap and deletes it when released. Null when it cannot be made.
  static Picture PictureFromHandle(HBITMAP bitmap, HPALETTE palette);

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
  // Raises the step's API error when the call failed.
  void Check(BOOL succeeded, ScreenFailure where) const {
    if (!succeeded) RaiseApiError(where);
  }
  COLORREF ColorRef(OleColor color) const;
  bool PaintPicture(const PictureArgs& args);
  void ForgetFileCursors() noexcept;

  HWND desktop_ = nullptr;
  // Cursors loaded from files and the windows whose class took them.
  struct FileCursor {
    HWND window;
    HCURSOR cursor;
  };
  std::vector<FileCursor> fileCursors_;
};

// Adds each reported face name to the FontNameList given as list.
int CALLBACK EnumFontFamExProc(const LOGFONTA* font, const TEXTMETRICA* metrics, DWORD fontType, LPARAM list);

}  // namespace qm::win32
