#include "controls/is_button_win32.h"

#include <commctrl.h>
#include <vssym32.h>
#include <windowsx.h>

#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include "platform/twips.h"
#include "platform/system_dll_win32.h"
#include "platform/window_dpi_win32.h"

namespace qm::win32 {
namespace {

// The font of a button that has none of its own.
const FontSpec kDefaultFont{"MS Sans Serif", 8.25};

COLORREF ToColorRef(OleColor rgb) {
  return static_cast<COLORREF>(rgb & 0x00FFFFFF);
}

// A solid rectangle without making a brush.
void FillSolid(HDC dc, const RECT& r, OleColor rgb) {
  ::SetBkColor(dc, ToColorRef(rgb));
  ::ExtTextOutA(dc, 0, 0, ETO_OPAQUE, &r, nullptr, 0, nullptr);
}

// 0xAARRGGBB as a 32-bit DIB holds it, from and to RGB.
std::uint32_t ToDib(OleColor rgb) {
  return ((rgb & 0xFF) << 16) | (rgb & 0xFF00) | ((rgb >> 16) & 0xFF);
}
OleColor FromDib(std::uint32_t p) {
  return Rgb((p >> 16) & 0xFF, (p >> 8) & 0xFF, p & 0xFF);
}

BITMAPINFO TopDownDib(int width, int height) {
  BITMAPINFO bi{};
  bi.bmiHeader.biSize = sizeof bi.bmiHeader;
  bi.bmiHeader.biWidth = width;
  bi.bmiHeader.biHeight = -height;
  bi.bmiHeader.biPlanes = 1;
  bi.bmiHeader.biBitCount = 32;
  bi.bmiHeader.biCompression = BI_RGB;
  return bi;
}

Region MakeRegion(const ButtonRegion& shape, HTHEME theme, HWND hwnd) {
  switch (shape.kind) {
    case ButtonRegion::Kind::Polygon: {
      std::vector<POINT> points;
      for (const ButtonPoint& p : shape.points) points.push_back({p.x, p.y});
      return Region(::CreatePolygonRgn(points.data(), static_cast<int>(points.size()), WINDING));
    }
    case ButtonRegion::Kind::RoundRect:
      return Region(::CreateRoundRectRgn(0, 0, shape.right, shape.bottom, shape.ellipse, shape.ellipse));
    case ButtonRegion::Kind::Theme:
      if (theme) {
        HRGN themed = nullptr;
        const RECT grown{-1, -1, shape.right + 1, shape.bottom + 1};
        WindowDC dc(hwnd);
        if (SUCCEEDED(
                sys::GetThemeBackgroundRegion(theme, dc.Get(), BP_PUSHBUTTON, PBS_NORMAL, &grown, &themed))) {
          return Region(themed);
        }
      }
      break;
    case ButtonRegion::Kind::Rectangle:
      break;
  }
  return Region(::CreateRectRgn(0, 0, shape.right, shape.bottom));
}

// One frame ring: top and left in one colour, bottom and right in another.
void DrawRing(HDC dc, const RECT& area, const FrameRing& ring) {
  RECT r = area;
  ::InflateRect(&r, -ring.inset, -ring.inset);
  if (r.right - r.left < 2 || r.bottom - r.top < 2) return;
  FillSolid(dc, {r.left, r.top, r.right, r.top + 1}, ring.topLeft);
  FillSolid(dc, {r.left, r.top, r.left + 1, r.bottom}, ring.topLeft);
  FillSolid(dc, {r.left, r.bottom - 1, r.right, r.bottom}, ring.bottomRight);
  FillSolid(dc, {r.right - 1, r.top, r.right, r.bottom}, ring.bottomRight);
}

// A hand-drawn skin: the face graded one line per step, the border along
// the edge of the style's own region and a light line just inside it.
void PaintSkin(HDC dc, int style, int w, int h, const SkinColors& skin) {
  for (int y = 0; y < h; ++y) FillSolid(dc, {0, y, w, y + 1}, GradientStep(skin.top, skin.bottom, y, h));
  Region outline = MakeRegion(RegionForStyle(style, w, h, false), nullptr, nullptr);
  if (!outline) return;
  // The region less one pixel all round: where each of its four
  // neighbours lies inside it too.
  Region inner(::CreateRectRgn(0, 0, w, h));
  Region moved(::CreateRectRgn(0, 0, 0, 0));
  for (const POINT d : {POINT{1, 0}, POINT{-1, 0}, POINT{0, 1}, POINT{0, -1}}) {
    ::CombineRgn(moved.Get(), outline.Get(), nullptr, RGN_COPY);
    ::OffsetRgn(moved.Get(), d.x, d.y);
    ::CombineRgn(inner.Get(), inner.Get(), moved.Get(), RGN_AND);
  }
  Brush border(::CreateSolidBrush(ToColorRef(skin.border)));
  Brush light(::CreateSolidBrush(ToColorRef(skin.light)));
  ::FrameRgn(dc, inner.Get(), light.Get(), 1, 1);
  ::FrameRgn(dc, outline.Get(), border.Get(), 1, 1);
}

// Style 10: the fixed pixel art, whatever the colour properties hold.
void PaintGloss(HDC dc, GlossVariant variant, int w, int h) {
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h));
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x)
      pixels[static_cast<std::size_t>(y) * w + x] = ToDib(Style10Pixel(variant, x, y, w, h));
  }
  BITMAPINFO bi = TopDownDib(w, h);
  ::SetDIBitsToDevice(dc, 0, 0, w, h, 0, 0, 0, h, pixels.data(), &bi, DIB_RGB_COLORS);
}

// The icon with every colour that is not already a grey step turned grey,
// on its own mask.
Icon GreyIcon(HICON icon) {
  ICONINFO info{};
  if (!::GetIconInfo(icon, &info)) return {};
  Bitmap colour(info.hbmColor);
  Bitmap mask(info.hbmMask);
  BITMAP bm{};
  if (!colour || !::GetObjectA(colour.Get(), sizeof bm, &bm)) return {};
  BITMAPINFO bi = TopDownDib(bm.bmWidth, bm.bmHeight);
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(bm.bmWidth) * bm.bmHeight);
  WindowDC screen(nullptr);
  if (!::GetDIBits(screen.Get(), colour.Get(), 0, bm.bmHeight, pixels.data(), &bi, DIB_RGB_COLORS)) return {};
  for (std::uint32_t& p : pixels) p = (p & 0xFF000000u) | ToDib(GreyColor(FromDib(p)));
  if (!::SetDIBits(screen.Get(), colour.Get(), 0, bm.bmHeight, pixels.data(), &bi, DIB_RGB_COLORS)) return {};
  ICONINFO grey{TRUE, 0, 0, mask.Get(), colour.Get()};
  return Icon(::CreateIconIndirect(&grey));
}

// The shared cursors of the MousePointer values 1 to 15 (0 is the
// window's own).
LPCSTR CursorOf(std::int16_t pointer) {
  static const LPCSTR kCursors[] = {IDC_ARROW,    IDC_CROSS,  IDC_IBEAM,       IDC_ARROW,  IDC_SIZEALL,
                                    IDC_SIZENESW, IDC_SIZENS, IDC_SIZENWSE,    IDC_SIZEWE, IDC_UPARROW,
                                    IDC_WAIT,     IDC_NO,     IDC_APPSTARTING, IDC_HELP,   IDC_SIZEALL};
  return pointer >= 1 && pointer <= 15 ? kCursors[pointer - 1] : nullptr;
}

ButtonKey KeyOf(WPARAM vk) {
  static const std::pair<WPARAM, ButtonKey> kKeys[] = {
      {VK_SPACE, ButtonKey::Space}, {VK_LEFT, ButtonKey::Left}, {VK_UP, ButtonKey::Up},
      {VK_RIGHT, ButtonKey::Right}, {VK_DOWN, ButtonKey::Down}, {VK_TAB, ButtonKey::Tab}};
  for (const auto& [code, key] : kKeys) {
    if (code == vk) return key;
  }
  return ButtonKey::Other;
}

// Looks up `name` in `library`; a library loaded only for the look-up is
// released again when it does not have the name (and kept when it does,
// so that the function stays there).
FARPROC Exported(const char* library, const char* name) {
  HMODULE module = ::GetModuleHandleA(library);
  const bool loadedHere = module == nullptr;
  if (loadedHere) module = ::LoadLibraryA(library);
  if (!module) return nullptr;
  FARPROC found = ::GetProcAddress(module, name);
  if (!found && loadedHere) ::FreeLibrary(module);
  return found;
}

// One step of the tab order walk: the stops among the children of
// `parent`, and `from` where it stands even when it is no stop.
struct TabEntry {
  HWND hwnd;
  bool stop;
};

void CollectTabOrder(HWND parent, HWND from, std::vector<TabEntry>& order) {
  for (HWND child = ::GetWindow(parent, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
    const LONG style = ::GetWindowLongA(child, GWL_STYLE);
    const LONG exStyle = ::GetWindowLongA(child, GWL_EXSTYLE);
    const bool usable = (style & WS_VISIBLE) && !(style & WS_DISABLED);
    const bool controlParent = (exStyle & WS_EX_CONTROLPARENT) != 0;
    const bool tabStop = (style & WS_TABSTOP) != 0;
    const bool container = controlParent || (!tabStop && ::GetWindow(child, GW_CHILD) != nullptr);
    const bool stop = usable && tabStop && !controlParent;
    if (stop || child == from) order.push_back({child, stop});
    if (container && (usable || ::IsChild(child, from))) CollectTabOrder(child, from, order);
  }
}

}  // namespace

HWND NextTabStop(HWND root, HWND from, bool previous) {
  std::vector<TabEntry> order;
  if (root) CollectTabOrder(root, from, order);
  const auto n = static_cast<std::ptrdiff_t>(order.size());
  std::ptrdiff_t at = previous ? n : -1;  // from outside the order: the first or the last stop
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    if (order[i].hwnd == from) at = i;
  }
  for (std::ptrdiff_t k = 1; k <= n; ++k) {
    const std::ptrdiff_t i = ((previous ? at - k : at + k) % n + n) % n;
    if (order[i].stop && order[i].hwnd != from) return order[i].hwnd;
  }
  return nullptr;
}

const MouseTracker& MouseTracker::Find() {
  static const MouseTracker tracker = [] {
    MouseTracker t;
    if (FARPROC f = Exported("user32.dll", "TrackMouseEvent")) {
      t.track = reinterpret_cast<Function>(reinterpret_cast<void*>(f));
      t.fromUser32 = true;
    } else if (FARPROC g = Exported("comctl32.dll", "_TrackMouseEvent")) {
      t.track = reinterpret_cast<Function>(reinterpret_cast<void*>(g));
    }
    return t;
  }();
  return tracker;
}

isButtonWindow::isButtonWindow() : model_(*this), fontSpec_(kDefaultFont) {}

isButtonWindow::~isButtonWindow() {
  Destroy();
}

bool isButtonWindow::CreateWindowOnly(HWND parent, const TwipBounds& b, int id) {
  if (Hwnd()) Destroy();
  started_ = false;
  releasingCapture_ = false;
  INITCOMMONCONTROLSEX icc{sizeof icc, ICC_WIN95_CLASSES};
  ::InitCommonControlsEx(&icc);
  // The button is drawn at its container's dots per inch.
  dpiX_ = dpiY_ = WindowDpi(parent);
  font_ = MakeFont(fontSpec_, dpiY_);
  CreateArgs args;
  args.className = kClassName;
  args.classStyle = CS_DBLCLKS;
  args.style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS;
  args.x = TwipsToPixels(b.left, dpiX_);
  args.y = TwipsToPixels(b.top, dpiY_);
  args.width = TwipsToPixels(b.width, dpiX_);
  args.height = TwipsToPixels(b.height, dpiY_);
  args.parent = parent;
  args.menuOrId = reinterpret_cast<HMENU>(static_cast<INT_PTR>(id));
  model_.SurfaceAttached();
  if (!Window::Create(args)) {
    model_.SurfaceDetached();
    return false;
  }
  OpenTheme();
  return true;
}

bool isButtonWindow::Create(HWND parent, const TwipBounds& bounds, const PropertyStore& stored, int id) {
  if (!CreateWindowOnly(parent, bounds, id)) return false;
  model_.ReadProperties(stored);
  started_ = true;
  model_.Start(MouseTracker::Find().track != nullptr);
  return true;
}

bool isButtonWindow::CreateNew(HWND parent, const TwipBounds& bounds, std::string_view name, int id) {
  if (!CreateWindowOnly(parent, bounds, id)) return false;
  model_.InitProperties(name);
  started_ = true;
  model_.Start(MouseTracker::Find().track != nullptr);
  return true;
}

void isButtonWindow::SetBounds(const TwipBounds& b) {
  if (!Hwnd()) return;
  ::MoveWindow(Hwnd(), TwipsToPixels(b.left, dpiX_), TwipsToPixels(b.top, dpiY_),
               TwipsToPixels(b.width, dpiX_), TwipsToPixels(b.height, dpiY_), TRUE);
}

void isButtonWindow::SetDpi(int dpi, const TwipBounds& b) {
  dpiX_ = dpiY_ = UsableDpi(dpi);
  if (Font made = MakeFont(fontSpec_, dpiY_)) font_ = std::move(made);
  SetBounds(b);
  if (Hwnd()) ::InvalidateRect(Hwnd(), nullptr, FALSE);
}

void isButtonWindow::About() {
  const std::string text = std::string("isButton\r\nVersion ") + isButton::kVersion;
  ::MessageBoxA(Hwnd(), text.c_str(), "About isButton", MB_OK | MB_ICONINFORMATION);
}

RECT isButtonWindow::Client() const {
  RECT r{};
  ::GetClientRect(Hwnd(), &r);
  return r;
}

bool isButtonWindow::Over(LPARAM lParam) const {
  const RECT r = Client();
  const POINT p{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  return ::PtInRect(&r, p) != FALSE;
}

// Through the tab order of the whole top-level window. An edit box that
// the focus reaches has its text selected, as the dialog manager does.
void isButtonWindow::MoveFocus(FocusMove move) {
  if (move == FocusMove::None || !Hwnd()) return;
  HWND next = NextTabStop(::GetAncestor(Hwnd(), GA_ROOT), Hwnd(), move == FocusMove::Previous);
  if (!next) return;
  ::SetFocus(next);
  if (::SendMessageA(next, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL) ::SendMessageA(next, EM_SETSEL, 0, -1);
}

void isButtonWindow::OnDestroyed() {
  model_.SurfaceDetached();
}

void isButtonWindow::OpenTheme() {
  CloseTheme();
  theme_.Reset(sys::OpenThemeData(Hwnd(), L"Button"));
}

void isButtonWindow::CloseTheme() {
  theme_.Reset();
}

LRESULT isButtonWindow::HandleMessage(UINT msg, WPARAM wParam, LPARAM lParam) {
  switch (msg) {
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      PaintScope paint(Hwnd());
      const RECT client = Client();
      if (client.right <= 0 || client.bottom <= 0) return 0;
      MemoryDC buffer(paint.Dc());
      Bitmap canvas(::CreateCompatibleBitmap(paint.Dc(), client.right, client.bottom));
      if (!buffer || !canvas) {
        Paint(paint.Dc(), client);
        return 0;
      }
      SelectGuard select(buffer.Get(), canvas.Get());
      Paint(buffer.Get(), client);
      ::BitBlt(paint.Dc(), 0, 0, client.right, client.bottom, buffer.Get(), 0, 0, SRCCOPY);
      return 0;
    }
    case WM_PRINTCLIENT:
      Paint(reinterpret_cast<HDC>(wParam), Client());
      return 0;
    case WM_SIZE:
      if (started_) model_.Layout();
      return 0;
    case WM_SHOWWINDOW:
      model_.SetShown(wParam != FALSE);
      break;
    case WM_MOUSEMOVE:
      model_.MouseMove(Over(lParam));
      return 0;
    case WM_MOUSELEAVE:
      model_.MouseLeft();
      return 0;
    case WM_THEMECHANGED:
      OpenTheme();
      model_.ThemeChanged();
      return 0;
    case WM_SYSCOLORCHANGE:
      model_.SysColorChange();
      return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: {
      // The press holds the mouse, so that the release comes here wherever
      // it happens.
      const auto alive = model_.LifeToken();
      if (::GetFocus() != Hwnd()) ::SetFocus(Hwnd());
      if (!*alive) return 0;
      ::SetCapture(Hwnd());
      model_.MouseDown(MouseButton::Left);
      return 0;
    }
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK: {
      const auto alive = model_.LifeToken();
      if (::GetFocus() != Hwnd()) ::SetFocus(Hwnd());
      if (*alive) model_.MouseDown(MouseButton::Right);
      return 0;
    }
    case WM_LBUTTONUP: {
      // The mouse is let go before Click, so that what the handler opens
      // (a message box) has it.
      const bool over = Over(lParam);
      const auto alive = model_.LifeToken();
      if (::GetCapture() == Hwnd()) {
        releasingCapture_ = true;
        ::ReleaseCapture();
        if (!*alive) return 0;
        releasingCapture_ = false;
      }
      model_.MouseUp(MouseButton::Left, over);
      return 0;
    }
    case WM_RBUTTONUP:
      model_.MouseUp(MouseButton::Right, Over(lParam));
      return 0;
    case WM_CAPTURECHANGED:
      if (!releasingCapture_ && reinterpret_cast<HWND>(lParam) != Hwnd()) model_.CancelPress();
      return 0;
    case WM_CANCELMODE:
      model_.CancelPress();
      if (::GetCapture() == Hwnd()) ::ReleaseCapture();
      return 0;
    case WM_KEYDOWN: {
      const auto alive = model_.LifeToken();
      const FocusMove move = model_.KeyDown(KeyOf(wParam), ::GetKeyState(VK_SHIFT) < 0);
      if (*alive) MoveFocus(move);
      return 0;
    }
    case WM_KEYUP:
      model_.KeyUp(KeyOf(wParam));
      return 0;
    case WM_GETDLGCODE:
      return DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON | DLGC_WANTARROWS;
    case BM_CLICK:
      model_.AccessKeyPress();
      return 0;
    case BM_SETSTYLE:
      // The dialog manager marks its default button so.
      model_.SetDisplayAsDefault((wParam & 0x0F) == BS_DEFPUSHBUTTON);
      return 0;
    case WM_SETFOCUS:
      model_.GotFocus();
      return 0;
    case WM_KILLFOCUS:
      model_.LostFocus();
      if (::GetCapture() == Hwnd()) ::ReleaseCapture();
      return 0;
    case WM_SETCURSOR:
      if (cursor_ && LOWORD(lParam) == HTCLIENT) {
        ::SetCursor(cursor_);
        return TRUE;
      }
      break;
    case WM_DESTROY:
      HideTooltip();
      CloseTheme();
      break;
    default:
      break;
  }
  return Window::HandleMessage(msg, wParam, lParam);
}

// --- Painting ---------------------------------------------------------------

void isButtonWindow::Paint(HDC dc, const RECT& area) {
  const ButtonLook look = model_.Look();
  PaintFace(dc, area, look);
  if (look.hasIcon) PaintIcon(dc, look);
  SelectGuard font(dc, font_.Get());
  ::SetBkMode(dc, TRANSPARENT);
  ::SetTextColor(dc, ToColorRef(look.textColor));
  RECT caption{look.captionRect.left, look.captionRect.top, look.captionRect.right, look.captionRect.bottom};
  ::DrawTextA(dc, look.caption.c_str(), -1, &caption, look.captionFlags);
}

void isButtonWindow::PaintFace(HDC dc, const RECT& area, const ButtonLook& look) {
  RECT beneath = area;
  const int w = area.right - area.left;
  const int h = area.bottom - area.top;
  switch (look.style) {
    case 0: {
      FillSolid(dc, area, look.face);
      RECT edge = area;
      ::DrawEdge(dc, &edge, look.state == ButtonState::Pressed ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT);
      if (look.focusRect) {
        RECT focus = area;
        ::InflateRect(&focus, -4, -4);
        ::DrawFocusRect(dc, &focus);
      }
      break;
    }
    case 1:
    case 2:
    case 3:
    case 4:
      FillSolid(dc, area, look.face);
      for (const FrameRing& ring : look.frame) DrawRing(dc, area, ring);
      break;
    case 5:
    case 7:
    case 8:
    case 9:
      PaintSkin(dc, look.style, w, h, look.skin);
      break;
    case 6:
      sys::DrawThemeParentBackground(Hwnd(), dc, &beneath);
      if (theme_) {
        sys::DrawThemeBackground(theme_.Get(), dc, BP_PUSHBUTTON, static_cast<int>(look.themeState), &area,
                              nullptr);
      }
      break;
    case 10:
      PaintGloss(dc, look.gloss, w, h);
      break;
    default:  // no background of its own: what lies beneath shows
      sys::DrawThemeParentBackground(Hwnd(), dc, &beneath);
      break;
  }
}

void isButtonWindow::PaintIcon(HDC dc, const ButtonLook& look) {
  HICON icon = reinterpret_cast<HICON>(model_.Icon().handle);
  Icon grey;
  if (look.greyIcon) {
    grey = GreyIcon(icon);
    if (grey) icon = grey.Get();
  }
  const int s = look.iconSize;
  if (!look.useMaskColor) {
    ::DrawIconEx(dc, look.iconAt.x, look.iconAt.y, icon, s, s, 0, nullptr, DI_NORMAL);
    return;
  }
  // On a field of the mask colour, then everything but that colour (as
  // the device shows it) is copied.
  MemoryDC field(dc);
  Bitmap canvas(::CreateCompatibleBitmap(dc, s, s));
  if (!field || !canvas) return;
  SelectGuard select(field.Get(), canvas.Get());
  FillSolid(field.Get(), {0, 0, s, s}, look.maskColor);
  ::DrawIconEx(field.Get(), 0, 0, icon, s, s, 0, nullptr, DI_NORMAL);
  const COLORREF key = ::GetNearestColor(field.Get(), ToColorRef(look.maskColor));
  ::GdiTransparentBlt(dc, look.iconAt.x, look.iconAt.y, s, s, field.Get(), 0, 0, s, s, key);
}

// --- ButtonSurface ----------------------------------------------------------

ButtonSize isButtonWindow::SizeTwips() const {
  RECT r{};
  if (!Hwnd()) return {};
  ::GetWindowRect(Hwnd(), &r);
  return {PixelsToTwips(r.right - r.left, dpiX_), PixelsToTwips(r.bottom - r.top, dpiY_)};
}

void isButtonWindow::SetSizeTwips(ButtonSize size) {
  if (!Hwnd()) return;
  ::SetWindowPos(Hwnd(), nullptr, 0, 0, TwipsToPixels(size.width, dpiX_), TwipsToPixels(size.height, dpiY_),
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

ButtonSize isButtonWindow::InnerPixels() const {
  const RECT r = Client();
  return {r.right - r.left, r.bottom - r.top};
}

ButtonRect isButtonWindow::MeasureCaption(std::string_view caption, const ButtonRect& bounds,
                                          unsigned flags) const {
  const std::string text(caption);
  if (!Hwnd()) return bounds;
  char shown[512] = {};
  ::GetWindowTextA(Hwnd(), shown, sizeof shown);
  if (text != shown) ::SetWindowTextA(Hwnd(), text.c_str());
  WindowDC dc(Hwnd());
  SelectGuard font(dc.Get(), font_.Get());
  RECT r{bounds.left, bounds.top, bounds.right, bounds.bottom};
  ::DrawTextA(dc.Get(), text.c_str(), -1, &r, flags);
  return {r.left, r.top, r.right, r.bottom};
}

OleColor isButtonWindow::SystemColor(int index) const {
  return ::GetSysColor(index);
}

bool isButtonWindow::HasVisualStyles() const {
  return theme_.Valid() && sys::IsThemeActive();
}

FontSpec isButtonWindow::CurrentFont() const {
  return fontSpec_;
}

void isButtonWindow::ApplyRegion(const ButtonRegion& region) {
  if (!Hwnd()) return;
  Region made = MakeRegion(region, theme_.Get(), Hwnd());
  if (made && ::SetWindowRgn(Hwnd(), made.Get(), TRUE)) made.Release();  // the window owns it now
}

// With no window there is nothing to repaint: a null window would stand
// for the whole screen.
void isButtonWindow::Repaint() {
  if (Hwnd()) ::InvalidateRect(Hwnd(), nullptr, FALSE);
}

void isButtonWindow::PaintPending() {
  if (Hwnd()) ::UpdateWindow(Hwnd());
}

void isButtonWindow::TrackMouseLeave() {
  const MouseTracker& tracker = MouseTracker::Find();
  if (!tracker.track || !Hwnd()) return;
  TRACKMOUSEEVENT tme{sizeof tme, TME_LEAVE, Hwnd(), HOVER_DEFAULT};
  tracker.track(&tme);
}

void isButtonWindow::ShowTooltip(const TooltipSpec& t) {
  HideTooltip();
  if (!Hwnd()) return;
  const DWORD style = WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX | (t.balloon ? TTS_BALLOON : 0);
  tooltip_ = ::CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, style, CW_USEDEFAULT, CW_USEDEFAULT,
                               CW_USEDEFAULT, CW_USEDEFAULT, Hwnd(), nullptr, ThisModule(), nullptr);
  if (!tooltip_) return;
  TOOLINFOA tool{};
  tool.cbSize = TTTOOLINFOA_V2_SIZE;
  tool.uFlags = TTF_SUBCLASS;
  tool.hwnd = Hwnd();
  tool.rect = Client();
  tool.hinst = ThisModule();
  tool.lpszText = const_cast<char*>(t.text.c_str());
  ::SendMessageA(tooltip_, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
  if (!t.title.empty() || t.icon != 0) {
    ::SendMessageA(tooltip_, TTM_SETTITLEA, static_cast<WPARAM>(t.icon),
                   reinterpret_cast<LPARAM>(t.title.c_str()));
  }
  if (t.foreColor != 0) ::SendMessageA(tooltip_, TTM_SETTIPTEXTCOLOR, ToColorRef(t.foreColor), 0);
  if (t.backColor != 0) ::SendMessageA(tooltip_, TTM_SETTIPBKCOLOR, ToColorRef(t.backColor), 0);
}

void isButtonWindow::HideTooltip() {
  if (!tooltip_) return;
  TOOLINFOA tool{};
  tool.cbSize = TTTOOLINFOA_V2_SIZE;
  tool.hwnd = Hwnd();
  ::SendMessageA(tooltip_, TTM_DELTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
  ::DestroyWindow(tooltip_);
  tooltip_ = nullptr;
}

void isButtonWindow::EnableSurface(bool enabled) {
  if (Hwnd()) ::EnableWindow(Hwnd(), enabled);
}

void isButtonWindow::ApplyFont(const FontSpec& font) {
  fontSpec_ = font;
  Font made = MakeFont(font, dpiY_);
  if (made) font_ = std::move(made);
}

void isButtonWindow::ApplyMousePointer(std::int16_t pointer) {
  const LPCSTR name = CursorOf(pointer);
  cursor_ = name ? ::LoadCursorA(nullptr, name) : nullptr;
}

}  // namespace qm::win32
