// The screen service's bookkeeping, free of any window system: the cached
// display metrics, the display devices, the shared installed-font list,
// the four colours with their validation, pen, brush and font settings, the
// drawing history, and the sources of the errors it raises. clsScreen
// (screen_win32.h) adds the desktop's device context and GDI objects.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/font_spec.h"
#include "platform/ole_color.h"
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

// Shows a box with the critical icon: text, then title.
using ScreenMessageBox = std::function<void(std::string_view text, std::string_view title)>;

class ScreenModel {
 public:
  explicit ScreenModel(std::string exeName, ScreenMessageBox messageBox = {});

  const std::string& ExeName() const { return exeName_; }

  // Raises the error with the step's source. RaiseScreenError does nothing
  // for number 0.
  [[noreturn]] void Raise(ScreenFailure where, std::int32_t number, std::string_view description) const;
  void RaiseScreenError(ScreenFailure where, std::int32_t number, std::string_view description) const;
  // The desktop window or its DC could not be had: shows the box, then
  // raises the platform's error with the step's source.
  [[noreturn]] void FailNoScreenWindow(std::int32_t apiError, std::string_view apiText) const;
  [[noreturn]] void FailNoScreenDc(std::int32_t apiError, std::string_view apiText) const;

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

  bool enableRefresh_ = false;
  bool replaying_ = false;
  ScreenHistory history_;
};

}  // namespace qm
