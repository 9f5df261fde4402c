// The timing and font panels' controls on the screen, each mirroring its
// model (TimingPanel's wheels, FontPanel's preview label and colour
// picker):
//   WheelView         a wheel as the system's trackbar, with its two ends
//                     written beside it; the mouse (drag, click, wheel) and
//                     the keyboard (arrows, Page Up/Down, Home/End) set the
//                     model, whose change handling then runs;
//   PreviewPicture    Picture1: the white half Shape1 and the black half
//                     Shape2 with lblPreview's text drawn across both, in
//                     the label's font and colour;
//   ColorPickerView   ColorPicker1: an owner-drawn drop-down of colour
//                     swatches ending in "More colours...", which opens the
//                     system's colour chooser.
// The trackbar stays silent when the program sets its position, so a view
// only ever shows its model; a change always goes through the model, whose
// handlers label, time, store and save.
#pragma once

#include <windows.h>

#include <string>

#include "platform/common_dialog_win32.h"
#include "platform/gdi_win32.h"
#include "platform/window_win32.h"
#include "settings/color_swatches.h"
#include "settings/font_panel.h"
#include "settings/wheel.h"

namespace qm::win32 {

// The common dialog object as the font panel drives it.
class CommonDialogFontChooser final : public FontChooser {
 public:
  explicit CommonDialogFontChooser(cCommonDialog& dialog) : dialog_(dialog) {}
  void SetFlags(std::uint32_t flags) override { dialog_.flags = flags; }
  void SetFontSize(std::int32_t points) override { dialog_.SetFontSize(points); }
  void SetFontName(const std::string& name) override { dialog_.SetFontName(name); }
  void SetFontBold(bool bold) override { dialog_.SetFontBold(bold); }
  void SetFontItalic(bool italic) override { dialog_.SetFontItalic(italic); }
  void ShowFont() override { dialog_.ShowFont(); }
  DialogFont Font() override { return dialog_.Font(); }

 private:
  cCommonDialog& dialog_;
};

class WheelView {
 public:
  // Makes the trackbar (id `id`) and its end labels as children of
  // `parent` in `bounds` (pixels at the parent's dpi); Page Up and Page
  // Down move `page`.
  bool Create(HWND parent, const RECT& bounds, int id, int rangeLabelIds, HFONT rangeFont, const Wheel& wheel,
              int page);
  // Places the trackbar and its end labels in `bounds` (pixels at `dpi`).
  void Place(const RECT& bounds, int dpi, HFONT rangeFont);
  // Binds the model that the trackbar sets from now on and shows it.
  void Bind(Wheel* wheel);
  // Puts the model's value on the trackbar.
  void Show();
  // The trackbar's WM_HSCROLL: the model takes the new position.
  void Scrolled();

  HWND Hwnd() const { return trackbar_; }
  HWND MinLabel() const { return minLabel_; }
  HWND MaxLabel() const { return maxLabel_; }

 private:
  void TakePosition(long position);
  static LRESULT CALLBACK TrackbarProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                       DWORD_PTR self);

  HWND trackbar_ = nullptr;
  HWND minLabel_ = nullptr;
  HWND maxLabel_ = nullptr;
  Wheel* wheel_ = nullptr;
  int wheelDelta_ = 0;  // the mouse wheel's turn not yet a whole step
};

class PreviewPicture final : public Window {
 public:
  // The picture (Picture1) at `bounds` (pixels); dpi for the twips of its
  // shapes and the label's font.
  bool Create(HWND parent, const RECT& bounds, int id, int dpiX, int dpiY);
  // Moves the picture to `bounds` (pixels at `dpi`) and draws its shapes
  // and the label's font at that dpi from now on.
  void Place(const RECT& bounds, int dpi);
  void Bind(const PreviewLabel* label);
  // Paints the picture into `dc` (its client area).
  void Paint(HDC dc);

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) override;

 private:
  const PreviewLabel* label_ = nullptr;
  int dpiX_ = 96;
  int dpiY_ = 96;
  FontSpec fontMade_;
  Font font_;
};

class ColorPickerView {
 public:
  // The drop-down (closed height from `bounds`, pixels at the parent's
  // dpi) as a child of `parent`.
  bool Create(HWND parent, const RECT& bounds, int id, HFONT font);
  // Places the drop-down in `bounds` (pixels at `dpi`), its rows as high
  // as that dpi wants, in the font.
  void Place(const RECT& bounds, int dpi, HFONT font);
  void Bind(ColorPicker* picker);
  // Selects the row of the model's value.
  void Show();
  // The drop-down's WM_COMMAND notification; WM_MEASUREITEM, WM_DRAWITEM.
  void Command(WORD code);
  void Measure(MEASUREITEMSTRUCT& item) const;
  void Draw(const DRAWITEMSTRUCT& item) const;
  // Opens the system's colour chooser on the value; on OK the model takes
  // the chosen colour.
  void ChooseMoreColours();

  HWND Hwnd() const { return combo_; }
  // The message the drop-down posts to itself to take a choice once its
  // list has closed.
  static constexpr UINT kCommitMessage = WM_APP + 0x31;

 private:
  void Fill();
  void Commit();
  static LRESULT CALLBACK ComboProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                    DWORD_PTR self);

  HWND combo_ = nullptr;
  ColorPicker* picker_ = nullptr;
  ColorSwatches swatches_;
  bool commitPending_ = false;
  bool choosing_ = false;
  int itemHeight_ = 18;  // a row of the open list, pixels
  COLORREF customColours_[16] = {};
};

// A colour of the program's as the screen draws it (a system colour
// looked up); black for one that does not translate.
COLORREF ScreenColor(OleColor color);

}  // namespace qm::win32
