// The screen service's bookkeeping, free of any window system: the cached
// display metrics, the display devices, the shared installed-font list,
// the four colours with their validation, pen, brush and font settings, the
// drawing history, and the sources of the errors it raises. clsScreen
// (screen_win32.h) adds the desktop's device context and GDI objects.
#pragma once

#include <array>
#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/font_spec.h"
#include "platform/ole_color.h"
#include "platform/prompts.h"
#include "platform/screen_error.h"
#include "platform/screen_history.h"

namespace qm {

// Every step of the screen service that raises an error. Its source is the
// executable's name followed by the step's tag (ScreenFailureTag).
enum class ScreenFailure {
  ChangeResolution,
  RefreshDisplayInfoWindow,
  RefreshDisplayInfoDc,
  HdcGetDc,
  SetCurrentXY,
  GetCurrentXY,
  SetDisplayFont,  // also every "Invalid DC Specified" outside GetFont
  LetBackColorScr,
  LetForeColorScr,
  LetBackColorTxt,
  LetForeColorTxt,
  TranslateColor,
  GetPen,
  GetBrush,
  SetTextBackColor,
  SetTextForeColor,
  GetFont,
  GetFontCreateFont,
  GetDevices,
  AttachThreadGetCurrentThreadId,
  AttachThreadGetWindowThreadProcessId,
  AttachThreadInput,
  MousePointerGetClassLong,
  MousePointerSetClassLong,
  MousePointerLoadImage,
  ActiveWindow,
  ActiveObject,
  DrawArc,
  DrawArcCall,
  DrawEllipse,
  DrawHalfCircle,
  DrawLine,
  DrawPicture,
  DrawPictureLoad,
  DrawPictureCreateDc,
  DrawPictureBlt,
  DrawPictureStretch,
  DrawPie,
  DrawPolygon,
  DrawPolygonCall,
  DrawPolyline,
  DrawPolylineMove,
  DrawPolylineCall,
  DrawRectangle,
  DrawRectangleFilled,
  DrawRectangleOutline,
  DrawText,
};

std::string_view ScreenFailureTag(ScreenFailure where);
// "quillmere" + ".cScreen.GetFont"; a resolution change has no dot between.
std::string ScreenErrorSource(std::string_view exeName, ScreenFailure where);

// The fixed descriptions of the checks that raise number -1.
inline constexpr std::string_view kInvalidDcText = "Invalid DC Specified";
inline constexpr std::string_view kInvalidFontHandleText = "Invalid Font Handle Specified";
inline constexpr std::string_view kInvalidColorText = "Invalid Color Specified";
inline constexpr std::string_view kInvalidFontNameText = "Invalid Font Name Specified";
inline constexpr std::string_view kInvalidFontSizeText = "Invalid Font Size Specified";
inline constexpr std::string_view kSubscriptOutOfRangeText = "Subscript out of range";

inline constexpr std::string_view kInvalidRadiusText = "Invalid Radius Specified";
inline constexpr std::string_view kInvalidPointCountText = "Invalid POINT Count Specified";
inline constexpr std::string_view kInvalidRectangleText = "Invalid Parameters Specified";
inline constexpr std::string_view kNoPictureText = "No picture specified to draw.";
inline constexpr std::string_view kPictureNotFoundText = "Specified picture could not be found.";
inline constexpr std::string_view kInvalidPictureText = "Invalid picture variable specified.";

// The two boxes shown when the desktop cannot be reached (critical icon).
inline constexpr std::string_view kNoScreenWindowText =
    "Could not get the handle to the screen (hWnd).  This information is critical and this module can not "
    "function propertly without it.";
inline constexpr std::string_view kNoScreenWindowTitle = "  Could Not Get Screen hWnd";
inline constexpr std::string_view kNoScreenDcText =
    "Could not get the handle to the screen's Device Context (DC).  This information is critical and this "
    "module can not function propertly without it.";
inline constexpr std::string_view kNoScreenDcTitle = "  Could Not Get Screen hDC";

// The executable's name without folder and extension, from its full path
// ("C:\Program Files\Quillmere\quillmere.exe" -> "quillmere").
std::string ExeBaseName(std::string_view modulePath);

// A system message as the error descriptions carry it: cut at the first
// NUL, with one trailing CR LF removed.
std::string TidySystemMessage(std::string_view raw);

// The colour depth code of a raw bits-per-pixel value: 1 and 2 give 2;
// 4, 8, 16, 24 and 32 give themselves; anything else gives 0.
std::int32_t BitsPerPixelCode(std::int32_t rawBitsPerPixel);

// Twips per pixel from the screen's physical size: 56.7 twips a millimetre
// times the millimetres, over the pixels. Nothing for a size of 0 pixels.
inline constexpr double kTwipsPerMillimetre = 56.7;
std::optional<float> TwipsPerPixel(std::int32_t millimetres, float pixels);

// Colour validity and translation are ole_color.h's IsTranslatableOleColor
// and TranslateOleColor.
using SysColorLookup = std::function<std::uint32_t(int index)>;

// The font the service draws text with.
struct ScreenFont {
  std::string name = "Arial";
  std::int32_t size = 10;  // points
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikethrough = false;

  std::int32_t Weight() const { return bold ? 700 : 400; }
  friend bool operator==(const ScreenFont&, const ScreenFont&) = default;
};

// What the screen's device reports (GetDeviceCaps).
struct DeviceCaps {
  std::int32_t bitsPixel = 0;
  std::int32_t horzRes = 0;     // pixels
  std::int32_t vertRes = 0;     // pixels
  std::int32_t horzSizeMm = 0;  // millimetres
  std::int32_t vertSizeMm = 0;  // millimetres
};

struct DisplayDevice {
  std::string name;
  std::string description;
};

// Face names of the installed fonts. A name is listed once, however often
// the enumeration reports it (names match without regard to case).
class FontNameList {
 public:
  void Clear();
  // False when the name is listed already.
  bool Add(std::string name);
  const std::vector<std::string>& Names() const { return names_; }

 private:
  std::vector<std::string> names_;
  std::unordered_set<std::string> lowered_;
};

// The one list shared by every screen object.
FontNameList& SharedFontList();

// Shows a box with OK: text, title, icon. The screen service titles its
// boxes itself (not with the application's title).
using ScreenMessageBox = std::function<void(std::string_view text, std::string_view title, PromptIcon icon)>;

// ---- Changing the display resolution -----------------------------------

// What is asked of the display driver (the Win32 half copies it into a
// DEVMODEA and calls ChangeDisplaySettingsA with the flags).
struct DisplayModeRequest {
  std::uint32_t fields = 0;  // DM_PELSWIDTH | DM_PELSHEIGHT [| DM_BITSPERPEL]
  std::int32_t width = 0;    // pixels; 0 for a code outside the table
  std::int32_t height = 0;
  std::int32_t bitsPerPel = 0;  // 0: the depth is kept
  std::uint32_t flags = 0;      // CDS_UPDATEREGISTRY | CDS_RESET, or CDS_TEST
  friend bool operator==(const DisplayModeRequest&, const DisplayModeRequest&) = default;
};

namespace display_mode {
inline constexpr std::uint16_t kDevModeSize = 148;  // the ANSI record without the panning fields
inline constexpr std::uint32_t kBitsPerPel = 0x00040000;
inline constexpr std::uint32_t kPelsWidth = 0x00080000;
inline constexpr std::uint32_t kPelsHeight = 0x00100000;
inline constexpr std::uint32_t kUpdateRegistry = 0x00000001;
inline constexpr std::uint32_t kTest = 0x00000002;
inline constexpr std::uint32_t kReset = 0x40000000;
inline constexpr std::int32_t kSuccessful = 0;
inline constexpr std::int32_t kRestart = 1;
}  // namespace display_mode

struct ScreenSize {
  std::int32_t width = 0, height = 0;
  friend bool operator==(const ScreenSize&, const ScreenSize&) = default;
};

// The size of a resolution code 0 to 6 (320 x 240 up to 1600 x 1200);
// nothing for any other code.
std::optional<ScreenSize> ResolutionOfCode(std::int32_t code);

// The error a refused change raises: the driver's result and its text for
// -5 to -1, number -1 and the unknown-error text for anything else.
struct ResolutionError {
  std::int32_t number;
  std::string_view description;
};
ResolutionError ResolutionFailure(std::int32_t result);

// Calls the display driver with the request and gives its result
// (ChangeDisplaySettingsA).
using ChangeDisplay = std::function<std::int32_t(const DisplayModeRequest&)>;

// ---- Drawing --------------------------------------------------------------

// Why a drawing member refuses its arguments before drawing anything: the
// step, the number and the text it raises. Number 0 refuses silently (the
// empty text).
struct Refusal {
  ScreenFailure where;
  std::int32_t number;
  std::string_view description;
};
std::optional<Refusal> CheckDrawing(const ArcArgs& args);
std::optional<Refusal> CheckDrawing(const PolygonArgs& args);
std::optional<Refusal> CheckDrawing(const PolylineArgs& args);
std::optional<Refusal> CheckDrawing(const RectangleArgs& args);
std::optional<Refusal> CheckDrawing(const TextArgs& args);
std::optional<Refusal> CheckDrawing(const PictureArgs& args);
template <typename Args>
std::optional<Refusal> CheckDrawing(const Args&) {
  return std::nullopt;
}

// The two radial points of a pie slice given by its angle. The angle is
// clamped to 0...360 degrees and counted counter-clockwise (the screen's
// arc direction) from three o'clock: the first radial is the middle of the
// bounding rectangle's right edge, and the second is where the angle's ray
// meets the ellipse inscribed in the rectangle, so that each quarter turn
// lands on the next edge middle (90: top, 180: left, 270: bottom, 360: the
// right edge again, the whole ellipse). Nothing for a slice of 0 degrees,
// which has nothing to fill.
struct PieRadials {
  std::int32_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  friend bool operator==(const PieRadials&, const PieRadials&) = default;
};
std::optional<PieRadials> RadialsOfAngle(std::int32_t left, std::int32_t top, std::int32_t right,
                                         std::int32_t bottom, float angle);

// ---- Cursors --------------------------------------------------------------

// The standard cursors MousePointer knows, in the order it tries them:
// app-starting, arrow, cross, help, I-beam, icon, no, size, size-all,
// size NE-SW, size N-S, size NW-SE, size W-E, up-arrow, wait.
inline constexpr std::array<std::int32_t, 15> kStandardCursorIds = {
    32650, 32512, 32515, 32651, 32513, 32641, 32648, 32640, 32646, 32643, 32645, 32642, 32644, 32516, 32514};
// The code of the cursor loaded from the MouseIcon file.
inline constexpr std::int32_t kMouseIconCursor = 1;

// The code of a class cursor: the first standard cursor it is, tried in the
// order above, or kMouseIconCursor when it is none of them.
std::int32_t MousePointerCode(const std::function<bool(std::int32_t cursorId)>& isClassCursor);

// A cursor file's name ends in ".ico", ".cur" or ".ani", in any case.
bool IsMouseIconFileName(std::string_view path);
inline constexpr std::string_view kInvalidMouseIconText =
    "Invalid mouse icon file.  File must be an .ICO, .CUR, or .ANI file.";
inline constexpr std::string_view kInvalidMouseIconTitle = "  Invalid File Type";

class ScreenModel {
 public:
  explicit ScreenModel(std::string exeName, ScreenMessageBox messageBox = {});

  const std::string& ExeName() const { return exeName_; }

  // The error the last contained member stopped (drawing, Refresh, Clear,
  // the MousePointer let), or nothing when it raised none. Each contained
  // member starts by forgetting the one before.
  const std::optional<RuntimeError>& LastError() const { return lastError_; }
  void ClearLastError() { lastError_.reset(); }

  // Raises the error with the step's source. RaiseScreenError does nothing
  // for number 0.
  [[noreturn]] void Raise(ScreenFailure where, std::int32_t number, std::string_view description) const;
  void RaiseScreenError(ScreenFailure where, std::int32_t number, std::string_view description) const;
  // The desktop window or its DC could not be had: shows the box, then
  // raises the platform's error with the step's source.
  [[noreturn]] void FailNoScreenWindow(std::int32_t apiError, std::string_view apiText) const;
  [[noreturn]] void FailNoScreenDc(std::int32_t apiError, std::string_view apiText) const;

  // Changes the display to the size of the code (and to the depth, when
  // not 0). When the screen has that size and depth already, nothing is
  // asked of the driver and the result is true. Otherwise change runs with
  // the request: a success or a restart-needed result reads the device
  // again through reread and gives true (restartNeeded says which); any
  // other result raises with the ChangeResolution source (restartNeeded
  // false).
  bool ChangeResolution(std::int32_t code, std::int32_t depth, bool& restartNeeded, bool testOnly,
                        const ChangeDisplay& change, const std::function<void()>& reread);

  // Display information, as last read from the device.
  // False when a size of 0 pixels left a twips ratio unworked.
  bool ApplyDeviceCaps(const DeviceCaps& caps);
  std::int32_t BitsPerPixel() const { return BitsPerPixelCode(rawBitsPerPixel_); }
  float Width() const { return width_; }
  float Height() const { return height_; }
  float TwipsPerPixelX() const { return twipsPerPixelX_; }
  float TwipsPerPixelY() const { return twipsPerPixelY_; }

  void SetDisplayDevices(std::vector<DisplayDevice> devices) { devices_ = std::move(devices); }
  std::int32_t DisplayDevice_Count() const { return static_cast<std::int32_t>(devices_.size()); }
  // A 0-based index outside the list raises "Subscript out of range".
  const std::string& DisplayDevice_Name(std::int32_t index) const;
  const std::string& DisplayDevice_Description(std::int32_t index) const;

  static std::int32_t FontsCount();
  const std::string& Fonts(std::int32_t index) const;

  // The four colours. Setting one that does not translate raises -1
  // "Invalid Color Specified" and keeps the old one; a valid one is kept
  // as given, not translated.
  OleColor BackColor_Scr() const { return colors_.backColorScr; }
  OleColor ForeColor_Scr() const { return colors_.foreColorScr; }
  OleColor BackColor_Txt() const { return colors_.backColorTxt; }
  OleColor ForeColor_Txt() const { return colors_.foreColorTxt; }
  void BackColor_Scr(OleColor color) {
    colors_.backColorScr = Checked(color, ScreenFailure::LetBackColorScr);
  }
  void ForeColor_Scr(OleColor color) {
    colors_.foreColorScr = Checked(color, ScreenFailure::LetForeColorScr);
  }
  void BackColor_Txt(OleColor color) {
    colors_.backColorTxt = Checked(color, ScreenFailure::LetBackColorTxt);
  }
  void ForeColor_Txt(OleColor color) {
    colors_.foreColorTxt = Checked(color, ScreenFailure::LetForeColorTxt);
  }
  const ScreenColors& Colors() const { return colors_; }

  // Pen and brush settings, stored without checks.
  std::int32_t BrushSyle() const { return brushStyle_; }
  void BrushSyle(std::int32_t style) { brushStyle_ = style; }
  std::int32_t BrushHatch() const { return brushHatch_; }
  void BrushHatch(std::int32_t hatch) { brushHatch_ = hatch; }
  std::int32_t PenStyle() const { return penStyle_; }
  void PenStyle(std::int32_t style) { penStyle_ = style; }
  std::int32_t PenWidth() const { return penWidth_; }
  void PenWidth(std::int32_t width) { penWidth_ = width; }

  // The text font. Setting it rounds the size to whole points (halves to
  // the even number); it is used from the next text drawn.
  FontSpec Font() const;
  void Font(const FontSpec& font);
  const ScreenFont& FontRecord() const { return font_; }

  // While on, every drawing call is recorded with the colours of its time.
  bool EnableRefresh() const { return enableRefresh_; }
  void EnableRefresh(bool enable) { enableRefresh_ = enable; }
  const ScreenHistory& History() const { return history_; }
  void ClearHistory() { history_.Clear(); }

  // Runs one drawing member, contained. Arguments that CheckDrawing refuses
  // are neither drawn nor recorded. Otherwise paint(args) draws, raising
  // the member's error when the platform call fails; the call is recorded
  // (when recording) whether it drew or not, and the result says whether
  // it drew.
  template <typename Args, typename Paint>
  bool Draw(Args args, Paint&& paint) {
    ClearLastError();
    if (const auto refusal = CheckDrawing(args)) return Refused(*refusal);
    bool drawn = false;
    try {
      drawn = static_cast<bool>(paint(static_cast<const Args&>(args)));
    } catch (...) {
      Stop(std::current_exception());
    }
    Remember(std::move(args));
    return drawn;
  }
  // Keeps the refusal's error as the last one (none for number 0); false.
  bool Refused(const Refusal& refusal);
  // Keeps a raised error as the last one; anything else than the service's
  // own error is kept as an unexpected one.
  void Stop(std::exception_ptr error);

  // Records one drawing call, when EnableRefresh is on and no replay runs.
  template <typename Args>
  void Remember(Args args) {
    if (enableRefresh_ && !replaying_) history_.Add(std::move(args), colors_);
  }

  // Draws the history again: draw(record) runs for each record in the
  // history's order with the record's colours as the current ones, and
  // records nothing meanwhile; the first false ends the replay. The
  // colours of before are put back. draw must not clear the history.
  template <typename Drawer>
  bool ReplayHistory(Drawer&& draw) {
    ReplayScope scope(*this);
    return history_.ForEachRecord([&](const auto& record) {
      colors_ = record.colors;
      return static_cast<bool>(draw(record));
    });
  }
  bool Replaying() const { return replaying_; }

  // The cursor file that MousePointer 1 loads. A path is taken only when
  // the file could be opened for reading (else nothing is said) and its
  // name ends in .ico, .cur or .ani (else the user is told, with the
  // exclamation icon, and the old path stays).
  const std::string& MouseIcon() const { return mouseIcon_; }
  void MouseIcon(std::string path, bool opensForReading);

 private:
  class ReplayScope {
   public:
    explicit ReplayScope(ScreenModel& model) : model_(model), saved_(model.colors_) {
      model_.replaying_ = true;
    }
    ~ReplayScope() {
      model_.replaying_ = false;
      model_.colors_ = saved_;
    }
    ReplayScope(const ReplayScope&) = delete;
    ReplayScope& operator=(const ReplayScope&) = delete;

   private:
    ScreenModel& model_;
    ScreenColors saved_;
  };

  OleColor Checked(OleColor color, ScreenFailure let) const;

  std::string exeName_;
  ScreenMessageBox messageBox_;

  std::int32_t rawBitsPerPixel_ = 0;
  float width_ = 0;
  float height_ = 0;
  float twipsPerPixelX_ = 0;
  float twipsPerPixelY_ = 0;
  std::vector<DisplayDevice> devices_;

  ScreenColors colors_;
  std::int32_t brushStyle_ = 0;  // solid
  std::int32_t brushHatch_ = 2;
  std::int32_t penStyle_ = 0;  // solid
  std::int32_t penWidth_ = 1;
  ScreenFont font_;

  std::string mouseIcon_;
  std::optional<RuntimeError> lastError_;

  bool enableRefresh_ = false;
  bool replaying_ = false;
  ScreenHistory history_;
};

}  // namespace qm
