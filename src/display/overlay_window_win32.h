// The flasher's window on Windows: a borderless popup, not in the task
// bar, white all over (the transparent key colour) except for the label's
// text, which it draws in the label's font and colour at 60, 120 twips.
// It never takes the focus (no activation when shown or raised) and lets
// mouse clicks through to the windows beneath: a phrase is seen, never
// clicked. The text is drawn without anti-aliasing, so no light fringe
// escapes the colour key around the letters.
//
// The window's text stays empty: a phrase is for the eye only, not for
// window lists or accessibility tools. The label's text can be asked for
// through the private query of overlay_query_win32.h.
//
// However long the label's text, the window measures and draws only the
// part that fits on the screen's width, so a phrase of megabytes costs what
// a screenful does.
//
// The font is made once per SetLabelFont; showing a phrase creates no GDI
// or USER object.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "display/message_flasher.h"
#include "platform/gdi_win32.h"
#include "platform/twips.h"
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
  float TwipsPerPixelX() const override { return TwipsPerPixelAt(dpi_.x); }
  float TwipsPerPixelY() const override { return TwipsPerPixelAt(dpi_.y); }
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

  // The label's text as given, and the part of it that is measured and
  // drawn: what fits on the screen's width.
  const std::string& Caption() const { return caption_; }
  std::string_view ShownText() const { return std::string_view(caption_).substr(0, shownLength_); }
  bool LabelVisible() const { return labelVisible_; }
  // The text colour as drawn: a system colour in its current RGB.
  COLORREF TextColor() const;
  // The label's rectangle in the window's client area, in pixels.
  RECT LabelRect() const;

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;

 private:
  int ToPixelsX(int twips) const { return TwipsToPixels(twips, dpi_.x); }
  int ToPixelsY(int twips) const { return TwipsToPixels(twips, dpi_.y); }
  // Sizes the label to the part of its text that fits on the screen.
  void Measure();
  void Paint(HDC dc, const RECT& client) const;
  // Sends the label's text to the asker (the phrase query); true when sent.
  bool AnswerPhraseQuery(HWND asker) const;

  Dpi dpi_;
  UINT phraseQuery_ = 0;
  std::string caption_ = " ";
  std::size_t shownLength_ = 1;
  bool labelVisible_ = true;
  win32::Font font_;
  OleColor color_ = kLightGrey;
  SIZE labelPixels_{};
};

}  // namespace qm::win32
