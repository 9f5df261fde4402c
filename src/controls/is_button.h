// The image button `isButton`: a push button that paints itself in one of
// eleven looks (`Style` 0 to 10), shows an optional icon and a caption with
// an access key, follows the mouse with hover and pressed looks, raises
// `Click`, `MouseEnter` and `MouseLeave`, and shows its own tooltip.
//
// This is the control's model: its persisted properties, its state machine,
// its layout arithmetic and what each repaint shows (ButtonLook). The
// window that shows it (isButtonWindow) implements ButtonSurface and turns
// window messages into calls of this class.
//
// Geometry: the control's size is in twips; everything inside it is in
// pixels, (0, 0) the top left corner of the inner area, W and H its width
// and height.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "controls/is_button_art.h"
#include "controls/property_store.h"
#include "platform/font_spec.h"
#include "platform/ole_color.h"

namespace qm {

// The button's state as its painters know it. Default is only ever the
// theme state of a normal button that has the focus.
enum class ButtonState : std::int32_t { Normal = 1, Hover = 2, Pressed = 3, Disabled = 4, Default = 5 };

enum class MouseButton : std::int16_t { None = 0, Left = 1, Right = 2, Middle = 4 };

enum class ButtonKey { Space, Left, Up, Right, Down, Tab, Other };

// Where the container should move the focus after a key.
enum class FocusMove { None, Next, Previous };

struct ButtonRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  friend bool operator==(const ButtonRect&, const ButtonRect&) = default;
};

struct ButtonPoint {
  int x = 0;
  int y = 0;
  friend bool operator==(const ButtonPoint&, const ButtonPoint&) = default;
};

struct ButtonSize {
  int width = 0;
  int height = 0;
  friend bool operator==(const ButtonSize&, const ButtonSize&) = default;
};

// The platform's text drawing flags that the caption uses.
namespace caption_flags {
inline constexpr unsigned kCenter = 0x1;
inline constexpr unsigned kRight = 0x2;
inline constexpr unsigned kVCenter = 0x4;
inline constexpr unsigned kBottom = 0x8;
inline constexpr unsigned kWordBreak = 0x10;
inline constexpr unsigned kCalcRect = 0x400;
inline constexpr unsigned kRtlReading = 0x20000;
}  // namespace caption_flags

// The window region of a style: the plain rectangle (0, 0)-(W, H), a
// polygon, a rounded rectangle over (0, 0)-(right, bottom) with corner
// ellipses of ellipse x ellipse pixels, or the visual style's own
// background region of the rectangle (-1, -1)-(W + 1, H + 1).
struct ButtonRegion {
  enum class Kind { Rectangle, Polygon, RoundRect, Theme };
  Kind kind = Kind::Rectangle;
  int right = 0;
  int bottom = 0;
  int ellipse = 0;
  std::vector<ButtonPoint> points;

  friend bool operator==(const ButtonRegion&, const ButtonRegion&) = default;
};

// The caption split at its access key: "&Start" is the text "Start" with
// the letter at 0 underlined and the key 'S'; "&&" stands for one "&".
struct AccessKeyCaption {
  std::string text;
  int underlined = -1;  // index into text, -1 for none
  char key = 0;         // upper case, 0 for none
};
AccessKeyCaption ParseAccessKey(std::string_view caption);

// Layout arithmetic, also used by the painters.
inline constexpr int kMinimumTwips = 300;
inline constexpr int kDefaultMargin = 3;
inline constexpr int kStyle10Margin = 7;
int StyleMargin(int style);
ButtonRegion RegionForStyle(int style, int width, int height, bool roundedByTheme);
unsigned CaptionFlags(int captionAlign, bool rightToLeft);
// `measured` is the caption as measured in (4, 4)-(W - 4, H - 4).
ButtonRect CaptionRect(int captionAlign, int width, int height, const ButtonRect& measured, int margin,
                       int iconSize, bool hasIcon, int iconAlign);
ButtonPoint IconPosition(int iconAlign, int width, int height, int iconSize, int margin, bool pressed);

// One ring of a frame, `inset` pixels in from the edge, its top and left
// sides in one colour and its bottom and right sides in another (RGB).
struct FrameRing {
  int inset = 0;
  OleColor topLeft = 0;
  OleColor bottomRight = 0;
  friend bool operator==(const FrameRing&, const FrameRing&) = default;
};

// Everything one repaint shows. Colours are RGB (system colours already
// translated).
struct ButtonLook {
  int style = 0;                            // the painter: 0..10; any other value paints no background
  ButtonState state = ButtonState::Normal;  // as painted
  ButtonState themeState = ButtonState::Normal;
  GlossVariant gloss = GlossVariant::Normal;  // Style 10
  bool focused = false;
  bool focusRect = false;        // a focused style-0 button with ShowFocus
  bool defaultFrame = false;     // style 5 on the container's default button
  OleColor face = 0;             // styles 0 to 4
  std::vector<FrameRing> frame;  // styles 1 to 4
  SkinColors skin;               // styles 5, 7, 8 and 9
  OleColor textColor = 0;
  std::string caption;
  ButtonRect captionRect;
  unsigned captionFlags = 0;
  bool hasIcon = false;
  ButtonPoint iconAt;
  int iconSize = 16;
  bool greyIcon = false;
  bool useMaskColor = false;
  OleColor maskColor = 0;
};

// What the tooltip is made of (colours RGB; 0 leaves the platform's own).
struct TooltipSpec {
  std::string text;
  std::string title;
  std::int32_t icon = 0;
  bool balloon = false;
  OleColor foreColor = 0;
  OleColor backColor = 0;
};

// The window that shows the control, as the model needs it.
class ButtonSurface {
 public:
  virtual ~ButtonSurface() = default;
  // The control's outer size in twips, and a new size for it.
  virtual ButtonSize SizeTwips() const = 0;
  virtual void SetSizeTwips(ButtonSize size) = 0;
  // The inner area in pixels.
  virtual ButtonSize InnerPixels() const = 0;
  // The caption measured with the control's font (the platform's text
  // drawing with kCalcRect in `bounds`).
  virtual ButtonRect MeasureCaption(std::string_view caption, const ButtonRect& bounds,
                                    unsigned flags) const = 0;
  // The system colour of an index (the platform's GetSysColor), RGB.
  virtual OleColor SystemColor(int index) const = 0;
  virtual bool HasVisualStyles() const = 0;
  // The font that the control surface has now.
  virtual FontSpec CurrentFont() const = 0;

  virtual void ApplyRegion(const ButtonRegion& region) = 0;
  // Asks for a repaint; and paints what is pending now.
  virtual void Repaint() = 0;
  virtual void PaintPending() = 0;
  // Starts mouse-leave tracking (the control then hears MouseLeave once).
  virtual void TrackMouseLeave() = 0;
  virtual void ShowTooltip(const TooltipSpec& tooltip) = 0;
  virtual void HideTooltip() = 0;
  virtual void EnableSurface(bool enabled) = 0;
  virtual void ApplyFont(const FontSpec& font) = 0;
  virtual void ApplyMousePointer(std::int16_t pointer) = 0;
};

class isButton {
 public:
  static constexpr const char* kVersion = "3.6.2";
  static constexpr const char* kDefaultCaption = "isButton";

  struct Events {
    std::function<void()> Click;
    std::function<void()> MouseEnter;
    std::function<void()> MouseLeave;
  };

  explicit isButton(ButtonSurface& surface);
  ~isButton();
  isButton(const isButton&) = delete;
  isButton& operator=(const isButton&) = delete;

  // The values of a control newly placed on a form, named `controlName`.
  void InitProperties(std::string_view controlName);
  // The stored values, with the read defaults for missing keys.
  void ReadProperties(const PropertyStore& store);
  // Writes every value that differs from its write default, and the keys
  // that are always written.
  void WriteProperties(PropertyStore& store) const;
  // Once the properties are in place: whether mouse-leave tracking is
  // available, then layout and repaint.
  void Start(bool mouseTracking);

  // Properties. Every let tells the container (PropertyChanged) and
  // repaints; the lets that change the layout recompute it first.
  const Picture& Icon() const { return icon_; }
  void SetIcon(Picture icon);
  std::int32_t Style() const { return style_; }
  void SetStyle(std::int32_t style);
  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string_view caption);
  std::int32_t IconSize() const { return iconSize_; }
  void SetIconSize(std::int32_t size);
  std::int32_t CaptionAlign() const { return captionAlign_; }
  void SetCaptionAlign(std::int32_t align);
  std::int32_t IconAlign() const { return iconAlign_; }
  void SetIconAlign(std::int32_t align);
  std::int32_t NonThemeStyle() const { return nonThemeStyle_; }
  void SetNonThemeStyle(std::int32_t style);
  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);
  bool ShowFocus() const { return showFocus_; }
  void SetShowFocus(bool show);
  bool UseCustomColors() const { return useCustomColors_; }
  void SetUseCustomColors(bool use);
  OleColor BackColor() const { return backColor_; }
  void SetBackColor(OleColor color);
  OleColor HighlightColor() const { return highlightColor_; }
  void SetHighlightColor(OleColor color);
  OleColor FontColor() const { return fontColor_; }
  void SetFontColor(OleColor color);
  OleColor FontHighlightColor() const { return fontHighlightColor_; }
  void SetFontHighlightColor(OleColor color);
  const std::string& ToolTipText() const { return toolTipText_; }
  void SetToolTipText(std::string_view text);
  const std::string& ToolTipTitle() const { return toolTipTitle_; }
  void SetToolTipTitle(std::string_view title);
  std::int32_t ToolTipIcon() const { return toolTipIcon_; }
  void SetToolTipIcon(std::int32_t icon);
  std::int32_t ToolTipType() const { return toolTipType_; }
  void SetToolTipType(std::int32_t type);
  OleColor ToolTipBackColor() const { return toolTipBackColor_; }
  void SetToolTipBackColor(OleColor color);
  OleColor ToolTipForeColor() const { return toolTipForeColor_; }
  void SetToolTipForeColor(OleColor color);
  const FontSpec& Font() const { return font_; }
  void SetFont(const FontSpec& font);
  std::int32_t ButtonType() const { return buttonType_; }
  void SetButtonType(std::int32_t type);
  bool Value() const { return value_; }
  void SetValue(bool value);
  bool UseMaskColor() const { return useMaskColor_; }
  void SetUseMaskColor(bool use);
  OleColor MaskColor() const { return maskColor_; }
  void SetMaskColor(OleColor color);
  std::int16_t MousePointer() const { return mousePointer_; }
  void SetMousePointer(std::int16_t pointer);
  bool RoundedBordersByTheme() const { return roundedBordersByTheme_; }
  void SetRoundedBordersByTheme(bool rounded);
  bool RightToLeft() const { return rightToLeft_; }
  void SetRightToLeft(bool rightToLeft);
  std::string Version() const { return kVersion; }

  // The container's own tooltip text for the control. While the mouse is
  // over the control the control holds the text and this one is empty.
  const std::string& ContainerToolTipText() const { return containerToolTipText_; }
  void SetContainerToolTipText(std::string_view text) { containerToolTipText_ = text; }
  // The container's "DisplayAsDefault": the control is its default button.
  bool DisplayAsDefault() const { return displayAsDefault_; }
  void SetDisplayAsDefault(bool isDefault);

  // Window messages and input. `over` tells whether the mouse is over the
  // control's window.
  //
  // A mouse click is a left press and a left release both on the button:
  // the press arms the button (the window holds the mouse meanwhile), the
  // pressed look follows the pointer while it is held, and the release
  // clicks only when the button is armed and the pointer is over it. A
  // release without a press of its own (the press began elsewhere) never
  // clicks. Space clicks likewise only after a Space press on the button.
  void MouseMove(bool over);
  void MouseLeft();
  void ThemeChanged() { Refresh(); }
  void SysColorChange() { Refresh(); }
  void MouseDown(MouseButton button);
  void MouseUp(MouseButton button, bool over);
  FocusMove KeyDown(ButtonKey key, bool shift);
  void KeyUp(ButtonKey key);
  // The container delivered the caption's access key.
  void AccessKeyPress();
  void GotFocus();
  // Losing the focus also drops a press in progress (mouse or Space).
  void LostFocus();
  // The press in progress ends without a click: the window lost the mouse
  // capture or was told to cancel its modes. The pressed look goes.
  void CancelPress();
  // Whether a mouse or Space press is in progress on the button.
  bool PressInProgress() const { return mouseArmed_ || spaceArmed_; }
  void SetShown(bool shown);

  // Whether anything may still be touched after an event handler ran: the
  // token turns false when the window showing the control is destroyed
  // (SurfaceDetached) or the control itself goes. A Click handler may close
  // the whole window and the button with it; every input routine checks a
  // copy of the token after raising an event and returns at once when it
  // has turned false. The window holds a copy across its calls for the
  // same reason.
  std::shared_ptr<const bool> LifeToken() const { return live_; }
  // The window showing the control was made, or is gone for good.
  void SurfaceAttached();
  void SurfaceDetached();

  // Recomputes the layout (size, caption, region) and repaints.
  void Layout();
  void Refresh();
  // What the next repaint shows. Style 6 on a platform without visual
  // styles first takes the value of NonThemeStyle.
  ButtonLook Look();

  ButtonState State() const { return state_; }
  bool HasFocus() const { return hasFocus_; }
  bool MouseInside() const { return mouseInside_; }
  bool TrackingAvailable() const { return trackingAvailable_; }
  int Margin() const { return margin_; }
  const ButtonRect& CaptionRectangle() const { return captionRect_; }
  unsigned CaptionDrawFlags() const { return captionFlags_; }

  Events events;
  // Tells the container that a property changed, by the property's name.
  std::function<void(std::string_view)> PropertyChanged;

 private:
  enum class After { Repaint, Layout, Nothing };
  template <typename T>
  void Let(T& field, T value, std::string_view name, After after);
  void Notify(std::string_view name) const;
  // Raises the event; false when the control or its window did not
  // survive the handler (then nothing more may be done).
  bool Raise(const std::function<void()>& event) const;
  bool Live() const { return *live_; }
  OleColor Resolve(OleColor color) const;
  ButtonState Resting() const;
  void ClickStep();
  void KeyboardClick();
  void BuildTooltip();
  void RemoveTooltip();

  ButtonSurface& surface_;

  Picture icon_;
  std::int32_t style_ = 3;
  std::string caption_ = kDefaultCaption;
  std::int32_t iconSize_ = 16;
  std::int32_t captionAlign_ = 0;
  std::int32_t iconAlign_ = 1;
  std::int32_t nonThemeStyle_ = 5;
  bool enabled_ = true;
  bool showFocus_ = false;
  bool useCustomColors_ = false;
  OleColor backColor_ = 0x8000000F;
  OleColor highlightColor_ = 0x8000000D;
  OleColor fontColor_ = 0x80000012;
  OleColor fontHighlightColor_ = 0x80000012;
  std::string toolTipText_;
  std::string toolTipTitle_;
  std::int32_t toolTipIcon_ = 0;
  std::int32_t toolTipType_ = 1;
  OleColor toolTipBackColor_ = 0;
  OleColor toolTipForeColor_ = 0;
  FontSpec font_;
  std::int32_t buttonType_ = 0;
  bool value_ = false;
  bool useMaskColor_ = false;
  OleColor maskColor_ = 0x00C0C0C0;
  std::int16_t mousePointer_ = 0;
  bool roundedBordersByTheme_ = true;
  bool rightToLeft_ = false;

  std::string containerToolTipText_;
  bool displayAsDefault_ = false;

  ButtonState state_ = ButtonState::Normal;
  bool hasFocus_ = false;
  bool shown_ = true;
  bool mouseInside_ = false;
  MouseButton lastButton_ = MouseButton::None;
  ButtonRect captionRect_;
  unsigned captionFlags_ = 0;
  int margin_ = kDefaultMargin;
  bool trackingAvailable_ = false;
  bool tooltipShown_ = false;
  bool inLayout_ = false;
  bool mouseArmed_ = false;  // a left press began on the button and is held
  bool spaceArmed_ = false;  // Space went down on the button and is held
  std::shared_ptr<bool> live_ = std::make_shared<bool>(true);
};

}  // namespace qm
