// The image button on screen. isButtonWindow is a child window that shows
// an isButton model: it paints the model's look flicker-free through a
// memory bitmap, follows the mouse with TrackMouseEvent, turns mouse, key
// and focus messages into the model's input, applies the model's window
// region, and shows the model's tooltip (class "tooltips_class32").
//
// Geometry is given in twips and becomes pixels at the screen's logical
// dots per inch (15 twips a pixel at 96).
//
//   isButtonWindow start;
//   start.Create(panel, {1920, 5160, 1395, 435},
//                {{"Style", 10}, {"iNonThemeStyle", 0}, {"Caption", "&Start"}}, kStartId);
//   start.Model().events.Click = [&] { cmdStart_Click(); };
//
// The window's text follows the caption, so that a dialog manager finds
// its access key; the dialog manager's BM_CLICK, and AccessKeyPress() for a
// container that finds the key itself, act as a click. WM_SETFOCUS,
// arrows, Space and Tab work as the model says; the arrows and Tab walk
// the tab order of the whole top-level window (NextTabStop).
//
// A left press takes the mouse (SetCapture) until the release; losing it
// (WM_CAPTURECHANGED, WM_CANCELMODE) or the focus ends the press without a
// click. A Click handler may destroy the window, its parent or the whole
// isButtonWindow: nothing is touched after it when it did.
#pragma once

#include <windows.h>
// After windows.h:
#include <uxtheme.h>

#include <string_view>

#include "controls/is_button.h"
#include "platform/gdi_win32.h"
#include "platform/handle_win32.h"
#include "platform/window_win32.h"

namespace qm::win32 {

// A control's place on its container, in twips.
struct TwipBounds {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
};

// TrackMouseEvent as this system offers it: from the user-interface
// library, else _TrackMouseEvent from the common-controls library, else
// none (then the button has no hover look and only the keyboard clicks).
struct MouseTracker {
  using Function = BOOL(WINAPI*)(LPTRACKMOUSEEVENT);
  Function track = nullptr;
  bool fromUser32 = false;

  static const MouseTracker& Find();
};

// The window's tab order as the keyboard walks it: the tab stops (visible,
// enabled, WS_TABSTOP) among all the descendants of `root`, depth first in
// z-order. A child that is a container is entered rather than stopped at:
// one with WS_EX_CONTROLPARENT, as the dialog manager has it, and also one
// that is no tab stop itself but has children (a panel, a group box or a
// frame made without that style). Hidden or disabled windows and all they
// hold are passed over. The next stop after `from` (the previous one when
// `previous`), wrapping at either end; null when there is no other stop.
HWND NextTabStop(HWND root, HWND from, bool previous);

class isButtonWindow final : public Window, private ButtonSurface {
 public:
  static constexpr const char* kClassName = "QmIsButton";

  isButtonWindow();
  ~isButtonWindow() override;

  // Creates the button as a child of `parent` from its stored properties
  // (missing keys take their read defaults). False when the window cannot
  // be made.
  bool Create(HWND parent, const TwipBounds& bounds, const PropertyStore& stored, int id = 0);
  // Creates a button newly placed on a form: the new-control values, with
  // the control's name as its caption.
  bool CreateNew(HWND parent, const TwipBounds& bounds, std::string_view name, int id = 0);

  isButton& Model() { return model_; }
  const isButton& Model() const { return model_; }

  // Moves and sizes the button (twips); it lays itself out again.
  void SetBounds(const TwipBounds& bounds);
  // Takes the container's new dots per inch: the caption's font is made
  // anew and the button placed at `bounds` (twips) in the new measure.
  void SetDpi(int dpi, const TwipBounds& bounds);
  // The container delivered the caption's access key.
  void AccessKeyPress() { model_.AccessKeyPress(); }
  // A small box with the control's name and version.
  void About();

  // Paints the whole button into `dc`, `area` its client rectangle.
  void Paint(HDC dc, const RECT& area);

  // The tooltip window while it exists (the mouse is over the button).
  HWND TooltipHwnd() const { return tooltip_; }
  HFONT CaptionFont() const { return font_.Get(); }

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;
  void OnDestroyed() override;

 private:
  bool CreateWindowOnly(HWND parent, const TwipBounds& bounds, int id);
  RECT Client() const;
  bool Over(LPARAM lParam) const;
  void MoveFocus(FocusMove move);
  void OpenTheme();
  void CloseTheme();

  void PaintFace(HDC dc, const RECT& area, const ButtonLook& look);
  void PaintIcon(HDC dc, const ButtonLook& look);

  // ButtonSurface
  ButtonSize SizeTwips() const override;
  void SetSizeTwips(ButtonSize size) override;
  ButtonSize InnerPixels() const override;
  ButtonRect MeasureCaption(std::string_view caption, const ButtonRect& bounds,
                            unsigned flags) const override;
  OleColor SystemColor(int index) const override;
  bool HasVisualStyles() const override;
  FontSpec CurrentFont() const override;
  void ApplyRegion(const ButtonRegion& region) override;
  void Repaint() override;
  void PaintPending() override;
  void TrackMouseLeave() override;
  void ShowTooltip(const TooltipSpec& tooltip) override;
  void HideTooltip() override;
  void EnableSurface(bool enabled) override;
  void ApplyFont(const FontSpec& font) override;
  void ApplyMousePointer(std::int16_t pointer) override;

  isButton model_;
  bool started_ = false;
  int dpiX_ = 96;
  int dpiY_ = 96;
  FontSpec fontSpec_;
  Font font_;
  HCURSOR cursor_ = nullptr;  // shared system cursor, or none
  ThemeHandle theme_;
  HWND tooltip_ = nullptr;
  bool releasingCapture_ = false;  // the button lets the mouse go itself
};

}  // namespace qm::win32
