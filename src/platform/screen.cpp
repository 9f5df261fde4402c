#include "platform/screen.h"

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
  if (messageBox_) messageBox_(kNoScreenWindowText, kNoScreenWindowTitle);
  Raise(ScreenFailure::RefreshDisplayInfoWindow, apiError, apiText);
}

void ScreenModel::FailNoScreenDc(std::int32_t apiError, std::string_view apiText) const {
  if (messageBox_) messageBox_(kNoScreenDcText, kNoScreenDcTitle);
  Raise(ScreenFailure::RefreshDisplayInfoDc, apiError, apiText);
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
                     font.italic, font.underline,         font.strikethrough};
}

}  // namespace qm
