#include "controls/is_button.h"

#include <algorithm>
#include <cctype>

#include "platform/rounding.h"

namespace qm {
namespace {

namespace cf = caption_flags;

// System colour indexes, and their OLE colour codes.
constexpr int kSysButtonFace = 15;
constexpr int kSysHighlight = 13;
constexpr int kSysButtonText = 18;
// The tooltip's colours: its text is the platform's colour 23 and its
// background colour 24.
constexpr int kSysInfoText = 23;
constexpr int kSysInfoBack = 24;
constexpr int kSysShadow = 16;
constexpr int kSysWindow = 5;
constexpr int kSysHilight3d = 20;
constexpr int kSysDarkShadow = 21;
constexpr int kSysLight3d = 22;
constexpr OleColor SysCode(int index) {
  return SystemColorCode(index);
}
constexpr OleColor kGrayText = 0x80000011;

enum Align { kAlignCenter = 0, kAlignLeft = 1, kAlignRight = 2, kAlignTop = 3, kAlignBottom = 4 };

}  // namespace

AccessKeyCaption ParseAccessKey(std::string_view caption) {
  AccessKeyCaption out;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] != '&' || i + 1 == caption.size()) {
      out.text += caption[i];
      continue;
    }
    ++i;  // the character after "&" is shown; "&&" shows one "&"
    if (caption[i] != '&' && out.underlined < 0) {
      out.underlined = static_cast<int>(out.text.size());
      out.key = static_cast<char>(std::toupper(static_cast<unsigned char>(caption[i])));
    }
    out.text += caption[i];
  }
  return out;
}

int StyleMargin(int style) {
  return style == 10 ? kStyle10Margin : kDefaultMargin;
}

ButtonRegion RegionForStyle(int style, int w, int h, bool roundedByTheme) {
  ButtonRegion r;
  switch (style) {
    case 5:
    case 7:
      r.kind = ButtonRegion::Kind::Polygon;
      r.points = {{0, 1}, {1, 0}, {w - 1, 0}, {w, 1}, {w, h - 2}, {w - 2, h}, {2, h}, {0, h - 2}};
      break;
    case 8:
    case 9:
      r.kind = ButtonRegion::Kind::Polygon;
      r.points = {{0, 2}, {2, 0}, {w - 3, 0}, {w, 3}, {w, h - 3}, {w - 3, h}, {4, h}, {0, h - 4}};
      break;
    case 10:
      r.kind = ButtonRegion::Kind::RoundRect;
      r.right = w + 1;
      r.bottom = h + 1;
      r.ellipse = kGlossCornerEllipse;
      break;
    default:
      r.kind = style == 6 && roundedByTheme ? ButtonRegion::Kind::Theme : ButtonRegion::Kind::Rectangle;
      r.right = w;
      r.bottom = h;
      break;
  }
  return r;
}

unsigned CaptionFlags(int captionAlign, bool rightToLeft) {
  unsigned flags = 0;
  switch (captionAlign) {
    case kAlignLeft:
      flags = cf::kVCenter | cf::kWordBreak;
      break;  // 20
    case kAlignRight:
      flags = cf::kRight | cf::kVCenter | cf::kWordBreak;
      break;  // 22
    case kAlignTop:
      flags = cf::kCenter | cf::kWordBreak;
      break;  // 17
    case kAlignBottom:
      flags = cf::kCenter | cf::kBottom | cf::kWordBreak;
      break;  // 25
    default:
      flags = cf::kCenter | cf::kVCenter | cf::kWordBreak;
      break;  // 21
  }
  return rightToLeft ? flags | cf::kRtlReading : flags;
}

// The measured caption keeps its size. Centred, it lies in the middle of
// the button both ways. Left and right: centred from top to bottom, the
// margin away from its side (and past an icon on that side). Top and
// bottom: across the measured width, the margin away from its edge (and
// past an icon there).
ButtonRect CaptionRect(int align, int w, int h, const ButtonRect& m, int margin, int iconSize, bool hasIcon,
                       int iconAlign) {
  const int mw = m.Width();
  const int mh = m.Height();
  const int beside = hasIcon && iconAlign == align ? iconSize + margin : 0;
  ButtonRect r;
  // The far edges follow from the near ones: two halves rounded apart
  // would take a pixel off the measured size and break the caption.
  r.left = HalfRoundedHalfEven(w - mw);
  r.right = r.left + mw;
  r.top = HalfRoundedHalfEven(h - mh);
  r.bottom = r.top + mh;
  switch (align) {
    case kAlignLeft:
      r.left = margin + beside;
      r.right = w - margin;
      break;
    case kAlignRight:
      r.left = margin;
      r.right = w - margin - beside;
      break;
    case kAlignTop:
      r.left = m.left;
      r.right = m.right;
      r.top = margin + beside;
      r.bottom = r.top + mh;
      break;
    case kAlignBottom:
      r.left = m.left;
      r.right = m.right;
      r.bottom = h - margin - beside;
      r.top = r.bottom - mh;
      break;
    default:
      break;
  }
  return r;
}

ButtonPoint IconPosition(int iconAlign, int w, int h, int s, int m, bool pressed) {
  ButtonPoint p{(w - s) / 2, (h - s) / 2};
  switch (iconAlign) {
    case kAlignLeft:
      p.x = m;
      break;
    case kAlignRight:
      p.x = w - s - m;
      break;
    case kAlignTop:
      p.y = m;
      break;
    case kAlignBottom:
      p.y = h - s - m;
      break;
    default:
      break;
  }
  if (pressed) {
    ++p.x;
    ++p.y;
  }
  return p;
}

isButton::isButton(ButtonSurface& surface) : surface_(surface) {}

isButton::~isButton() {
  *live_ = false;
}

// --- Properties -----------------------------------------------------------

void isButton::InitProperties(std::string_view controlName) {
  icon_ = {};
  style_ = 0;
  caption_ = controlName;
  iconSize_ = 16;
  captionAlign_ = 0;
  iconAlign_ = 1;
  nonThemeStyle_ = 0;
  enabled_ = true;
  showFocus_ = false;
  useCustomColors_ = false;
  backColor_ = Resolve(SysCode(kSysButtonFace));
  highlightColor_ = Resolve(SysCode(kSysHighlight));
  fontColor_ = Resolve(SysCode(kSysButtonText));
  fontHighlightColor_ = Resolve(SysCode(kSysButtonText));
  toolTipText_.clear();
  toolTipTitle_.clear();
  toolTipIcon_ = 0;
  toolTipType_ = 1;
  toolTipBackColor_ = 0;
  toolTipForeColor_ = 0;
  font_ = surface_.CurrentFont();
  buttonType_ = 0;
  value_ = false;
  useMaskColor_ = false;
  maskColor_ = 0;
  mousePointer_ = 0;
  roundedBordersByTheme_ = false;
  rightToLeft_ = false;
  surface_.ApplyFont(font_);
  surface_.ApplyMousePointer(mousePointer_);
}

void isButton::ReadProperties(const PropertyStore& s) {
  icon_ = s.ReadPicture("Icon", {});
  style_ = s.ReadLong("Style", 3);
  caption_ = s.ReadString("Caption", kDefaultCaption);
  iconSize_ = s.ReadLong("IconSize", 16);
  captionAlign_ = s.ReadLong("CaptionAlign", 0);
  iconAlign_ = s.ReadLong("IconAlign", 1);
  nonThemeStyle_ = s.ReadLong("iNonThemeStyle", 5);
  enabled_ = s.ReadBool("Enabled", true);
  showFocus_ = s.ReadBool("ShowFocus", false);
  useCustomColors_ = s.ReadBool("USeCustomColors", false);
  backColor_ = s.ReadColor("BackColor", surface_.SystemColor(kSysButtonFace));
  highlightColor_ = s.ReadColor("HighlightColor", surface_.SystemColor(kSysHighlight));
  fontColor_ = s.ReadColor("FontColor", surface_.SystemColor(kSysButtonText));
  fontHighlightColor_ = s.ReadColor("FontHighlightColor", surface_.SystemColor(kSysButtonText));
  // The container shows the stored tooltip text until the mouse comes.
  containerToolTipText_ = s.ReadString("ToolTipText", "");
  toolTipText_ = containerToolTipText_;
  toolTipTitle_ = s.ReadString("Tooltiptitle", "");
  toolTipIcon_ = s.ReadLong("ToolTipIcon", 0);
  toolTipType_ = s.ReadLong("ToolTipType", 1);
  toolTipBackColor_ = s.ReadColor("ttBackColor", surface_.SystemColor(kSysInfoBack));
  toolTipForeColor_ = s.ReadColor("ttForeColor", surface_.SystemColor(kSysInfoText));
  font_ = s.ReadFont("Font", surface_.CurrentFont());
  buttonType_ = s.ReadLong("ButtonType", 0);
  value_ = s.ReadBool("Value", false);
  useMaskColor_ = s.ReadBool("UseMaskColor", false);
  maskColor_ = s.ReadColor("MaskColor", 0x00C0C0C0);
  mousePointer_ = s.ReadInteger("MousePointer", 0);
  roundedBordersByTheme_ = s.ReadBool("RoundedBordersByTheme", true);
  rightToLeft_ = s.ReadBool("bRTLText", false);
  surface_.ApplyFont(font_);
  surface_.ApplyMousePointer(mousePointer_);
  surface_.EnableSurface(enabled_);
}

// The tooltip text is the control's while its tooltip shows and the
// container's otherwise; the container keeps no store of its own, so the
// text is written here whenever there is one.
void isButton::WriteProperties(PropertyStore& s) const {
  s.WriteAlways("Icon", icon_);
  s.WriteLong("Style", style_, 3);
  s.WriteString("Caption", caption_, "");
  s.WriteLong("IconSize", iconSize_, 16);
  s.WriteLong("CaptionAlign", captionAlign_, 0);
  s.WriteLong("IconAlign", iconAlign_, 1);
  s.WriteLong("iNonThemeStyle", nonThemeStyle_, 5);
  s.WriteBool("Enabled", enabled_, true);
  s.WriteBool("ShowFocus", showFocus_, false);
  s.WriteBool("USeCustomColors", useCustomColors_, false);
  s.WriteColor("BackColor", backColor_, surface_.SystemColor(kSysButtonFace));
  s.WriteColor("HighlightColor", highlightColor_, surface_.SystemColor(kSysHighlight));
  s.WriteColor("FontColor", fontColor_, surface_.SystemColor(kSysButtonText));
  s.WriteColor("FontHighlightColor", fontHighlightColor_, surface_.SystemColor(kSysButtonText));
  s.WriteString("ToolTipText", tooltipShown_ ? toolTipText_ : containerToolTipText_, "");
  s.WriteAlways("Tooltiptitle", toolTipTitle_);
  s.WriteAlways("ToolTipIcon", std::int64_t{toolTipIcon_});
  s.WriteAlways("ToolTipType", std::int64_t{toolTipType_});
  s.WriteColor("ttBackColor", toolTipBackColor_, surface_.SystemColor(kSysInfoBack));
  s.WriteColor("ttForeColor", toolTipForeColor_, surface_.SystemColor(kSysInfoText));
  s.WriteAlways("Font", font_);
  s.WriteLong("ButtonType", buttonType_, 0);
  s.WriteBool("Value", value_, false);
  s.WriteBool("UseMaskColor", useMaskColor_, false);
  s.WriteColor("MaskColor", maskColor_, 0x00C0C0C0);
  s.WriteLong("MousePointer", mousePointer_, 0);
  s.WriteBool("RoundedBordersByTheme", roundedBordersByTheme_, true);
  s.WriteLong("bRTLText", rightToLeft_ ? -1 : 0, 0);  // a Boolean kept as a 32-bit number
}

void isButton::Start(bool mouseTracking) {
  trackingAvailable_ = mouseTracking;
  Layout();
}

template <typename T>
void isButton::Let(T& field, T value, std::string_view name, After after) {
  field = std::move(value);
  Notify(name);
  if (after == After::Layout) {
    Layout();  // repaints too
  } else if (after == After::Repaint) {
    Refresh();
  }
}

void isButton::SetIcon(Picture icon) {
  Let(icon_, icon, "Icon", After::Layout);
}
void isButton::SetStyle(std::int32_t style) {
  Let(style_, style, "Style", After::Layout);
}
void isButton::SetCaption(std::string_view caption) {
  Let(caption_, std::string(caption), "Caption", After::Layout);
}
void isButton::SetIconSize(std::int32_t size) {
  Let(iconSize_, size, "IconSize", After::Layout);
}
void isButton::SetCaptionAlign(std::int32_t align) {
  Let(captionAlign_, align, "CaptionAlign", After::Layout);
}
void isButton::SetIconAlign(std::int32_t align) {
  Let(iconAlign_, align, "IconAlign", After::Layout);
}
void isButton::SetNonThemeStyle(std::int32_t style) {
  Let(nonThemeStyle_, style, "NonThemeStyle", After::Layout);
}

void isButton::SetEnabled(bool enabled) {
  enabled_ = enabled;
  Notify("Enabled");
  state_ = ButtonState::Normal;
  mouseArmed_ = false;
  spaceArmed_ = false;
  surface_.EnableSurface(enabled);
  Refresh();
}

void isButton::SetShowFocus(bool show) {
  Let(showFocus_, show, "ShowFocus", After::Repaint);
}
void isButton::SetUseCustomColors(bool use) {
  Let(useCustomColors_, use, "UseCustomColors", After::Repaint);
}
void isButton::SetBackColor(OleColor color) {
  Let(backColor_, color, "BackColor", After::Repaint);
}
void isButton::SetHighlightColor(OleColor color) {
  Let(highlightColor_, color, "HighlightColor", After::Repaint);
}
void isButton::SetFontColor(OleColor color) {
  Let(fontColor_, color, "FontColor", After::Repaint);
}
void isButton::SetFontHighlightColor(OleColor color) {
  Let(fontHighlightColor_, color, "FontHighlightColor", After::Repaint);
}

// A new text while the tooltip shows replaces the tooltip at once; else
// the container shows it until the mouse comes.
void isButton::SetToolTipText(std::string_view text) {
  toolTipText_ = text;
  Notify("ToolTipText");
  if (tooltipShown_) {
    RemoveTooltip();
    BuildTooltip();
  } else {
    containerToolTipText_ = text;
  }
  Refresh();
}

void isButton::SetToolTipTitle(std::string_view title) {
  Let(toolTipTitle_, std::string(title), "TooltipTitle", After::Repaint);
}
void isButton::SetToolTipIcon(std::int32_t icon) {
  Let(toolTipIcon_, icon, "TooltipIcon", After::Repaint);
}
void isButton::SetToolTipType(std::int32_t type) {
  Let(toolTipType_, type, "ToolTipType", After::Repaint);
}
void isButton::SetToolTipBackColor(OleColor color) {
  Let(toolTipBackColor_, color, "ToolTipBackColor", After::Repaint);
}
void isButton::SetToolTipForeColor(OleColor color) {
  Let(toolTipForeColor_, color, "ToolTipForeColor", After::Repaint);
}

// The caption is measured with the font, so a new font lays it out again.
void isButton::SetFont(const FontSpec& font) {
  font_ = font;
  surface_.ApplyFont(font_);
  Notify("Font");
  Layout();
}

void isButton::SetButtonType(std::int32_t type) {
  Let(buttonType_, type, "ButtonType", After::Repaint);
}
void isButton::SetValue(bool value) {
  Let(value_, value, "Value", After::Repaint);
}
void isButton::SetUseMaskColor(bool use) {
  Let(useMaskColor_, use, "UseMaskColor", After::Repaint);
}
void isButton::SetMaskColor(OleColor color) {
  Let(maskColor_, color, "MaskColor", After::Repaint);
}

void isButton::SetMousePointer(std::int16_t pointer) {
  Let(mousePointer_, pointer, "MousePointer", After::Nothing);
  surface_.ApplyMousePointer(pointer);
}

void isButton::SetRoundedBordersByTheme(bool rounded) {
  Let(roundedBordersByTheme_, rounded, "RoundedBordersByTheme", After::Repaint);
}

// The caption's reading order is part of its layout flags.
void isButton::SetRightToLeft(bool rightToLeft) {
  Let(rightToLeft_, rightToLeft, "bRTLText", After::Layout);
}

void isButton::SetDisplayAsDefault(bool isDefault) {
  displayAsDefault_ = isDefault;
  Refresh();
}

void isButton::Notify(std::string_view name) const {
  if (PropertyChanged) PropertyChanged(name);
}

// The handler is called through a copy, so that it may replace or free the
// stored one (or the whole control) while it runs.
bool isButton::Raise(const std::function<void()>& event) const {
  const std::shared_ptr<const bool> alive = live_;
  if (event) {
    const std::function<void()> handler = event;
    handler();
  }
  return *alive;
}

OleColor isButton::Resolve(OleColor color) const {
  return IsSystemColor(color) ? surface_.SystemColor(SystemColorIndex(color)) : color;
}

// --- Input ----------------------------------------------------------------

// The first move over the control starts mouse-leave tracking and shows
// the hover look (the pressed look while a press of its own is held). A
// move that reaches the control while the mouse is held outside it (the
// control has the mouse captured) counts as leaving.
void isButton::MouseMove(bool over) {
  if (!trackingAvailable_) return;
  if (!over) {
    if (mouseInside_) MouseLeft();
    return;
  }
  if (mouseInside_) return;
  mouseInside_ = true;
  surface_.TrackMouseLeave();
  state_ = mouseArmed_ ? ButtonState::Pressed : ButtonState::Hover;
  Refresh();
  if (!Raise(events.MouseEnter)) return;
  BuildTooltip();
}

// Heard once per enter: a leave seen during a captured move is not
// reported again when the platform's own notice follows.
void isButton::MouseLeft() {
  if (!mouseInside_) return;
  mouseInside_ = false;
  state_ = ButtonState::Normal;
  RemoveTooltip();
  Refresh();
  Raise(events.MouseLeave);
}

void isButton::MouseDown(MouseButton button) {
  if (button != MouseButton::Left) return;
  mouseArmed_ = true;
  state_ = ButtonState::Pressed;
  Refresh();
}

// Releasing the left button. Only a release over the button that ends a
// press begun on it counts: then the button rests hover, pending painting
// is done, mouse-leave tracking restarts and Click is raised (when the
// mouse can be followed at all). A toggle button that is up goes down
// instead, without Click. The click step follows.
void isButton::MouseUp(MouseButton button, bool over) {
  lastButton_ = button;
  if (button != MouseButton::Left) return;
  const bool armed = mouseArmed_;
  mouseArmed_ = false;
  // Released away from the button with no move on the way there: the
  // pointer has left it all the same.
  if (!over && mouseInside_) {
    const std::shared_ptr<const bool> alive = live_;
    MouseLeft();
    if (!*alive) return;
  }
  const bool clicked = armed && over;
  if (!clicked) {
    state_ = Resting();
    Refresh();
    return;
  }
  if (buttonType_ != 1 || value_) {
    state_ = Resting();
    surface_.PaintPending();
    if (trackingAvailable_ && mouseInside_) surface_.TrackMouseLeave();
    if (trackingAvailable_ && !Raise(events.Click)) return;
  } else {
    state_ = ButtonState::Pressed;
  }
  Refresh();
  ClickStep();
}

void isButton::ClickStep() {
  if (buttonType_ == 1) SetValue(!value_);
  state_ = Resting();
  Refresh();
}

// Hover while the mouse is over the button; a button released with the
// mouse elsewhere (or where the mouse cannot be followed) rests normal.
ButtonState isButton::Resting() const {
  return mouseInside_ ? ButtonState::Hover : ButtonState::Normal;
}

void isButton::KeyboardClick() {
  ClickStep();
  if (!Raise(events.Click)) return;
  state_ = ButtonState::Normal;
  Refresh();
}

FocusMove isButton::KeyDown(ButtonKey key, bool shift) {
  switch (key) {
    case ButtonKey::Space:
      spaceArmed_ = true;
      state_ = ButtonState::Pressed;
      Refresh();
      return FocusMove::None;
    case ButtonKey::Right:
    case ButtonKey::Down:
      return FocusMove::Next;
    case ButtonKey::Left:
    case ButtonKey::Up:
      return FocusMove::Previous;
    case ButtonKey::Tab:
      if (!Raise(events.MouseLeave)) return FocusMove::None;
      return shift ? FocusMove::Previous : FocusMove::Next;
    case ButtonKey::Other:
      break;
  }
  return FocusMove::None;
}

// Space clicks when it comes up after going down on this button, and the
// press was not cancelled meanwhile.
void isButton::KeyUp(ButtonKey key) {
  if (key != ButtonKey::Space || !spaceArmed_) return;
  spaceArmed_ = false;
  KeyboardClick();
}

void isButton::AccessKeyPress() {
  KeyboardClick();
}

void isButton::GotFocus() {
  hasFocus_ = true;
  Refresh();
}

void isButton::LostFocus() {
  hasFocus_ = false;
  mouseArmed_ = false;
  spaceArmed_ = false;
  if (state_ == ButtonState::Pressed) state_ = Resting();
  Refresh();
}

void isButton::CancelPress() {
  const bool wasPressed = mouseArmed_ || spaceArmed_ || state_ == ButtonState::Pressed;
  mouseArmed_ = false;
  spaceArmed_ = false;
  if (!wasPressed) return;
  state_ = Resting();
  Refresh();
}

void isButton::SetShown(bool shown) {
  shown_ = shown;
  Refresh();
}

void isButton::SurfaceAttached() {
  *live_ = false;
  live_ = std::make_shared<bool>(true);
}

// Nothing of the window may be touched any more; what the control held of
// it (the tooltip, the mouse) went with it.
void isButton::SurfaceDetached() {
  *live_ = false;
  mouseArmed_ = false;
  spaceArmed_ = false;
  mouseInside_ = false;
  tooltipShown_ = false;
  state_ = ButtonState::Normal;
}

// --- Tooltip --------------------------------------------------------------

void isButton::BuildTooltip() {
  toolTipText_ = containerToolTipText_;
  containerToolTipText_.clear();
  TooltipSpec t;
  t.text = toolTipText_;
  t.title = toolTipTitle_;
  t.icon = toolTipIcon_;
  t.balloon = toolTipType_ == 1;
  t.foreColor = toolTipForeColor_ != 0 ? Resolve(toolTipForeColor_) : 0;
  t.backColor = toolTipBackColor_ != 0 ? Resolve(toolTipBackColor_) : 0;
  if (!Live()) return;
  surface_.ShowTooltip(t);
  tooltipShown_ = true;
}

void isButton::RemoveTooltip() {
  containerToolTipText_ = toolTipText_;
  if (tooltipShown_) surface_.HideTooltip();
  tooltipShown_ = false;
}

// --- Layout and painting --------------------------------------------------

void isButton::Layout() {
  if (inLayout_ || !Live()) return;  // the size set below comes back as a resize
  inLayout_ = true;
  const ButtonSize size = surface_.SizeTwips();
  if (size.width < kMinimumTwips || size.height < kMinimumTwips) {
    surface_.SetSizeTwips({std::max(size.width, kMinimumTwips), std::max(size.height, kMinimumTwips)});
  }
  const ButtonSize inner = surface_.InnerPixels();
  const int w = inner.width;
  const int h = inner.height;
  const unsigned measureFlags = cf::kCalcRect | cf::kWordBreak | (rightToLeft_ ? cf::kRtlReading : 0);
  const ButtonRect measured = surface_.MeasureCaption(caption_, {4, 4, w - 4, h - 4}, measureFlags);
  margin_ = StyleMargin(style_);
  captionFlags_ = CaptionFlags(captionAlign_, rightToLeft_);
  captionRect_ = CaptionRect(captionAlign_, w, h, measured, margin_, iconSize_, !icon_.Empty(), iconAlign_);
  surface_.ApplyRegion(RegionForStyle(style_, w, h, roundedBordersByTheme_));
  inLayout_ = false;
  Refresh();
}

void isButton::Refresh() {
  if (shown_ && Live()) surface_.Repaint();
}

ButtonLook isButton::Look() {
  if (style_ == 6 && !surface_.HasVisualStyles()) {
    // Without visual styles the replacement takes over for good; a
    // replacement that is itself the themed look becomes its hand-drawn
    // likeness.
    SetStyle(nonThemeStyle_ == 6 ? 5 : nonThemeStyle_);
  }
  ButtonLook look;
  look.style = style_;
  look.state = state_;
  if (buttonType_ == 1 && value_) look.state = ButtonState::Pressed;
  if (!enabled_) look.state = ButtonState::Disabled;
  const ButtonState s = look.state;
  look.themeState = s == ButtonState::Normal && hasFocus_ ? ButtonState::Default : s;
  look.focused = hasFocus_;
  look.focusRect = style_ == 0 && showFocus_ && hasFocus_;
  look.defaultFrame = style_ == 5 && displayAsDefault_;

  if (s == ButtonState::Pressed) {
    look.gloss = GlossVariant::Pressed;
  } else if (s == ButtonState::Hover || hasFocus_) {
    look.gloss = GlossVariant::Hover;
  } else {
    look.gloss = GlossVariant::Normal;
  }
  // The hand-drawn skins show their normal face while disabled.
  const GlossVariant skinVariant = s == ButtonState::Disabled  ? GlossVariant::Normal
                                   : s == ButtonState::Normal  ? GlossVariant::Normal
                                   : s == ButtonState::Pressed ? GlossVariant::Pressed
                                                               : GlossVariant::Hover;

  const bool normal = s == ButtonState::Normal;
  const bool active = s == ButtonState::Hover || s == ButtonState::Pressed;
  OleColor face = SysCode(kSysButtonFace);
  if (s != ButtonState::Disabled) {
    if (useCustomColors_) {
      face = normal ? backColor_ : highlightColor_;
    } else if (style_ == 4 && active) {
      face = SysCode(kSysHighlight);
    }
  }
  look.face = Resolve(face);

  const auto ring = [this](int inset, int tl, int br) {
    return FrameRing{inset, Resolve(SysCode(tl)), Resolve(SysCode(br))};
  };
  const bool pressed = s == ButtonState::Pressed;
  switch (style_) {
    case 1:  // flat until the mouse comes: then a thin raised or sunken edge
      if (active) {
        look.frame = {pressed ? ring(0, kSysShadow, kSysHilight3d) : ring(0, kSysHilight3d, kSysShadow)};
      }
      break;
    case 2:  // a thin raised edge, doubled on hover, sunken when pressed
      if (pressed) {
        look.frame = {ring(0, kSysShadow, kSysHilight3d), ring(1, kSysDarkShadow, kSysLight3d)};
      } else if (active) {
        look.frame = {ring(0, kSysHilight3d, kSysDarkShadow), ring(1, kSysLight3d, kSysShadow)};
      } else {
        look.frame = {ring(0, kSysHilight3d, kSysShadow)};
      }
      break;
    case 3:  // a shadow-coloured line, lined with the window colour on hover
      look.frame = {ring(0, kSysShadow, kSysShadow)};
      if (active)
        look.frame.push_back(pressed ? ring(1, kSysShadow, kSysWindow) : ring(1, kSysWindow, kSysWindow));
      break;
    case 4:  // a shadow line, the dark shadow while the face is highlighted
      look.frame = {active ? ring(0, kSysDarkShadow, kSysDarkShadow) : ring(0, kSysShadow, kSysShadow)};
      break;
    case 5:
      look.skin =
          useCustomColors_ && s != ButtonState::Disabled
              ? Style5Skin(look.face, Resolve(highlightColor_), skinVariant)
              : Style5Skin(Resolve(SysCode(kSysButtonFace)), Resolve(SysCode(kSysHighlight)), skinVariant);
      // The default button is lined with the highlight colour.
      if (look.defaultFrame && skinVariant == GlossVariant::Normal) {
        look.skin.light = MixColor(Resolve(SysCode(kSysHighlight)), 0x00FFFFFF, 300);
      }
      break;
    case 7:
    case 8:
    case 9:
      look.skin = FixedSkin(style_, skinVariant);
      break;
    default:
      break;
  }

  OleColor text = SysCode(kSysButtonText);
  if (s == ButtonState::Disabled) {
    text = kGrayText;
  } else if (useCustomColors_) {
    text = normal ? fontColor_ : fontHighlightColor_;
  }
  look.textColor = Resolve(text);
  look.caption = caption_;
  look.captionRect = captionRect_;
  look.captionFlags = captionFlags_;

  look.hasIcon = !icon_.Empty();
  if (look.hasIcon) {
    const ButtonSize inner = surface_.InnerPixels();
    look.iconAt = IconPosition(iconAlign_, inner.width, inner.height, iconSize_, margin_, pressed);
    look.iconSize = iconSize_;
    look.greyIcon = s == ButtonState::Disabled;
    look.useMaskColor = useMaskColor_;
    look.maskColor = Resolve(maskColor_);
  }
  return look;
}

}  // namespace qm
