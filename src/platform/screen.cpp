#include "platform/screen.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/ansi_text.h"
#include "platform/rounding.h"

namespace qm {

std::string_view ScreenFailureTag(ScreenFailure where) {
  switch (where) {
    case ScreenFailure::ChangeResolution:
      return "cScreen.ChangeResolution(ChangeDisplaySettings)";
    case ScreenFailure::RefreshDisplayInfoWindow:
      return ".cScreen.RefreshDisplayInfo(WindowFromDC)";
    case ScreenFailure::RefreshDisplayInfoDc:
      return ".cScreen.RefreshDisplayInfo(GetWindowDC)";
    case ScreenFailure::HdcGetDc:
      return ".cScreen.hDC(GetDC)";
    case ScreenFailure::SetCurrentXY:
      return ".cScreen.SetCurrentXY(DRAW_MoveCurrentXY)";
    case ScreenFailure::GetCurrentXY:
      return ".cScreen.GetCurrentXY(DRAW_MoveCurrentXY)";
    case ScreenFailure::SetDisplayFont:
      return ".cScreen.SetDisplayFont";
    case ScreenFailure::LetBackColorScr:
      return ".cScreen.Let_BackColor_Scr(TranslateColor)";
    case ScreenFailure::LetForeColorScr:
      return ".cScreen.Let_ForeColor_Scr(TranslateColor)";
    case ScreenFailure::LetBackColorTxt:
      return ".cScreen.Let_BackColor_Txt(TranslateColor)";
    case ScreenFailure::LetForeColorTxt:
      return ".cScreen.Let_ForeColor_Txt(TranslateColor)";
    case ScreenFailure::TranslateColor:
      return ".cScreen.TranslateColor(OleTranslateColor)";
    case ScreenFailure::GetPen:
      return ".cScreen.GetPen(CreatePen)";
    case ScreenFailure::GetBrush:
      return ".cScreen.GetBrush(CreateBrushIndirect)";
    case ScreenFailure::SetTextBackColor:
      return ".cScreen.SetColors(SetTextBackColor)";
    case ScreenFailure::SetTextForeColor:
      return ".cScreen.SetColors(SetTextForeColor)";
    case ScreenFailure::GetFont:
      return ".cScreen.GetFont";
    case ScreenFailure::GetFontCreateFont:
      return ".cScreen.GetFont(CreateFont)";
    case ScreenFailure::GetDevices:
      return ".cScreen.GetDevices";
    case ScreenFailure::AttachThreadGetCurrentThreadId:
      return ".cScreen.AttachThread(GetCurrentThreadId)";
    case ScreenFailure::AttachThreadGetWindowThreadProcessId:
      return ".cScreen.AttachThread(GetWindowThreadProcessId)";
    case ScreenFailure::AttachThreadInput:
      return ".cScreen.AttachThread(AttachThreadInput)";
    case ScreenFailure::MousePointerGetClassLong:
      return ".cScreen.MousePointer(GetClassLong)";
    case ScreenFailure::MousePointerSetClassLong:
      return ".cScreen.MousePointer(SetClassLong)";
    case ScreenFailure::MousePointerLoadImage:
      return ".cScreen.MousePointer(LoadImageSTR)";
    case ScreenFailure::ActiveWindow:
      return ".cScreen.ActiveWindow(GetForegroundWindow)";
    case ScreenFailure::ActiveObject:
      return ".cScreen.ActiveObject(GetForegroundWindow)";
    case ScreenFailure::DrawArc:
      return ".cScreen.DrawArc";
    case ScreenFailure::DrawArcCall:
      return ".cScreen.DrawArc(DRAW_Arc)";
    case ScreenFailure::DrawEllipse:
      return ".cScreen.DrawEllipse(DRAW_Ellipse)";
    case ScreenFailure::DrawHalfCircle:
      return ".cScreen.DrawHalfCircle(DRAW_HalfCircle)";
    case ScreenFailure::DrawLine:
      return ".cScreen.DrawLine(DRAW_Line)";
    case ScreenFailure::DrawPicture:
      return ".cScreen.DrawPicture";
    case ScreenFailure::DrawPictureLoad:
      return ".cScreen.DrawPicture(LoadPicture)";
    case ScreenFailure::DrawPictureCreateDc:
      return ".cScreen.DrawPicture(CreateCompatibleDC)";
    case ScreenFailure::DrawPictureBlt:
      return ".cScreen.DrawPicture(DRAW_Picture)";
    case ScreenFailure::DrawPictureStretch:
      return ".cScreen.DrawPicture(DRAW_PictureStretch)";
    case ScreenFailure::DrawPie:
      return ".cScreen.DrawPie(DRAW_Pie)";
    case ScreenFailure::DrawPolygon:
      return ".cScreen.DrawPolygon";
    case ScreenFailure::DrawPolygonCall:
      return ".cScreen.DrawPolygon(DRAW_Polygon)";
    case ScreenFailure::DrawPolyline:
      return ".cScreen.DrawPolyline";
    case ScreenFailure::DrawPolylineMove:
      return ".cScreen.DrawPolyline(DRAW_MoveCurrentXY)";
    case ScreenFailure::DrawPolylineCall:
      return ".cScreen.DrawPolyline(DRAW_Polyline)";
    case ScreenFailure::DrawRectangle:
      return ".cScreen.DrawRectangle";
    case ScreenFailure::DrawRectangleFilled:
      return ".cScreen.DrawRectangle(DRAW_RectangleFilled)";
    case ScreenFailure::DrawRectangleOutline:
      return ".cScreen.DrawRectangle(DRAW_RectangleOutline)";
    case ScreenFailure::DrawText:
      return ".cScreen.DrawText(DRAW_DrawText)";
  }
  return ".cScreen";
}

std::string ScreenErrorSource(std::string_view exeName, ScreenFailure where) {
  std::string source(exeName);
  source += ScreenFailureTag(where);
  return source;
}

std::string ExeBaseName(std::string_view modulePath) {
  const auto slash = modulePath.find_last_of("\\/:");
  std::string_view name = slash == std::string_view::npos ? modulePath : modulePath.substr(slash + 1);
  const auto dot = name.rfind('.');
  if (dot != std::string_view::npos) name = name.substr(0, dot);
  return std::string(name);
}

std::string TidySystemMessage(std::string_view raw) {
  std::string_view text = raw.substr(0, raw.find('\0'));
  if (text.ends_with("\r\n")) text.remove_suffix(2);
  return std::string(text);
}

std::int32_t BitsPerPixelCode(std::int32_t rawBitsPerPixel) {
  switch (rawBitsPerPixel) {
    case 1:
    case 2:
      return 2;
    case 4:
    case 8:
    case 16:
    case 24:
    case 32:
      return rawBitsPerPixel;
    default:
      return 0;
  }
}

std::optional<float> TwipsPerPixel(std::int32_t millimetres, float pixels) {
  if (pixels == 0) return std::nullopt;
  return static_cast<float>(kTwipsPerMillimetre * millimetres / pixels);
}

void FontNameList::Clear() {
  names_.clear();
  lowered_.clear();
}

bool FontNameList::Add(std::string name) {
  if (!lowered_.insert(LowerAnsi(name)).second) return false;
  names_.push_back(std::move(name));
  return true;
}

std::optional<ScreenSize> ResolutionOfCode(std::int32_t code) {
  switch (code) {
    case 0:
      return ScreenSize{320, 240};
    case 1:
      return ScreenSize{640, 480};
    case 2:
      return ScreenSize{800, 600};
    case 3:
      return ScreenSize{1024, 768};
    case 4:
      return ScreenSize{1152, 864};
    case 5:
      return ScreenSize{1280, 1024};
    case 6:
      return ScreenSize{1600, 1200};
    default:
      return std::nullopt;
  }
}

ResolutionError ResolutionFailure(std::int32_t result) {
  switch (result) {
    case -5:
      return {
          -5,
          "An invalid parameter was passed in. This can include an invalid flag or combination of flags."};
    case -4:
      return {-4, "An invalid set of flags was passed in."};
    case -3:
      return {-3, "Unable to write settings to the registry."};
    case -2:
      return {-2, "The graphics mode is not supported."};
    case -1:
      return {-1, "The display driver failed the specified graphics mode."};
    default:
      return {-1, "An unknown error occured while trying to change the screen resolution."};
  }
}

std::optional<Refusal> CheckDrawing(const ArcArgs& args) {
  if (args.radius < 1) return Refusal{ScreenFailure::DrawArc, -1, kInvalidRadiusText};
  return std::nullopt;
}

namespace {

// A point count the lists cannot give is refused as the language's
// run time refuses reading past a list's end.
std::optional<Refusal> CheckPoints(ScreenFailure where, std::int32_t count, std::size_t xs, std::size_t ys) {
  if (count == 0) return Refusal{where, -1, kInvalidPointCountText};
  if (count < 0 || static_cast<std::size_t>(count) > std::min(xs, ys)) {
    return Refusal{where, kErrSubscriptOutOfRange, kSubscriptOutOfRangeText};
  }
  return std::nullopt;
}

}  // namespace

std::optional<Refusal> CheckDrawing(const PolygonArgs& args) {
  return CheckPoints(ScreenFailure::DrawPolygon, args.count, args.xs.size(), args.ys.size());
}

std::optional<Refusal> CheckDrawing(const PolylineArgs& args) {
  return CheckPoints(ScreenFailure::DrawPolyline, args.count, args.xs.size(), args.ys.size());
}

std::optional<Refusal> CheckDrawing(const RectangleArgs& args) {
  if (!args.filled && !args.outlined) return Refusal{ScreenFailure::DrawRectangle, -1, kInvalidRectangleText};
  return std::nullopt;
}

std::optional<Refusal> CheckDrawing(const TextArgs& args) {
  if (args.text.empty()) return Refusal{ScreenFailure::DrawText, 0, {}};
  return std::nullopt;
}

std::optional<Refusal> CheckDrawing(const PictureArgs& args) {
  if (args.path.empty() && !args.picture && args.bitmap == 0) {
    return Refusal{ScreenFailure::DrawPicture, -1, kNoPictureText};
  }
  return std::nullopt;
}

std::optional<PieRadials> RadialsOfAngle(std::int32_t left, std::int32_t top, std::int32_t right,
                                         std::int32_t bottom, float angle) {
  const double degrees = std::isnan(angle) ? 0.0 : std::clamp(static_cast<double>(angle), 0.0, 360.0);
  if (degrees == 0.0) return std::nullopt;
  const double cx = (left + right) / 2.0;
  const double cy = (top + bottom) / 2.0;
  const double rx = (right - left) / 2.0;
  const double ry = (bottom - top) / 2.0;
  const auto at = [&](double turn) {
    // Whole quarter turns land exactly on the edge middles.
    const double rad = turn * std::numbers::pi / 180.0;
    const double c = std::fmod(turn, 90.0) == 0.0 ? std::round(std::cos(rad)) : std::cos(rad);
    const double s = std::fmod(turn, 90.0) == 0.0 ? std::round(std::sin(rad)) : std::sin(rad);
    return std::pair{static_cast<std::int32_t>(std::lround(cx + rx * c)),
                     static_cast<std::int32_t>(std::lround(cy - ry * s))};
  };
  const auto [x1, y1] = at(0.0);
  const auto [x2, y2] = at(degrees);
  return PieRadials{x1, y1, x2, y2};
}

std::int32_t MousePointerCode(const std::function<bool(std::int32_t cursorId)>& isClassCursor) {
  for (std::int32_t id : kStandardCursorIds) {
    if (isClassCursor(id)) return id;
  }
  return kMouseIconCursor;
}

bool IsMouseIconFileName(std::string_view path) {
  if (path.size() < 4) return false;
  std::string ending(path.substr(path.size() - 4));
  for (char& c : ending) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return ending == ".ICO" || ending == ".CUR" || ending == ".ANI";
}

FontNameList& SharedFontList() {
  static FontNameList list;
  return list;
}

ScreenModel::ScreenModel(std::string exeName, ScreenMessageBox messageBox)
    : exeName_(std::move(exeName)), messageBox_(std::move(messageBox)) {}

void ScreenModel::Raise(ScreenFailure where, std::int32_t number, std::string_view description) const {
  throw RuntimeError(number, ScreenErrorSource(exeName_, where), std::string(description));
}

void ScreenModel::RaiseScreenError(ScreenFailure where, std::int32_t number,
                                   std::string_view description) const {
  if (number != 0) Raise(where, number, description);
}

void ScreenModel::FailNoScreenWindow(std::int32_t apiError, std::string_view apiText) const {
  if (messageBox_) messageBox_(kNoScreenWindowText, kNoScreenWindowTitle, PromptIcon::Critical);
  Raise(ScreenFailure::RefreshDisplayInfoWindow, apiError, apiText);
}

void ScreenModel::FailNoScreenDc(std::int32_t apiError, std::string_view apiText) const {
  if (messageBox_) messageBox_(kNoScreenDcText, kNoScreenDcTitle, PromptIcon::Critical);
  Raise(ScreenFailure::RefreshDisplayInfoDc, apiError, apiText);
}

bool ScreenModel::ChangeResolution(std::int32_t code, std::int32_t depth, bool& restartNeeded, bool testOnly,
                                   const ChangeDisplay& change, const std::function<void()>& reread) {
  DisplayModeRequest request;
  request.fields = display_mode::kPelsWidth | display_mode::kPelsHeight;
  if (depth != 0) request.fields |= display_mode::kBitsPerPel;
  if (const auto size = ResolutionOfCode(code)) {
    // The screen has the size (and depth) already: the driver is left alone.
    if (static_cast<float>(size->width) == width_ && static_cast<float>(size->height) == height_ &&
        (depth == 0 || depth == BitsPerPixel())) {
      restartNeeded = false;
      return true;
    }
    request.width = size->width;
    request.height = size->height;
  }
  request.bitsPerPel = depth;
  request.flags = testOnly ? display_mode::kTest : display_mode::kUpdateRegistry | display_mode::kReset;

  const std::int32_t result = change(request);
  if (result == display_mode::kSuccessful || result == display_mode::kRestart) {
    restartNeeded = result == display_mode::kRestart;
    if (reread) reread();
    return true;
  }
  restartNeeded = false;
  const ResolutionError error = ResolutionFailure(result);
  Raise(ScreenFailure::ChangeResolution, error.number, error.description);
}

bool ScreenModel::Refused(const Refusal& refusal) {
  if (refusal.number != 0) {
    lastError_ = RuntimeError(refusal.number, ScreenErrorSource(exeName_, refusal.where),
                              std::string(refusal.description));
  }
  return false;
}

void ScreenModel::Stop(std::exception_ptr error) {
  try {
    std::rethrow_exception(error);
  } catch (const RuntimeError& e) {
    lastError_ = e;
  } catch (const std::bad_alloc&) {
    lastError_ = RuntimeError(kErrOutOfMemory, exeName_, "Out of memory");
  } catch (const std::exception& e) {
    lastError_ = RuntimeError(-1, exeName_, e.what());
  } catch (...) {
    lastError_ = RuntimeError(-1, exeName_, "Unexpected error");
  }
}

void ScreenModel::MouseIcon(std::string path, bool opensForReading) {
  if (!opensForReading) return;
  if (!IsMouseIconFileName(path)) {
    if (messageBox_) messageBox_(kInvalidMouseIconText, kInvalidMouseIconTitle, PromptIcon::Exclamation);
    return;
  }
  mouseIcon_ = std::move(path);
}

bool ScreenModel::ApplyDeviceCaps(const DeviceCaps& caps) {
  rawBitsPerPixel_ = caps.bitsPixel;
  width_ = static_cast<float>(caps.horzRes);
  height_ = static_cast<float>(caps.vertRes);
  const auto x = TwipsPerPixel(caps.horzSizeMm, width_);
  const auto y = TwipsPerPixel(caps.vertSizeMm, height_);
  if (x) twipsPerPixelX_ = *x;
  if (y) twipsPerPixelY_ = *y;
  return x && y;
}

namespace {

template <typename T>
const T& Subscript(const std::vector<T>& list, std::int32_t index, const std::string& exeName) {
  if (index < 0 || static_cast<std::size_t>(index) >= list.size()) {
    throw RuntimeError(kErrSubscriptOutOfRange, exeName, std::string(kSubscriptOutOfRangeText));
  }
  return list[static_cast<std::size_t>(index)];
}

}  // namespace

const std::string& ScreenModel::DisplayDevice_Name(std::int32_t index) const {
  return Subscript(devices_, index, exeName_).name;
}

const std::string& ScreenModel::DisplayDevice_Description(std::int32_t index) const {
  return Subscript(devices_, index, exeName_).description;
}

std::int32_t ScreenModel::FontsCount() {
  return static_cast<std::int32_t>(SharedFontList().Names().size());
}

const std::string& ScreenModel::Fonts(std::int32_t index) const {
  return Subscript(SharedFontList().Names(), index, exeName_);
}

OleColor ScreenModel::Checked(OleColor color, ScreenFailure let) const {
  if (!IsTranslatableOleColor(color)) Raise(let, -1, kInvalidColorText);
  return color;
}

FontSpec ScreenModel::Font() const {
  return FontSpec{font_.name,      static_cast<double>(font_.size),
                  font_.bold,      font_.italic,
                  font_.underline, font_.strikethrough};
}

void ScreenModel::Font(const FontSpec& font) {
  font_ = ScreenFont{font.name,   RoundHalfEven(font.size), font.bold,
                     font.italic, font.underline,           font.strikethrough};
}

}  // namespace qm
