#include "settings/panels_win32.h"

// After windows.h:
#include <commctrl.h>
#include <commdlg.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/ansi_text.h"
#include "platform/twips.h"
#include "platform/window_dpi_win32.h"
#include "platform/wide_text_win32.h"

namespace qm::win32 {
namespace {

// The end labels' width beside a trackbar, in pixels at 96 dots per inch
// (room for "1000" in the range labels' font).
constexpr int kRangeLabelWidth96 = 28;
// A row of the colour list, in pixels at 96 dots per inch.
constexpr int kColorRowHeight96 = 18;
// The colour list shows every row when open: the 16 colours, "More
// colours..." and room for a custom colour's row.
constexpr int kColorRowsShown = 19;

// A wheel's three parts side by side in `bounds`: the lower end's label,
// the trackbar, the upper end's label.
struct WheelRects {
  RECT min, bar, max;
};
WheelRects SplitWheel(const RECT& bounds, int dpi) {
  const int labelWidth = ::MulDiv(kRangeLabelWidth96, dpi, 96);
  const RECT minRect{bounds.left, bounds.top, bounds.left + labelWidth, bounds.bottom};
  const RECT maxRect{bounds.right - labelWidth, bounds.top, bounds.right, bounds.bottom};
  return {minRect, RECT{minRect.right, bounds.top, maxRect.left, bounds.bottom}, maxRect};
}

void MoveTo(HWND hwnd, const RECT& r) {
  if (hwnd) ::MoveWindow(hwnd, r.left, r.top, r.right - r.left, r.bottom - r.top, TRUE);
}

// The picture's two halves and the label inside it (twips).
constexpr RECT kShape1{0, 0, 1335, 795};
constexpr RECT kShape2{1320, 0, 1320 + 1335, 795};
constexpr RECT kPreviewLabel{60, 60, 60 + 2535, 60 + 615};

RECT ScaledRect(const RECT& twips, int dpiX, int dpiY) {
  return RECT{TwipsToPixels(twips.left, dpiX), TwipsToPixels(twips.top, dpiY), TwipsToPixels(twips.right, dpiX),
              TwipsToPixels(twips.bottom, dpiY)};
}

HWND MakeChild(const wchar_t* cls, const wchar_t* text, DWORD style, HWND parent, const RECT& r, int id,
               HFONT font) {
  const HWND hwnd = ::CreateWindowExW(0, cls, text, WS_CHILD | WS_CLIPSIBLINGS | style, r.left, r.top,
                                      r.right - r.left, r.bottom - r.top, parent,
                                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ThisModule(), nullptr);
  if (hwnd && font) ::SendMessageW(hwnd, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  return hwnd;
}

}  // namespace

COLORREF ScreenColor(OleColor color) {
  const auto rgb = TranslateOleColor(color, [](int index) { return ::GetSysColor(index); });
  return rgb ? static_cast<COLORREF>(*rgb) : RGB(0, 0, 0);
}

// ---- WheelView ----

bool WheelView::Create(HWND parent, const RECT& bounds, int id, int rangeLabelIds, HFONT rangeFont,
                       const Wheel& wheel, int page) {
  const WheelRects parts = SplitWheel(bounds, WindowDpi(parent));
  minLabel_ = MakeChild(WC_STATICW, Widen(std::to_string(wheel.Min())).c_str(),
                        WS_VISIBLE | SS_RIGHT | SS_CENTERIMAGE, parent, parts.min, rangeLabelIds, rangeFont);
  maxLabel_ = MakeChild(WC_STATICW, Widen(std::to_string(wheel.Max())).c_str(),
                        WS_VISIBLE | SS_LEFT | SS_CENTERIMAGE, parent, parts.max, rangeLabelIds + 1, rangeFont);
  trackbar_ = MakeChild(TRACKBAR_CLASSW, L"", WS_VISIBLE | WS_TABSTOP | TBS_HORZ | TBS_NOTICKS | TBS_BOTH, parent,
                        parts.bar, id, nullptr);
  if (!trackbar_) return false;
  ::SendMessageW(trackbar_, TBM_SETRANGEMIN, FALSE, wheel.Min());
  ::SendMessageW(trackbar_, TBM_SETRANGEMAX, FALSE, wheel.Max());
  ::SendMessageW(trackbar_, TBM_SETLINESIZE, 0, 1);
  ::SendMessageW(trackbar_, TBM_SETPAGESIZE, 0, page);
  ::SendMessageW(trackbar_, TBM_SETPOS, TRUE, wheel.Value());
  ::SetWindowSubclass(trackbar_, &WheelView::TrackbarProc, 1, reinterpret_cast<DWORD_PTR>(this));
  return true;
}

void WheelView::Place(const RECT& bounds, int dpi, HFONT rangeFont) {
  const WheelRects parts = SplitWheel(bounds, dpi);
  for (HWND label : {minLabel_, maxLabel_})
    if (label) ::SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(rangeFont), FALSE);
  MoveTo(minLabel_, parts.min);
  MoveTo(maxLabel_, parts.max);
  MoveTo(trackbar_, parts.bar);
}

void WheelView::Bind(Wheel* wheel) {
  wheel_ = wheel;
  Show();
}

void WheelView::Show() {
  if (!trackbar_ || !wheel_) return;
  if (::SendMessageW(trackbar_, TBM_GETPOS, 0, 0) != wheel_->Value())
    ::SendMessageW(trackbar_, TBM_SETPOS, TRUE, wheel_->Value());
}

void WheelView::TakePosition(long position) {
  if (!wheel_) return;
  // A turn that ends where it began changes nothing.
  if (position != wheel_->Value()) wheel_->SetValue(position);
  Show();
}

void WheelView::Scrolled() {
  if (trackbar_) TakePosition(static_cast<long>(::SendMessageW(trackbar_, TBM_GETPOS, 0, 0)));
}

LRESULT CALLBACK WheelView::TrackbarProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                         DWORD_PTR self) {
  auto* view = reinterpret_cast<WheelView*>(self);
  switch (msg) {
    case WM_MOUSEWHEEL: {
      // Turning the wheel away from the user raises the value, one step a
      // notch (a fine wheel's small turns add up to a notch).
      view->wheelDelta_ += GET_WHEEL_DELTA_WPARAM(wParam);
      const int steps = view->wheelDelta_ / WHEEL_DELTA;
      view->wheelDelta_ -= steps * WHEEL_DELTA;
      if (steps != 0 && view->wheel_) {
        try {
          view->TakePosition(static_cast<long>(view->wheel_->Value()) + steps);
        } catch (...) {
        }
      }
      return 0;
    }
    case WM_NCDESTROY:
      ::RemoveWindowSubclass(hwnd, &WheelView::TrackbarProc, id);
      view->trackbar_ = nullptr;
      break;
    default:
      break;
  }
  return ::DefSubclassProc(hwnd, msg, wParam, lParam);
}

// ---- PreviewPicture ----

bool PreviewPicture::Create(HWND parent, const RECT& bounds, int id, int dpiX, int dpiY) {
  dpiX_ = dpiX;
  dpiY_ = dpiY;
  CreateArgs args;
  args.className = "QuillmerePreview";
  args.title = PreviewLabel::kCaption.data();
  args.style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS;
  args.Child(parent, bounds, id);
  return Window::Create(args);
}

void PreviewPicture::Place(const RECT& bounds, int dpi) {
  dpiX_ = dpiY_ = dpi;
  font_.Reset();  // made again at the next paint, at this dpi
  if (!Hwnd()) return;
  MoveTo(Hwnd(), bounds);
  ::InvalidateRect(Hwnd(), nullptr, FALSE);
}

void PreviewPicture::Bind(const PreviewLabel* label) {
  label_ = label;
  if (Hwnd()) ::InvalidateRect(Hwnd(), nullptr, FALSE);
}

void PreviewPicture::Paint(HDC dc) {
  RECT client{};
  ::GetClientRect(Hwnd(), &client);
  // The plain panel's own colour shows where the two halves end.
  ::FillRect(dc, &client, ::GetSysColorBrush(COLOR_BTNFACE));
  const RECT light = ScaledRect(kShape1, dpiX_, dpiY_);
  const RECT dark = ScaledRect(kShape2, dpiX_, dpiY_);
  ::FillRect(dc, &light, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
  ::FillRect(dc, &dark, static_cast<HBRUSH>(::GetStockObject(BLACK_BRUSH)));

  const FontSpec wanted = label_ ? label_->Font() : FontSpec{};
  if (!font_ || !(wanted == fontMade_)) {
    font_ = MakeFont(wanted, dpiY_);
    fontMade_ = wanted;
  }
  const SelectGuard useFont(dc, font_.Get());
  ::SetBkMode(dc, TRANSPARENT);
  ::SetTextColor(dc, ScreenColor(label_ ? label_->ForeColor() : kLightGrey));
  RECT text = ScaledRect(kPreviewLabel, dpiX_, dpiY_);
  const std::wstring caption = Widen(std::string(PreviewLabel::kCaption));
  ::DrawTextW(dc, caption.c_str(), static_cast<int>(caption.size()), &text, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);
}

LRESULT PreviewPicture::HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
  switch (msg) {
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      const PaintScope paint(Hwnd());
      RECT client{};
      ::GetClientRect(Hwnd(), &client);
      const MemoryDC memory(paint.Dc());
      const Bitmap bitmap(::CreateCompatibleBitmap(paint.Dc(), client.right, client.bottom));
      if (memory && bitmap) {
        const SelectGuard useBitmap(memory.Get(), bitmap.Get());
        Paint(memory.Get());
        ::BitBlt(paint.Dc(), 0, 0, client.right, client.bottom, memory.Get(), 0, 0, SRCCOPY);
      } else {
        Paint(paint.Dc());
      }
      return 0;
    }
    case WM_NCHITTEST:
      // The tooltip finds the picture under the mouse.
      return HTCLIENT;
    default:
      return Window::HandleMessage(msg, wParam, lParam);
  }
}

// ---- ColorPickerView ----

bool ColorPickerView::Create(HWND parent, const RECT& bounds, int id, HFONT font) {
  itemHeight_ = ::MulDiv(kColorRowHeight96, WindowDpi(parent), 96);
  combo_ = MakeChild(WC_COMBOBOXW, L"",
                     WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED | CBS_HASSTRINGS,
                     parent, bounds, id, font);
  if (!combo_) return false;
  Place(bounds, WindowDpi(parent), font);
  ::SendMessageW(combo_, CB_SETMINVISIBLE, kColorRowsShown, 0);
  ::SetWindowSubclass(combo_, &ColorPickerView::ComboProc, 1, reinterpret_cast<DWORD_PTR>(this));
  for (COLORREF& c : customColours_) c = RGB(255, 255, 255);
  Fill();
  return true;
}

void ColorPickerView::Place(const RECT& bounds, int dpi, HFONT font) {
  if (!combo_) return;
  itemHeight_ = ::MulDiv(kColorRowHeight96, dpi, 96);
  ::SendMessageW(combo_, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  const int closedHeight = bounds.bottom - bounds.top;
  // The closed box is as high as its place (less its edges).
  ::SendMessageW(combo_, CB_SETITEMHEIGHT, static_cast<WPARAM>(-1),
                 std::max(closedHeight - ::MulDiv(6, dpi, 96), 8));
  ::SendMessageW(combo_, CB_SETITEMHEIGHT, 0, itemHeight_);
  // The list drops below the box, room for every row.
  RECT r = bounds;
  r.bottom = r.top + closedHeight + kColorRowsShown * (itemHeight_ + 1);
  MoveTo(combo_, r);
  ::InvalidateRect(combo_, nullptr, TRUE);
}

void ColorPickerView::Bind(ColorPicker* picker) {
  picker_ = picker;
  Show();
}

void ColorPickerView::Fill() {
  if (!combo_) return;
  ::SendMessageW(combo_, CB_RESETCONTENT, 0, 0);
  for (const SwatchRow& row : swatches_.Rows()) {
    const std::wstring text = Widen(row.text);
    ::SendMessageW(combo_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
  }
}

void ColorPickerView::Show() {
  if (!combo_ || !picker_) return;
  const std::size_t rowsBefore = swatches_.Rows().size();
  const std::string otherBefore = rowsBefore > 0 ? swatches_.Rows()[rowsBefore - 2].text : "";
  const int row = swatches_.RowFor(picker_->Value());
  const std::size_t rowsAfter = swatches_.Rows().size();
  if (rowsAfter != rowsBefore || swatches_.Rows()[rowsAfter - 2].text != otherBefore) Fill();
  ::SendMessageW(combo_, CB_SETCURSEL, static_cast<WPARAM>(row), 0);
  ::InvalidateRect(combo_, nullptr, FALSE);
}

void ColorPickerView::Command(WORD code) {
  if (!combo_) return;
  const bool dropped = ::SendMessageW(combo_, CB_GETDROPPEDSTATE, 0, 0) != 0;
  // While the list is open the selection follows the pointer and the
  // arrows; the choice is taken when it closes on a row. A closed box
  // takes each row the keyboard moves to.
  const bool take = code == CBN_CLOSEUP || code == CBN_SELENDOK || (code == CBN_SELCHANGE && !dropped);
  if (code == CBN_SELENDCANCEL) {
    Show();
    return;
  }
  if (take && !commitPending_ && !choosing_) {
    commitPending_ = true;
    ::PostMessageW(combo_, kCommitMessage, 0, 0);
  }
}

void ColorPickerView::Commit() {
  commitPending_ = false;
  if (!combo_ || !picker_ || choosing_) return;
  if (::SendMessageW(combo_, CB_GETDROPPEDSTATE, 0, 0) != 0) return;
  const int row = static_cast<int>(::SendMessageW(combo_, CB_GETCURSEL, 0, 0));
  if (swatches_.IsMore(row)) {
    ChooseMoreColours();
    return;
  }
  const std::optional<OleColor> color = swatches_.ColorAt(row);
  if (color && *color != picker_->Value()) picker_->SetValue(*color);
  Show();
}

void ColorPickerView::ChooseMoreColours() {
  if (!combo_ || !picker_ || choosing_) return;
  choosing_ = true;
  CHOOSECOLORW choose{};
  choose.lStructSize = sizeof choose;
  choose.hwndOwner = ::GetAncestor(combo_, GA_ROOT);
  choose.rgbResult = ScreenColor(picker_->Value());
  choose.lpCustColors = customColours_;
  choose.Flags = CC_RGBINIT | CC_FULLOPEN | CC_ANYCOLOR;
  const bool chosen = ::ChooseColorW(&choose) != FALSE;
  choosing_ = false;
  if (chosen && picker_) picker_->SetValue(static_cast<OleColor>(choose.rgbResult & 0x00FFFFFF));
  Show();
}

void ColorPickerView::Measure(MEASUREITEMSTRUCT& item) const {
  item.itemHeight = static_cast<UINT>(itemHeight_);
}

void ColorPickerView::Draw(const DRAWITEMSTRUCT& item) const {
  const HDC dc = item.hDC;
  RECT r = item.rcItem;
  const bool selected = (item.itemState & ODS_SELECTED) != 0;
  const bool inBox = (item.itemState & ODS_COMBOBOXEDIT) != 0;
  ::FillRect(dc, &r, ::GetSysColorBrush(selected && !inBox ? COLOR_HIGHLIGHT : COLOR_WINDOW));
  const int row = static_cast<int>(item.itemID);
  if (row < 0 || row >= static_cast<int>(swatches_.Rows().size())) return;
  const SwatchRow& swatch = swatches_.Rows()[static_cast<std::size_t>(row)];
  RECT textArea = r;
  if (swatch.kind != SwatchRow::Kind::More) {
    const int height = r.bottom - r.top;
    RECT chip{r.left + 3, r.top + 2, r.left + 3 + std::max(height * 3 / 2, 12), r.bottom - 2};
    const Brush fill(::CreateSolidBrush(ScreenColor(swatch.color)));
    ::FillRect(dc, &chip, fill.Get());
    ::FrameRect(dc, &chip, static_cast<HBRUSH>(::GetStockObject(GRAY_BRUSH)));
    textArea.left = chip.right + 4;
  } else {
    textArea.left += 4;
  }
  ::SetBkMode(dc, TRANSPARENT);
  ::SetTextColor(dc, ::GetSysColor(selected && !inBox ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
  const std::wstring text = Widen(swatch.text);
  ::DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &textArea,
              DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
  if ((item.itemState & ODS_FOCUS) && !(item.itemState & ODS_NOFOCUSRECT)) ::DrawFocusRect(dc, &r);
}

LRESULT CALLBACK ColorPickerView::ComboProc(HWND hwnd, UINT msg, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                            DWORD_PTR self) {
  auto* view = reinterpret_cast<ColorPickerView*>(self);
  switch (msg) {
    case kCommitMessage:
      try {
        view->Commit();
      } catch (...) {
      }
      return 0;
    case WM_NCDESTROY:
      ::RemoveWindowSubclass(hwnd, &ColorPickerView::ComboProc, id);
      view->combo_ = nullptr;
      break;
    default:
      break;
  }
  return ::DefSubclassProc(hwnd, msg, wParam, lParam);
}

}  // namespace qm::win32
