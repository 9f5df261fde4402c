#include "platform/screen_win32.h"

#include <cstring>
#include <new>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/application_win32.h"
#include "platform/wide_text_win32.h"

namespace qm::win32 {

static_assert(sizeof(DISPLAY_DEVICEA) == 424, "the display-device record is 424 bytes");

namespace {

constexpr DWORD kSystemMessageChars = 260;

template <std::size_t N>
std::string TextOf(const char (&field)[N]) {
  return std::string(field, strnlen(field, N));
}

std::string ModuleExeName() {
  return ExecutableName();
}

// The service's own boxes carry their own titles, so they do not go
// through the program's prompts (which title every box "Quillmere").
void ShowScreenBox(std::string_view text, std::string_view title, PromptIcon icon) {
  const UINT iconFlag = icon == PromptIcon::Critical      ? MB_ICONSTOP
                        : icon == PromptIcon::Exclamation ? MB_ICONEXCLAMATION
                        : icon == PromptIcon::Question    ? MB_ICONQUESTION
                                                          : MB_ICONINFORMATION;
  ::MessageBoxW(nullptr, Widen(text).c_str(), Widen(title).c_str(), MB_OK | iconFlag);
}

}  // namespace

Dpi ScreenLogicalDpi() {
  const WindowDC screen(nullptr);
  if (!screen) return {};
  return {UsableDpi(::GetDeviceCaps(screen.Get(), LOGPIXELSX)),
          UsableDpi(::GetDeviceCaps(screen.Get(), LOGPIXELSY))};
}

std::string GetApiErrorText(DWORD code) {
  char buffer[kSystemMessageChars] = {};
  const DWORD length = ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        code, 0, buffer, kSystemMessageChars, nullptr);
  return TidySystemMessage(std::string_view(buffer, length < kSystemMessageChars ? length : 0));
}

ScreenDc::~ScreenDc() {
  if (!dc_) return;
  if (oldFont_) ::SelectObject(dc_, oldFont_);
  if (oldPen_) ::SelectObject(dc_, oldPen_);
  if (oldBrush_) ::SelectObject(dc_, oldBrush_);
  ::ReleaseDC(window_, dc_);
}

template <typename H>
bool ScreenDc::SelectOwned(GdiObject<H>& slot, HGDIOBJ& original, GdiObject<H> object) {
  if (!dc_ || !object) return false;
  HGDIOBJ previous = ::SelectObject(dc_, object.Get());
  if (!previous || previous == HGDI_ERROR) return false;
  if (!original) original = previous;
  slot = std::move(object);  // frees the one selected before, which is out of the DC now
  return true;
}

clsScreen::clsScreen() : clsScreen(ShowScreenBox) {}

clsScreen::clsScreen(ScreenMessageBox messageBox) : ScreenModel(ModuleExeName(), std::move(messageBox)) {
  // A DC that could not be had is asked for again by RefreshDisplayInfo,
  // which tells the user.
  ScreenDc dc(::GetDC(nullptr), ::GetDesktopWindow());
  RefreshDisplayInfo(dc.Get());
  SetColors(dc);
  win32::Font font = GetFont(dc.Get(), FontRecord());
  if (font) SetDisplayFont(dc, std::move(font));
}

clsScreen::~clsScreen() {
  ForgetFileCursors();
  try {
    Clear(true);
    ClearHistory();
  } catch (...) {
  }
}

void clsScreen::RaiseApiError(ScreenFailure where) const {
  const DWORD code = ::GetLastError();
  Raise(where, static_cast<std::int32_t>(code), GetApiErrorText(code));
}

bool clsScreen::RefreshDisplayInfo(HDC dc) {
  desktop_ = ::GetDesktopWindow();
  if (!desktop_) {
    const DWORD code = ::GetLastError();
    FailNoScreenWindow(static_cast<std::int32_t>(code), GetApiErrorText(code));
  }
  std::optional<ScreenDc> own;
  if (!dc) {
    dc = ::GetDC(nullptr);
    if (!dc) {
      const DWORD code = ::GetLastError();
      FailNoScreenDc(static_cast<std::int32_t>(code), GetApiErrorText(code));
    }
    own.emplace(dc, desktop_);
  }
  GetDevices();
  ReadDeviceCaps(dc);
  EnumerateFonts(dc);
  return true;
}

bool clsScreen::ReadDeviceCaps(HDC dc) {
  if (!dc) return false;
  return ApplyDeviceCaps(DeviceCaps{::GetDeviceCaps(dc, BITSPIXEL), ::GetDeviceCaps(dc, HORZRES),
                                    ::GetDeviceCaps(dc, VERTRES), ::GetDeviceCaps(dc, HORZSIZE),
                                    ::GetDeviceCaps(dc, VERTSIZE)});
}

void clsScreen::GetDevices() {
  try {
    std::vector<DisplayDevice> devices;
    DISPLAY_DEVICEA device;
    for (DWORD index = 0;; ++index) {
      std::memset(&device, 0, sizeof device);
      device.cb = sizeof device;
      if (!::EnumDisplayDevicesA(nullptr, index, &device, 0)) break;
      devices.push_back({TextOf(device.DeviceName), TextOf(device.DeviceString)});
    }
    SetDisplayDevices(std::move(devices));
  } catch (const std::bad_alloc&) {
    Raise(ScreenFailure::GetDevices, kErrOutOfMemory, "Out of memory");
  }
}

bool clsScreen::EnumerateFonts(HDC dc) {
  if (!dc) Raise(ScreenFailure::SetDisplayFont, -1, kInvalidDcText);
  FontNameList& list = SharedFontList();
  list.Clear();
  LOGFONTA all{};  // every face of the ANSI character set
  return ::EnumFontFamiliesExA(dc, &all, EnumFontFamExProc, reinterpret_cast<LPARAM>(&list), 0) != 0;
}

int CALLBACK EnumFontFamExProc(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM list) {
  try {
    reinterpret_cast<FontNameList*>(list)->Add(TextOf(font->lfFaceName));
    return 1;
  } catch (...) {
    return 0;
  }
}

HDC clsScreen::hDC() const {
  HDC dc = ::GetDC(nullptr);
  if (!dc) RaiseApiError(ScreenFailure::HdcGetDc);
  return dc;
}

bool clsScreen::Clear(bool forgetHistory) {
  try {
    if (!desktop_) return false;
    // A null window names the desktop window; Wine carries only this form
    // of it on to the top-level windows (the desktop's own handle stops at
    // the desktop there). The repaint is done here and now (RDW_UPDATENOW)
    // instead of by running the waiting window events: those are the
    // program's own (a tray click, a timer's tick, a posted command), and
    // at shutdown they would run against windows half torn down.
    const bool redrawn = ::RedrawWindow(nullptr, nullptr, nullptr,
                                        RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW) != 0;
    if (redrawn && forgetHistory) ClearHistory();
    return redrawn;
  } catch (...) {
    return false;
  }
}

std::int32_t clsScreen::TranslateColor(OleColor color) const {
  const auto rgb =
      TranslateOleColor(color, [](int index) { return static_cast<std::uint32_t>(::GetSysColor(index)); });
  return rgb ? static_cast<std::int32_t>(*rgb) : -1;
}

COLORREF clsScreen::ColorRef(OleColor color) const {
  const std::int32_t rgb = TranslateColor(color);
  return rgb == -1 ? static_cast<COLORREF>(color) : static_cast<COLORREF>(rgb);
}

Pen clsScreen::GetPen(OleColor color) const {
  Pen pen(::CreatePen(PenStyle(), PenWidth(), ColorRef(color)));
  if (!pen) RaiseApiError(ScreenFailure::GetPen);
  return pen;
}

Brush clsScreen::GetBrush(OleColor color) const {
  const LOGBRUSH style{static_cast<UINT>(BrushSyle()), ColorRef(color), static_cast<ULONG_PTR>(BrushHatch())};
  Brush brush(::CreateBrushIndirect(&style));
  if (!brush) RaiseApiError(ScreenFailure::GetBrush);
  return brush;
}

bool clsScreen::SetColors(ScreenDc& dc) const {
  if (!dc.Get()) Raise(ScreenFailure::SetDisplayFont, -1, kInvalidDcText);
  if (::SetBkColor(dc.Get(), ColorRef(BackColor_Txt())) == CLR_INVALID) {
    RaiseApiError(ScreenFailure::SetTextBackColor);
  }
  if (::SetTextColor(dc.Get(), ColorRef(ForeColor_Txt())) == CLR_INVALID) {
    RaiseApiError(ScreenFailure::SetTextForeColor);
  }
  dc.Select(GetBrush(BackColor_Scr()));
  dc.Select(GetPen(ForeColor_Scr()));
  return true;
}

win32::Font clsScreen::GetFont(HDC dc, const ScreenFont& font) const {
  if (font.name.empty()) Raise(ScreenFailure::GetFont, -1, kInvalidFontNameText);
  if (font.size == 0) Raise(ScreenFailure::GetFont, -1, kInvalidFontSizeText);
  if (!dc) Raise(ScreenFailure::GetFont, -1, kInvalidDcText);
  const int height = ::MulDiv(font.size, ::GetDeviceCaps(dc, LOGPIXELSY), 72);
  win32::Font made(::CreateFontA(-height, 0, 0, 0, font.Weight(), font.italic, font.underline,
                                 font.strikethrough, DEFAULT_CHARSET, 0, 0, 0, 0, font.name.c_str()));
  if (!made) RaiseApiError(ScreenFailure::GetFontCreateFont);
  return made;
}

bool clsScreen::SetDisplayFont(ScreenDc& dc, win32::Font font) const {
  if (!dc.Get()) Raise(ScreenFailure::SetDisplayFont, -1, kInvalidDcText);
  if (!font) Raise(ScreenFailure::SetDisplayFont, -1, kInvalidFontHandleText);
  return dc.Select(std::move(font));
}

}  // namespace qm::win32
