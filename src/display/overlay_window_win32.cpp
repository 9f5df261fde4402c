#include "display/overlay_window_win32.h"

#include <algorithm>
#include <cmath>

#include "display/overlay_query_win32.h"
#include "display/overlay_routines_win32.h"
#include "platform/screen_win32.h"
#include "platform/window_dpi_win32.h"

namespace qm::win32 {
namespace {

CreateArgs OverlayArgs(int sizePixels) {
  CreateArgs args;
  args.className = "QuillmereOverlay";
  args.title = "";
  args.style = WS_POPUP;
  // Out of the task bar, never activated, transparent to the mouse (with
  // the layered style that MakeTransparent adds).
  args.exStyle = WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE | WS_EX_TRANSPARENT;
  args.x = CW_USEDEFAULT;
  args.y = CW_USEDEFAULT;
  args.width = sizePixels;
  args.height = sizePixels;
  return args;
}

// How long the overlay waits for the asker of the phrase query to take
// its answer.
constexpr UINT kAnswerTimeoutMs = 1000;

}  // namespace

OverlayWindow::OverlayWindow()
    : dpi_(ScreenLogicalDpi()), phraseQuery_(::RegisterWindowMessageW(kOverlayPhraseQuery)) {
  Create(OverlayArgs(ToPixelsX(kInitialSize)));
  Measure();
}

OverlayWindow::~OverlayWindow() {
  Destroy();
}

void OverlayWindow::SetCaption(std::string_view text) {
  caption_.assign(text);
  Measure();
  if (Hwnd()) ::InvalidateRect(Hwnd(), nullptr, FALSE);
}

TwipsSize OverlayWindow::LabelSize() const {
  return {PixelsToTwips(labelPixels_.cx, dpi_.x), PixelsToTwips(labelPixels_.cy, dpi_.y)};
}

void OverlayWindow::SetLabelVisible(bool visible) {
  labelVisible_ = visible;
  if (!Hwnd()) return;
  ::InvalidateRect(Hwnd(), nullptr, FALSE);
  // A hidden phrase leaves the screen at once, not at the next idle moment:
  // it may have been shown for a millisecond only.
  if (!visible) ::UpdateWindow(Hwnd());
}

void OverlayWindow::SetLabelFont(const FontSpec& font) {
  // A point means the same on every monitor: the font is made for the dpi
  // of the monitor the overlay shows on (the primary screen).
  const int dpiY = Hwnd() ? WindowDpi(Hwnd()) : dpi_.y;
  const int height = font.size > 0 ? -static_cast<int>(std::lround(font.size * dpiY / 72.0)) : 0;
  win32::Font made(::CreateFontA(height, 0, 0, 0, font.bold ? FW_BOLD : FW_NORMAL, font.italic,
                                 font.underline, font.strikethrough, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                 CLIP_DEFAULT_PRECIS, NONANTIALIASED_QUALITY, DEFAULT_PITCH | FF_DONTCARE,
                                 font.name.c_str()));
  if (!made) return;  // keeps the font it had
  font_ = std::move(made);
  Measure();
  if (Hwnd()) ::InvalidateRect(Hwnd(), nullptr, FALSE);
}

void OverlayWindow::SetLabelColor(OleColor color) {
  color_ = color;
  if (Hwnd()) ::InvalidateRect(Hwnd(), nullptr, FALSE);
}

COLORREF OverlayWindow::TextColor() const {
  const auto rgb = TranslateOleColor(color_, [](int index) { return ::GetSysColor(index); });
  return rgb ? static_cast<COLORREF>(*rgb) : RGB(0, 0, 0);
}

RECT OverlayWindow::LabelRect() const {
  const int left = ToPixelsX(kLabelLeft);
  const int top = ToPixelsY(kLabelTop);
  return {left, top, left + labelPixels_.cx, top + labelPixels_.cy};
}

void OverlayWindow::Measure() {
  // No letter is narrower than a pixel: more characters than the screen is
  // wide never fit, and are not even handed to the measuring call.
  const int screenWidth = std::max(1, ::GetSystemMetrics(SM_CXSCREEN));
  const int candidates =
      static_cast<int>(std::min<std::size_t>(caption_.size(), static_cast<std::size_t>(screenWidth)));
  shownLength_ = static_cast<std::size_t>(candidates);
  const WindowDC dc(Hwnd());
  if (!dc) return;
  const SelectGuard select(dc.Get(),
                           font_ ? static_cast<HGDIOBJ>(font_.Get()) : ::GetStockObject(DEFAULT_GUI_FONT));
  TEXTMETRICA metrics{};
  ::GetTextMetricsA(dc.Get(), &metrics);
  int fit = candidates;
  SIZE extent{};
  if (candidates > 0 &&
      ::GetTextExtentExPointA(dc.Get(), caption_.data(), candidates, screenWidth, &fit, nullptr, &extent)) {
    shownLength_ = static_cast<std::size_t>(std::clamp(fit, 0, candidates));
  }
  extent = {};
  ::GetTextExtentPoint32A(dc.Get(), caption_.data(), static_cast<int>(shownLength_), &extent);
  // A slanted last letter reaches past its advance: the label covers it.
  if (shownLength_ > 0) {
    ABC abc{};
    const auto last = static_cast<unsigned char>(caption_[shownLength_ - 1]);
    if (::GetCharABCWidthsA(dc.Get(), last, last, &abc) && abc.abcC < 0) extent.cx -= abc.abcC;
  }
  labelPixels_ = {extent.cx, metrics.tmHeight};
}

void OverlayWindow::SetWindowHeight(int twips) {
  if (!Hwnd()) return;
  RECT r;
  ::GetWindowRect(Hwnd(), &r);
  ::SetWindowPos(Hwnd(), nullptr, 0, 0, r.right - r.left, ToPixelsY(twips),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void OverlayWindow::SetWindowWidth(int twips) {
  if (!Hwnd()) return;
  RECT r;
  ::GetWindowRect(Hwnd(), &r);
  ::SetWindowPos(Hwnd(), nullptr, 0, 0, ToPixelsX(twips), r.bottom - r.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void OverlayWindow::SetWindowPosition(int leftTwips, int topTwips) {
  if (!Hwnd()) return;
  ::SetWindowPos(Hwnd(), nullptr, ToPixelsX(leftTwips), ToPixelsY(topTwips), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

bool OverlayWindow::MakeTransparent(OleColor key) {
  return Hwnd() && modTransparent::MakeTransparent(Hwnd(), key);
}

void OverlayWindow::MakeTopMost() {
  if (Hwnd()) modWindowsRoutines::MakeTopMost(Hwnd());
}

void OverlayWindow::Refresh() {
  if (Hwnd()) ::RedrawWindow(Hwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

void OverlayWindow::Show() {
  if (Hwnd()) ::ShowWindow(Hwnd(), SW_SHOWNA);
}

void OverlayWindow::Hide() {
  if (Hwnd()) ::ShowWindow(Hwnd(), SW_HIDE);
}

bool OverlayWindow::Visible() const {
  return Hwnd() && ::IsWindowVisible(Hwnd());
}

void OverlayWindow::Paint(HDC dc, const RECT& client) const {
  ::SetBkColor(dc, static_cast<COLORREF>(kTransparentKey));
  ::ExtTextOutA(dc, 0, 0, ETO_OPAQUE, &client, nullptr, 0, nullptr);  // the key colour all over
  if (!labelVisible_ || shownLength_ == 0) return;
  const SelectGuard select(dc,
                           font_ ? static_cast<HGDIOBJ>(font_.Get()) : ::GetStockObject(DEFAULT_GUI_FONT));
  ::SetBkMode(dc, TRANSPARENT);
  ::SetTextColor(dc, TextColor());
  const RECT label = LabelRect();
  ::ExtTextOutA(dc, label.left, label.top, 0, nullptr, caption_.data(), static_cast<UINT>(shownLength_),
                nullptr);
}

bool OverlayWindow::AnswerPhraseQuery(HWND asker) const {
  if (!asker || !::IsWindow(asker)) return false;
  COPYDATASTRUCT answer{};
  answer.dwData = kOverlayPhraseReply;
  answer.cbData = static_cast<DWORD>(caption_.size());
  answer.lpData = const_cast<char*>(caption_.data());
  DWORD_PTR result = 0;
  // Blocked meanwhile: no other message of the program runs inside this one.
  return ::SendMessageTimeoutA(asker, WM_COPYDATA, reinterpret_cast<WPARAM>(Hwnd()),
                               reinterpret_cast<LPARAM>(&answer), SMTO_BLOCK | SMTO_ABORTIFHUNG,
                               kAnswerTimeoutMs, &result) != 0;
}

LRESULT OverlayWindow::HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
  if (phraseQuery_ != 0 && msg == phraseQuery_)
    return AnswerPhraseQuery(reinterpret_cast<HWND>(wParam)) ? 1 : 0;
  switch (msg) {
    case WM_ERASEBKGND:
      return 1;  // WM_PAINT covers every pixel
    case WM_PAINT: {
      const PaintScope paint(Hwnd());
      RECT client;
      ::GetClientRect(Hwnd(), &client);
      Paint(paint.Dc(), client);
      return 0;
    }
    case WM_MOUSEACTIVATE:
      return MA_NOACTIVATE;
    case WM_NCHITTEST:
      return HTTRANSPARENT;
    default:
      return Window::HandleMessage(msg, wParam, lParam);
  }
}

}  // namespace qm::win32
