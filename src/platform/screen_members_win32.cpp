// clsScreen's members that act on the screen: the resolution change,
// drawing on the desktop with its history, the current position, class
// cursors, the active window, form and control, and picture objects. The
// rules (the resolution table, what is refused, what is recorded, the
// pie's radials, the cursor order) are ScreenModel's; here they meet GDI.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <optional>
#include <type_traits>

#include "platform/screen_win32.h"
#include "platform/wide_text_win32.h"

namespace qm::win32 {

namespace {

Picture Adopt(IPicture* picture) {
  return Picture(picture, [](IPicture* p) {
    if (p) p->Release();
  });
}

// A picture object over a bitmap; own says whether releasing the picture
// deletes the bitmap.
Picture PictureOverBitmap(HBITMAP bitmap, HPALETTE palette, bool own) {
  PICTDESC description{};
  description.cbSizeofstruct = sizeof description;
  description.picType = PICTYPE_BITMAP;
  description.bmp.hbitmap = bitmap;
  description.bmp.hpal = palette;
  IPictureDisp* dispatch = nullptr;
  if (FAILED(::OleCreatePictureIndirect(&description, IID_IPictureDisp, own ? TRUE : FALSE,
                                        reinterpret_cast<void**>(&dispatch))) ||
      !dispatch) {
    return nullptr;
  }
  IPicture* picture = nullptr;
  const HRESULT asked = dispatch->QueryInterface(IID_IPicture, reinterpret_cast<void**>(&picture));
  dispatch->Release();
  return SUCCEEDED(asked) ? Adopt(picture) : nullptr;
}

// The whole file read into a picture object (bitmap, icon, metafile, JPEG
// or GIF, as the system's picture loader reads them).
HRESULT LoadPictureFile(const std::wstring& path, Picture& loaded) {
  std::ifstream file(path.c_str(), std::ios::binary);  // MinGW's ifstream takes a wide path
  if (!file) return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE, bytes.size());
  if (!memory) return E_OUTOFMEMORY;
  if (void* at = ::GlobalLock(memory)) {
    std::copy(bytes.begin(), bytes.end(), static_cast<char*>(at));
    ::GlobalUnlock(memory);
  }
  IStream* stream = nullptr;
  HRESULT result = ::CreateStreamOnHGlobal(memory, TRUE, &stream);  // the stream frees the memory
  if (FAILED(result)) {
    ::GlobalFree(memory);
    return result;
  }
  IPicture* picture = nullptr;
  result = ::OleLoadPicture(stream, static_cast<LONG>(bytes.size()), FALSE, IID_IPicture,
                            reinterpret_cast<void**>(&picture));
  stream->Release();
  if (SUCCEEDED(result)) loaded = Adopt(picture);
  return result;
}

bool FileExists(const std::string& utf8Path) {
  const auto wide = WidenStrict(utf8Path);
  if (!wide) return false;
  const DWORD attributes = ::GetFileAttributesW(wide->c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// Joins the input states for one step and parts them again, whatever
// happens in between.
class AttachedThread {
 public:
  AttachedThread(const clsScreen& screen, HWND window)
      : screen_(screen), window_(window), attached_(screen.AttachThread(window, true)) {}
  ~AttachedThread() {
    if (!attached_) return;
    try {
      screen_.AttachThread(window_, false);
    } catch (...) {
    }
  }
  AttachedThread(const AttachedThread&) = delete;
  AttachedThread& operator=(const AttachedThread&) = delete;
  explicit operator bool() const { return attached_; }

 private:
  const clsScreen& screen_;
  HWND window_;
  bool attached_;
};

}  // namespace

// ---- The program's loaded forms -------------------------------------------

namespace {
std::vector<HWND>& Forms() {
  static std::vector<HWND> forms;
  return forms;
}
}  // namespace

void FormLoaded(HWND form) {
  if (form && std::find(Forms().begin(), Forms().end(), form) == Forms().end()) Forms().push_back(form);
}

void FormUnloaded(HWND form) {
  Forms().erase(std::remove(Forms().begin(), Forms().end(), form), Forms().end());
}

const std::vector<HWND>& LoadedForms() {
  return Forms();
}

// ---- Resolution -------------------------------------------------------------

bool clsScreen::ChangeResolution(std::int32_t code, std::int32_t depth, bool& restartNeeded, bool testOnly) {
  const auto change = [](const DisplayModeRequest& request) {
    DEVMODEA mode{};
    mode.dmSize = display_mode::kDevModeSize;
    mode.dmFields = request.fields;
    mode.dmPelsWidth = static_cast<DWORD>(request.width);
    mode.dmPelsHeight = static_cast<DWORD>(request.height);
    mode.dmBitsPerPel = static_cast<DWORD>(request.bitsPerPel);
    return static_cast<std::int32_t>(::ChangeDisplaySettingsA(&mode, request.flags));
  };
  // The metrics are read through a DC taken after the change.
  const auto reread = [this] {
    ScreenDc dc(hDC(), desktop_);
    ReadDeviceCaps(dc.Get());
  };
  return ScreenModel::ChangeResolution(code, depth, restartNeeded, testOnly, change, reread);
}

// ---- Current position ------------------------------------------------------

bool clsScreen::GetCurrentXY(HDC dc, std::int32_t& x, std::int32_t& y) const {
  if (!dc) Raise(ScreenFailure::SetDisplayFont, -1, kInvalidDcText);
  POINT old{};
  Check(::MoveToEx(dc, 0, 0, &old), ScreenFailure::GetCurrentXY);
  Check(::MoveToEx(dc, old.x, old.y, nullptr), ScreenFailure::GetCurrentXY);
  x = old.x;
  y = old.y;
  return true;
}

bool clsScreen::SetCurrentXY(HDC dc, std::int32_t x, std::int32_t y) const {
  if (!dc) Raise(ScreenFailure::SetDisplayFont, -1, kInvalidDcText);
  Check(::MoveToEx(dc, x, y, nullptr), ScreenFailure::SetCurrentXY);
  return true;
}

// ---- Drawing ----------------------------------------------------------------

bool clsScreen::DrawArc(std::int32_t x, std::int32_t y, std::int32_t radius, std::int32_t startX,
                        std::int32_t startY, float startAngle, float sweepAngle) {
  return Draw(ArcArgs{x, y, radius, startX, startY, startAngle, sweepAngle}, [this](const ArcArgs& a) {
    ScreenDc dc(hDC(), desktop_);
    SetColors(dc);
    SetCurrentXY(dc.Get(), a.startX, a.startY);
    Check(::AngleArc(dc.Get(), a.x, a.y, static_cast<DWORD>(a.radius), a.startAngle, a.sweepAngle),
          ScreenFailure::DrawArcCall);
    return true;
  });
}

bool clsScreen::DrawEllipse(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) {
  return Draw(EllipseArgs{left, top, right, bottom}, [this](const EllipseArgs& a) {
    ScreenDc dc(hDC(), desktop_);
    SetColors(dc);
    Check(::Ellipse(dc.Get(), a.left, a.top, a.right, a.bottom), ScreenFailure::DrawEllipse);
    return true;
  });
}

bool clsScreen::DrawHalfCircle(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
                               std::int32_t radial1X, std::int32_t radial1Y, std::int32_t radial2X,
                               std::int32_t radial2Y) {
  return Draw(HalfCircleArgs{left, top, right, bottom, radial1X, radial1Y, radial2X, radial2Y},
              [this](const HalfCircleArgs& a) {
                ScreenDc dc(hDC(), desktop_);
                SetColors(dc);
                Check(::Chord(dc.Get(), a.left, a.top, a.right, a.bottom, a.radial1X, a.radial1Y, a.radial2X,
                              a.radial2Y),
                      ScreenFailure::DrawHalfCircle);
                return true;
              });
}

bool clsScreen::DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
  return Draw(LineArgs{x1, y1, x2, y2}, [this](const LineArgs& a) {
    ScreenDc dc(hDC(), desktop_);
    SetColors(dc);
    std::int32_t x = 0, y = 0;
    GetCurrentXY(dc.Get(), x, y);
    if (x != a.x1 || y != a.y1) SetCurrentXY(dc.Get(), a.x1, a.y1);
    Check(::LineTo(dc.Get(), a.x2, a.y2), ScreenFailure::DrawLine);
    return true;
  });
}

bool clsScreen::DrawPicture(std::int32_t x, std::int32_t y, const std::string& path, const Picture& picture,
                            HBITMAP bitmap, std::int32_t width, std::int32_t height, bool stretch) {
  PictureArgs args{x, y, path, picture, reinterpret_cast<std::uintptr_t>(bitmap), width, height, stretch};
  if (!path.empty() || picture || bitmap) {
    // Checks that need the system: refused before anything is drawn.
    ClearLastError();
    if (!path.empty()) {
      if (!FileExists(path)) return Refused({ScreenFailure::DrawPicture, -1, kPictureNotFoundText});
    } else if (picture) {
      OLE_HANDLE handle = 0;
      if (FAILED(picture->get_Handle(&handle)) || handle == 0) {
        return Refused({ScreenFailure::DrawPicture, -1, kInvalidPictureText});
      }
    }
  }
  return Draw(std::move(args), [this](const PictureArgs& a) { return PaintPicture(a); });
}

bool clsScreen::PaintPicture(const PictureArgs& a) {
  Picture picture;
  if (!a.path.empty()) {
    const HRESULT loaded = LoadPictureFile(Widen(a.path), picture);
    if (FAILED(loaded)) {
      Raise(ScreenFailure::DrawPictureLoad, static_cast<std::int32_t>(loaded),
            GetApiErrorText(static_cast<DWORD>(loaded)));
    }
  } else if (a.picture) {
    picture = std::static_pointer_cast<IPicture>(a.picture);
  } else {
    // The caller's bitmap stays the caller's: this picture does not own it.
    picture = PictureOverBitmap(reinterpret_cast<HBITMAP>(a.bitmap), nullptr, false);
    if (!picture) Raise(ScreenFailure::DrawPictureLoad, -1, kInvalidPictureText);
  }

  // A size of 0 is the picture's own: its width in twips over the twips
  // per pixel (the picture measures itself in 0.01 mm).
  std::int32_t width = a.width;
  std::int32_t height = a.height;
  OLE_XSIZE_HIMETRIC himetricWidth = 0;
  OLE_YSIZE_HIMETRIC himetricHeight = 0;
  picture->get_Width(&himetricWidth);
  picture->get_Height(&himetricHeight);
  const auto pixels = [](long himetric, float twipsPerPixel) {
    const double twips = himetric * 1440.0 / 2540.0;
    return twipsPerPixel > 0 ? static_cast<std::int32_t>(std::lround(twips / twipsPerPixel)) : 0;
  };
  if (width == 0) width = pixels(himetricWidth, TwipsPerPixelX());
  if (height == 0) height = pixels(himetricHeight, TwipsPerPixelY());

  ScreenDc dc(hDC(), desktop_);
  SetColors(dc);
  MemoryDC memory(dc.Get());
  if (!memory) RaiseApiError(ScreenFailure::DrawPictureCreateDc);
  OLE_HANDLE handle = 0;
  short type = PICTYPE_UNINITIALIZED;
  picture->get_Handle(&handle);
  picture->get_Type(&type);
  const ScreenFailure drawStep =
      a.stretch ? ScreenFailure::DrawPictureStretch : ScreenFailure::DrawPictureBlt;
  // Only a bitmap can be selected into the memory DC.
  HBITMAP pictureBitmap = reinterpret_cast<HBITMAP>(static_cast<std::uintptr_t>(handle));
  if (type != PICTYPE_BITMAP) Raise(drawStep, -1, kInvalidPictureText);
  SelectGuard selected(memory.Get(), pictureBitmap);
  if (a.stretch) {
    BITMAP info{};
    ::GetObjectA(pictureBitmap, sizeof info, &info);
    Check(::StretchBlt(dc.Get(), a.x, a.y, width, height, memory.Get(), 0, 0, info.bmWidth, info.bmHeight,
                       SRCCOPY),
          drawStep);
  } else {
    Check(::BitBlt(dc.Get(), a.x, a.y, width, height, memory.Get(), 0, 0, SRCCOPY), drawStep);
  }
  return true;
}

bool clsScreen::DrawPie(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
                        float angle, bool explicitRadials, std::int32_t radial1X, std::int32_t radial1Y,
                        std::int32_t radial2X, std::int32_t radial2Y) {
  return Draw(
      PieArgs{left, top, right, bottom, angle, explicitRadials, radial1X, radial1Y, radial2X, radial2Y},
      [this](const PieArgs& a) {
        PieRadials radials{a.radial1X, a.radial1Y, a.radial2X, a.radial2Y};
        if (!a.explicitRadials) {
          const auto derived = RadialsOfAngle(a.left, a.top, a.right, a.bottom, a.angle);
          if (!derived) return true;  // a slice of no width: nothing to draw
          radials = *derived;
        }
        ScreenDc dc(hDC(), desktop_);
        SetColors(dc);
        ::SetArcDirection(dc.Get(), AD_COUNTERCLOCKWISE);
        Check(
            ::Pie(dc.Get(), a.left, a.top, a.right, a.bottom, radials.x1, radials.y1, radials.x2, radials.y2),
            ScreenFailure::DrawPie);
        return true;
      });
}

namespace {
std::vector<POINT> PointsOf(const std::vector<std::int32_t>& xs, const std::vector<std::int32_t>& ys,
                            std::int32_t count) {
  std::vector<POINT> points(static_cast<std::size_t>(count));
  for (std::size_t i = 0; i < points.size(); ++i) points[i] = {xs[i], ys[i]};
  return points;
}
}  // namespace

bool clsScreen::DrawPolygon(const std::vector<std::int32_t>& xs, const std::vector<std::int32_t>& ys,
                            std::int32_t count) {
  return Draw(PolygonArgs{xs, ys, count}, [this](const PolygonArgs& a) {
    const std::vector<POINT> points = PointsOf(a.xs, a.ys, a.count);
    ScreenDc dc(hDC(), desktop_);
    SetColors(dc);
    Check(::Polygon(dc.Get(), points.data(), a.count), ScreenFailure::DrawPolygonCall);
    return true;
  });
}

bool clsScreen::DrawPolyline(std::int32_t startX, std::int32_t startY, const std::vector<std::int32_t>& xs,
                             const std::vector<std::int32_t>& ys, std::int32_t count) {
  return Draw(PolylineArgs{startX, startY, xs, ys, count}, [this](const PolylineArgs& a) {
    const std::vector<POINT> points = PointsOf(a.xs, a.ys, a.count);
    ScreenDc dc(hDC(), desktop_);
    SetColors(dc);
    Check(::MoveToEx(dc.Get(), a.startX, a.startY, nullptr), ScreenFailure::DrawPolylineMove);
    Check(::PolylineTo(dc.Get(), points.data(), static_cast<DWORD>(a.count)),
          ScreenFailure::DrawPolylineCall);
    return true;
  });
}

bool clsScreen::DrawRectangle(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
                              bool filled, bool outlined) {
  return Draw(RectangleArgs{left, top, right, bottom, filled, outlined}, [this](const RectangleArgs& a) {
    ScreenDc dc(hDC(), desktop_);
    SetColors(dc);
    const RECT area{a.left, a.top, a.right, a.bottom};
    if (a.filled) {
      const Brush fill = GetBrush(BackColor_Scr());
      Check(::FillRect(dc.Get(), &area, fill.Get()) != 0, ScreenFailure::DrawRectangleFilled);
    }
    if (a.outlined) {
      const Brush frame = GetBrush(ForeColor_Scr());
      Check(::FrameRect(dc.Get(), &area, frame.Get()) != 0, ScreenFailure::DrawRectangleOutline);
    }
    return true;
  });
}

bool clsScreen::drawText(const std::string& text, std::int32_t x, std::int32_t y, bool wordWrap) {
  return Draw(TextArgs{text, x, y, wordWrap}, [this](const TextArgs& a) {
    // The text ends at its first NUL.
    const std::wstring wide = Widen(std::string_view(a.text).substr(0, a.text.find('\0')));
    ScreenDc dc(hDC(), desktop_);
    SetColors(dc);
    win32::Font font = GetFont(dc.Get(), FontRecord());
    if (font) SetDisplayFont(dc, std::move(font));
    // Measured from (x, y) with the right edge at 100; drawn into the
    // measured rectangle.
    RECT area{a.x, a.y, 100, a.y};
    ::DrawTextW(dc.Get(), wide.c_str(), static_cast<int>(wide.size()), &area,
                DT_CALCRECT | (a.wordWrap ? DT_WORDBREAK : DT_SINGLELINE));
    const UINT format = a.wordWrap ? DT_EXPANDTABS | DT_WORDBREAK : DT_EXPANDTABS | DT_SINGLELINE;
    Check(::DrawTextW(dc.Get(), wide.c_str(), static_cast<int>(wide.size()), &area, format) != 0,
          ScreenFailure::DrawText);
    return true;
  });
}

bool clsScreen::Refresh() {
  try {
    return ReplayHistory([this](const auto& record) {
      const auto& a = record.args;
      using Args = std::decay_t<decltype(a)>;
      if constexpr (std::is_same_v<Args, ArcArgs>) {
        return DrawArc(a.x, a.y, a.radius, a.startX, a.startY, a.startAngle, a.sweepAngle);
      } else if constexpr (std::is_same_v<Args, EllipseArgs>) {
        return DrawEllipse(a.left, a.top, a.right, a.bottom);
      } else if constexpr (std::is_same_v<Args, HalfCircleArgs>) {
        return DrawHalfCircle(a.left, a.top, a.right, a.bottom, a.radial1X, a.radial1Y, a.radial2X,
                              a.radial2Y);
      } else if constexpr (std::is_same_v<Args, LineArgs>) {
        return DrawLine(a.x1, a.y1, a.x2, a.y2);
      } else if constexpr (std::is_same_v<Args, PictureArgs>) {
        return DrawPicture(a.x, a.y, a.path, std::static_pointer_cast<IPicture>(a.picture),
                           reinterpret_cast<HBITMAP>(a.bitmap), a.width, a.height, a.stretch);
      } else if constexpr (std::is_same_v<Args, PieArgs>) {
        return DrawPie(a.left, a.top, a.right, a.bottom, a.angle, a.explicitRadials, a.radial1X, a.radial1Y,
                       a.radial2X, a.radial2Y);
      } else if constexpr (std::is_same_v<Args, PolygonArgs>) {
        return DrawPolygon(a.xs, a.ys, a.count);
      } else if constexpr (std::is_same_v<Args, PolylineArgs>) {
        return DrawPolyline(a.startX, a.startY, a.xs, a.ys, a.count);
      } else if constexpr (std::is_same_v<Args, RectangleArgs>) {
        return DrawRectangle(a.left, a.top, a.right, a.bottom, a.filled, a.outlined);
      } else {
        static_assert(std::is_same_v<Args, TextArgs>);
        return drawText(a.text, a.x, a.y, a.wordWrap);
      }
    });
  } catch (...) {
    Stop(std::current_exception());
    return false;
  }
}

// ---- Cursors ------------------------------------------------------------------

void clsScreen::MouseIcon(std::string path) {
  bool opens = false;
  if (const auto wide = WidenStrict(path)) {
    const HANDLE file = ::CreateFileW(wide->c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    opens = file != INVALID_HANDLE_VALUE;
    if (opens) ::CloseHandle(file);
  }
  ScreenModel::MouseIcon(std::move(path), opens);
}

std::int32_t clsScreen::MousePointer(HWND window) const {
  if (!window) window = desktop_;
  const HCURSOR cursor = reinterpret_cast<HCURSOR>(::GetClassLongPtrA(window, GCLP_HCURSOR));
  if (!cursor) RaiseApiError(ScreenFailure::MousePointerGetClassLong);
  return MousePointerCode([cursor](std::int32_t id) {
    return ::LoadCursorA(nullptr, MAKEINTRESOURCEA(static_cast<ULONG_PTR>(id))) == cursor;
  });
}

bool clsScreen::MousePointer(HWND window, std::int32_t code) {
  ClearLastError();
  HCURSOR loaded = nullptr;  // a file cursor not yet handed to a class
  try {
    if (!window) window = desktop_;
    HCURSOR cursor = nullptr;
    std::optional<AttachedThread> attached;
    if (code != kMouseIconCursor) {
      cursor =
          ::LoadCursorA(nullptr, MAKEINTRESOURCEA(static_cast<ULONG_PTR>(static_cast<std::uint16_t>(code))));
      if (!cursor) return false;  // not a cursor the system has
    } else {
      if (MouseIcon().empty()) return false;
      // A file cursor is loaded as an icon and is this object's own (not
      // shared), so it can be destroyed when its class lets it go.
      loaded = static_cast<HCURSOR>(
          ::LoadImageW(nullptr, Widen(MouseIcon()).c_str(), IMAGE_ICON, 0, 0, LR_LOADFROMFILE));
      if (!loaded) RaiseApiError(ScreenFailure::MousePointerLoadImage);
      attached.emplace(*this, window);
      if (!*attached) {
        ::DestroyCursor(loaded);
        return false;
      }
      cursor = loaded;
    }
    // The class may have had no cursor: only a set error tells a failure.
    ::SetLastError(ERROR_SUCCESS);
    const HCURSOR previous = reinterpret_cast<HCURSOR>(
        ::SetClassLongPtrA(window, GCLP_HCURSOR, reinterpret_cast<LONG_PTR>(cursor)));
    if (!previous && ::GetLastError() != ERROR_SUCCESS)
      RaiseApiError(ScreenFailure::MousePointerSetClassLong);
    if (loaded) {
      fileCursors_.push_back({window, loaded});
      loaded = nullptr;
    }
    // A file cursor of ours that this replaced is no longer used.
    const auto replaced = std::find_if(fileCursors_.begin(), fileCursors_.end(), [&](const FileCursor& f) {
      return f.cursor == previous && previous != cursor;
    });
    if (replaced != fileCursors_.end()) {
      ::DestroyCursor(replaced->cursor);
      fileCursors_.erase(replaced);
    }
    return true;
  } catch (...) {
    if (loaded) ::DestroyCursor(loaded);
    Stop(std::current_exception());
    return false;
  }
}

void clsScreen::ForgetFileCursors() noexcept {
  for (const FileCursor& f : fileCursors_) {
    if (::IsWindow(f.window) &&
        reinterpret_cast<HCURSOR>(::GetClassLongPtrA(f.window, GCLP_HCURSOR)) == f.cursor) {
      ::SetClassLongPtrA(f.window, GCLP_HCURSOR,
                         reinterpret_cast<LONG_PTR>(::LoadCursorA(nullptr, IDC_ARROW)));
    }
    ::DestroyCursor(f.cursor);
  }
  fileCursors_.clear();
}

bool clsScreen::AttachThread(HWND window, bool attach) const {
  if (!window) return false;
  const DWORD own = ::GetCurrentThreadId();
  if (!own) RaiseApiError(ScreenFailure::AttachThreadGetCurrentThreadId);
  const DWORD theirs = ::GetWindowThreadProcessId(window, nullptr);
  if (!theirs) RaiseApiError(ScreenFailure::AttachThreadGetWindowThreadProcessId);
  if (own == theirs) return true;
  Check(::AttachThreadInput(theirs, own, attach ? TRUE : FALSE), ScreenFailure::AttachThreadInput);
  return true;
}

// ---- Active window, object, form and control ---------------------------------

HWND clsScreen::ActiveWindow() const {
  const HWND foreground = ::GetForegroundWindow();
  if (!foreground) RaiseApiError(ScreenFailure::ActiveWindow);
  return foreground;
}

HWND clsScreen::ActiveObject() const {
  const HWND foreground = ::GetForegroundWindow();
  if (!foreground) RaiseApiError(ScreenFailure::ActiveObject);
  const AttachedThread attached(*this, foreground);
  return ::GetFocus();
}

HWND clsScreen::ActiveForm() const {
  try {
    const HWND active = ::GetActiveWindow();
    if (!active) return nullptr;
    const auto& forms = LoadedForms();
    const auto found = std::find(forms.begin(), forms.end(), active);
    return found == forms.end() ? nullptr : *found;
  } catch (...) {
    return nullptr;
  }
}

HWND clsScreen::ActiveControl() const {
  try {
    const HWND focus = ::GetFocus();
    if (!::GetActiveWindow() || !focus) return nullptr;
    const HWND form = ActiveForm();
    // The form's active control is the focused window inside it.
    return form && ::IsChild(form, focus) ? focus : nullptr;
  } catch (...) {
    return nullptr;
  }
}

Picture clsScreen::PictureFromHandle(HBITMAP bitmap, HPALETTE palette) {
  return PictureOverBitmap(bitmap, palette, true);
}

}  // namespace qm::win32
