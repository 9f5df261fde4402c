#include "controls/tab_menu_win32.h"

#include <windowsx.h>

#include <algorithm>

#include "controls/tab_menu_res.h"
#include "platform/screen_win32.h"
#include "platform/window_dpi_win32.h"

namespace qm::win32 {
namespace {

constexpr const char* kBarClass = "QmTabMenu";
constexpr const char* kElementClass = "QmTabMenuButton";
// The caption: Arial 8.25 pt.
constexpr const char* kCaptionFace = "Arial";
constexpr int kCaptionHundredthsOfPoint = 825;

Bitmap LoadPicture(int id) {
  return Bitmap(static_cast<HBITMAP>(
      ::LoadImageA(ThisModule(), MAKEINTRESOURCEA(id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
}

// Shows `picture` stretched over `area` of `dc`.
void DrawStretched(HDC dc, HBITMAP picture, const RECT& area) {
  if (!picture || area.right <= area.left || area.bottom <= area.top) return;
  BITMAP info{};
  if (!::GetObjectA(picture, sizeof info, &info)) return;
  MemoryDC source(dc);
  SelectGuard select(source.Get(), picture);
  ::StretchBlt(dc, area.left, area.top, area.right - area.left, area.bottom - area.top, source.Get(), 0, 0,
               info.bmWidth, info.bmHeight, SRCCOPY);
}

// Paints through a memory bitmap, so that the window never shows a half
// drawn picture.
template <typename Draw>
void PaintBuffered(HWND hwnd, Draw&& draw) {
  PaintScope paint(hwnd);
  RECT client{};
  ::GetClientRect(hwnd, &client);
  if (client.right <= 0 || client.bottom <= 0) return;
  MemoryDC buffer(paint.Dc());
  Bitmap canvas(::CreateCompatibleBitmap(paint.Dc(), client.right, client.bottom));
  if (!buffer || !canvas) {
    draw(paint.Dc());
    return;
  }
  {
    SelectGuard select(buffer.Get(), canvas.Get());
    ::SetStretchBltMode(buffer.Get(), HALFTONE);
    ::SetBrushOrgEx(buffer.Get(), 0, 0, nullptr);
    draw(buffer.Get());
    ::BitBlt(paint.Dc(), 0, 0, client.right, client.bottom, buffer.Get(), 0, 0, SRCCOPY);
  }
}

}  // namespace

// ---- TabPictures

TabPictures TabPictures::Load() {
  TabPictures p;
  p.strip = LoadPicture(IDB_TAB_STRIP);
  p.tabNormal = LoadPicture(IDB_TAB_NORMAL);
  p.tabOver = LoadPicture(IDB_TAB_OVER);
  p.tabDown = LoadPicture(IDB_TAB_DOWN);
  p.menuNormal = LoadPicture(IDB_TAB_MENU_NORMAL);
  p.menuOver = LoadPicture(IDB_TAB_MENU_OVER);
  p.menuDown = LoadPicture(IDB_TAB_MENU_DOWN);
  p.separator = LoadPicture(IDB_TAB_SEPARATOR);
  return p;
}

HBITMAP TabPictures::For(bool tab, TabPicture picture) const {
  switch (picture) {
    case TabPicture::Normal:
      return tab ? tabNormal.Get() : menuNormal.Get();
    case TabPicture::Over:
      return tab ? tabOver.Get() : menuOver.Get();
    case TabPicture::Down:
      return tab ? tabDown.Get() : menuDown.Get();
  }
  return nullptr;
}

// ---- One button of the bar

class TabMenuWindow::ElementWindow : public Window {
 public:
  ElementWindow(TabMenuWindow& bar, TabElement& element) : bar_(bar), element_(element) {}
  ~ElementWindow() override {
    element_.Changed = nullptr;
    Destroy();
  }

  bool Create() {
    CreateArgs args;
    args.className = kElementClass;
    args.style = WS_CHILD | WS_CLIPSIBLINGS;
    args.parent = bar_.Hwnd();
    const RECT r = bar_.ToPixels(element_.Bounds());
    args.x = r.left;
    args.y = r.top;
    args.width = r.right - r.left;
    args.height = r.bottom - r.top;
    if (!Window::Create(args)) return false;
    element_.Changed = [this] { Sync(); };
    Sync();
    return true;
  }

  const TabElement& Element() const { return element_; }

  // Brings the window in line with the model: place, visibility, looks.
  void Sync() {
    if (!Hwnd()) return;
    const RECT r = bar_.ToPixels(element_.Bounds());
    RECT now{};
    ::GetWindowRect(Hwnd(), &now);
    ::MapWindowPoints(HWND_DESKTOP, bar_.Hwnd(), reinterpret_cast<POINT*>(&now), 2);
    if (!::EqualRect(&now, &r))
      ::SetWindowPos(Hwnd(), nullptr, r.left, r.top, r.right - r.left, r.bottom - r.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    if (element_.Visible() != (::IsWindowVisible(Hwnd()) != FALSE))
      ::ShowWindow(Hwnd(), element_.Visible() ? SW_SHOWNA : SW_HIDE);
    ::InvalidateRect(Hwnd(), nullptr, FALSE);
  }

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) override {
    switch (msg) {
      case WM_ERASEBKGND:
        return 1;
      case WM_PAINT:
        PaintBuffered(Hwnd(), [this](HDC dc) { Paint(dc); });
        return 0;
      case WM_MOUSEMOVE:
        if (Hits(lParam)) element_.ImgButton_MouseMove();
        return 0;
      case WM_LBUTTONDOWN:
      case WM_RBUTTONDOWN:
      case WM_MBUTTONDOWN:
        if (!Hits(lParam)) return 0;
        if (msg == WM_LBUTTONDOWN) {
          pressed_ = true;
          ::SetCapture(Hwnd());
        }
        element_.ImgButton_MouseDown();
        return 0;
      case WM_LBUTTONUP: {
        const bool wasPressed = pressed_;
        pressed_ = false;
        if (::GetCapture() == Hwnd()) ::ReleaseCapture();
        if (wasPressed && Hits(lParam)) element_.ImgButton_Click();
        return 0;
      }
      case WM_CAPTURECHANGED:
        pressed_ = false;
        return 0;
      default:
        return Window::HandleMessage(msg, wParam, lParam);
    }
  }

 private:
  bool Hits(LPARAM lParam) const {
    return element_.Hits(bar_.TwipsFromPixelsX(GET_X_LPARAM(lParam)),
                         bar_.TwipsFromPixelsY(GET_Y_LPARAM(lParam)));
  }

  void Paint(HDC dc) const {
    const TabPictures& pictures = bar_.Pictures();
    DrawStretched(dc, pictures.strip.Get(), bar_.ToPixels(element_.ImgBG()));
    DrawStretched(dc, pictures.For(element_.IsTab(), element_.ImgButton()),
                  bar_.ToPixels(element_.ImgButtonRect()));
    DrawStretched(dc, pictures.separator.Get(), bar_.ToPixels(element_.Separator().Bounds()));
    if (!element_.IsTab()) return;

    const auto& tab = static_cast<const TabButton&>(element_);
    RECT label = bar_.ToPixels(tab.LblTextRect());
    SelectGuard font(dc, bar_.CaptionFont());
    ::SetBkMode(dc, TRANSPARENT);
    ::SetTextColor(dc, static_cast<COLORREF>(tab.LblTextColor()));
    ::DrawTextA(dc, tab.LblText().c_str(), static_cast<int>(tab.LblText().size()), &label,
                DT_CENTER | DT_TOP | DT_WORDBREAK);
  }

  TabMenuWindow& bar_;
  TabElement& element_;
  bool pressed_ = false;
};

// ---- The bar

TabMenuWindow::TabMenuWindow() = default;

TabMenuWindow::~TabMenuWindow() {
  model_.ElementCreated = nullptr;
  Destroy();
  elements_.clear();
}

void TabMenuWindow::MakeCaptionFont() {
  LOGFONTA lf{};
  lf.lfHeight = -::MulDiv(kCaptionHundredthsOfPoint, dpiY_, 7200);
  lf.lfWeight = FW_NORMAL;
  lf.lfCharSet = DEFAULT_CHARSET;
  lstrcpynA(lf.lfFaceName, kCaptionFace, LF_FACESIZE);
  captionFont_.Reset(::CreateFontIndirectA(&lf));
}

bool TabMenuWindow::Create(HWND parent, int left, int top, int width, int id) {
  // The bar is drawn at its parent's dots per inch.
  dpiX_ = dpiY_ = WindowDpi(parent);
  left_ = left;
  top_ = top;
  pictures_ = TabPictures::Load();
  MakeCaptionFont();

  model_.Resize(width);
  CreateArgs args;
  args.className = kBarClass;
  args.style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN;
  args.parent = parent;
  args.menuOrId = reinterpret_cast<HMENU>(static_cast<INT_PTR>(id));
  const RECT r = ToPixels({left, top, model_.Width(), model_.Height()});
  args.x = r.left;
  args.y = r.top;
  args.width = r.right - r.left;
  args.height = r.bottom - r.top;
  if (!Window::Create(args)) return false;

  for (std::int16_t i = 1; i <= model_.TabButtonUBound(); ++i) Attach(model_.Tab(i));
  for (std::int16_t i = 1; i <= model_.TabButtonMenuUBound(); ++i) Attach(model_.MenuButton(i));
  model_.ElementCreated = [this](TabElement& element) { Attach(element); };
  return true;
}

void TabMenuWindow::Resize(int width) {
  model_.Resize(width);
  if (!Hwnd()) return;
  const RECT r = ToPixels(model_.ImgBG());
  ::SetWindowPos(Hwnd(), nullptr, 0, 0, r.right - r.left, r.bottom - r.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  ::InvalidateRect(Hwnd(), nullptr, FALSE);  // the strip is stretched anew
}

void TabMenuWindow::SetDpi(int dpi) {
  dpiX_ = dpiY_ = UsableDpi(dpi);
  MakeCaptionFont();
  if (!Hwnd()) return;
  const RECT r = ToPixels({left_, top_, model_.Width(), model_.Height()});
  ::SetWindowPos(Hwnd(), nullptr, r.left, r.top, r.right - r.left, r.bottom - r.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
  for (const auto& element : elements_) element->Sync();
  ::InvalidateRect(Hwnd(), nullptr, FALSE);
}

void TabMenuWindow::Attach(TabElement& element) {
  auto window = std::make_unique<ElementWindow>(*this, element);
  if (window->Create()) elements_.push_back(std::move(window));
}

HWND TabMenuWindow::FindHwnd(bool tab, std::int16_t index) const {
  for (const auto& e : elements_)
    if (e->Element().IsTab() == tab && e->Element().Index() == index) return e->Hwnd();
  return nullptr;
}

HWND TabMenuWindow::TabHwnd(std::int16_t index) const {
  return FindHwnd(true, index);
}
HWND TabMenuWindow::MenuButtonHwnd(std::int16_t index) const {
  return FindHwnd(false, index);
}

RECT TabMenuWindow::ToPixels(const TwipRect& r) const {
  return {TwipsToPixels(r.left, dpiX_), TwipsToPixels(r.top, dpiY_), TwipsToPixels(r.left + r.width, dpiX_),
          TwipsToPixels(r.top + r.height, dpiY_)};
}

LRESULT TabMenuWindow::HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
  switch (msg) {
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      PaintBuffered(Hwnd(),
                    [this](HDC dc) { DrawStretched(dc, pictures_.strip.Get(), ToPixels(model_.ImgBG())); });
      return 0;
    default:
      return Window::HandleMessage(msg, wParam, lParam);
  }
}

}  // namespace qm::win32
