// The flasher's window on Windows: a borderless popup, not in the task
// bar, white all over (the transparent key colour) except for the label's
// text, which it draws in the label's font and colour at 60, 120 twips.
// It never takes the focus (no activation when shown or raised) and lets
// mouse clicks through to the windows beneath: a phrase is seen, never
// clicked. The text is drawn without anti-aliasing, so no light fringe
// escapes the colour key around the letters.
//
// The font is made once per SetLabelFont; showing a phrase creates no GDI
// or USER object.
#pragma once

#include <windows.h>

#include <string>

#include "display/message_flasher.h"
#include "platform/gdi_win32.h"
#include "platform/window_win32.h"

namespace qm::win32 {

class OverlayWindow final : public Window, public OverlayView {
 public:
  // Where the label sits in the window, in twips.
  static constexpr int kLabelLeft = 60;
  static constexpr int kLabelTop = 120;
  // The window's size before the first phrase, in twips.
  static constexpr int kInitialSize = 90;

  // Creates the window, hidden. Without a window every call does nothing.
  OverlayWindow();
  ~OverlayWindow() override;

  void SetCaption(std::string_view text) override;
  TwipsSize LabelSize() const override;
  void SetLabelVisible(bool visible) override;
  void SetLabelFont(const FontSpec& font) override;
  void SetLabelColor(OleColor color) override;

  void SetWindowHeight(int twips) override;
  void SetWindowWidth(int twips) override;
  void SetWindowPosition(int leftTwips, int topTwips) override;
  bool MakeTransparent(OleColor key) override;
  void MakeTopMost() override;
  void Refresh() override;

  void Show() override;
  void Hide() override;
  bool Visible() const override;

  const std::string& Caption() const { return caption_; }
  bool LabelVisible() const { return labelVisible_; }
  // The text colour as drawn: a system colour in its current RGB.
  COLORREF TextColor() const;
  // The label's rectangle in the window's client area, in pixels.
  RECT LabelRect() const;

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;

 private:
  int ToPixelsX(int twips) const { return ::MulDiv(twips, dpiX_, 1440); }
  int ToPixelsY(int twips) const { return ::MulDiv(twips, dpiY_, 1440); }
  // Sizes the label to its text in its font.
  void Measure();
  void Paint(HDC dc, const RECT& client) const;

  int dpiX_ = 96;
  int dpiY_ = 96;
  std::string caption_ = " ";
  bool labelVisible_ = true;
  win32::Font font_;
  OleColor color_ = kLightGrey;
  SIZE labelPixels_{};
};

}  // namespace qm::win32
