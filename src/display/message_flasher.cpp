#include "display/message_flasher.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>

namespace qm {
namespace {

// Keeps a value in single precision. On x87 (the i686 build) intermediate
// results would otherwise stay in extended precision and round differently.
float Single(float value) {
  volatile float stored = value;
  return stored;
}

// Rounds to the nearest whole number, a half to the even neighbour (the
// default rounding mode of the floating-point unit); kept within int, and
// 0 for what is not a number.
int RoundHalfEven(float value) {
  if (std::isnan(value)) return 0;
  const double rounded = std::nearbyint(static_cast<double>(value));
  return static_cast<int>(std::clamp(rounded, double{INT_MIN}, double{INT_MAX}));
}

// A screen ratio the arithmetic can divide by: a missing or absurd one
// counts as 15 twips a pixel (96 dots per inch).
float UsableTwipsPerPixel(float twipsPerPixel) {
  return std::isfinite(twipsPerPixel) && twipsPerPixel > 0 ? twipsPerPixel : 15.0f;
}

// The upper bound of an edge in pixels: the screen's extent less the
// label's, rounded.
int PlacementBound(int screenPixels, int labelTwips, float twipsPerPixel) {
  const float labelPixels = Single(static_cast<float>(labelTwips) / twipsPerPixel);
  return RoundHalfEven(Single(static_cast<float>(screenPixels) - labelPixels));
}

}  // namespace

const std::vector<std::string>& frmMessage::CreationList() {
  static const std::vector<std::string> list{"I want to buy this program", "I love this program"};
  return list;
}

const std::vector<std::string>& frmMessage::FallbackList() {
  static const std::vector<std::string> list{"I want to by the subliminal program",
                                             "I love the subliminal program."};
  return list;
}

frmMessage::frmMessage(OverlayView& view, Timer& timerFrequency, Timer& timerDisplayLength,
                       RandomSource& random, const FlasherHost& host)
    : view_(view),
      timerFrequency_(timerFrequency),
      timerDisplayLength_(timerDisplayLength),
      random_(random),
      host_(host) {
  timerFrequency_.SetTick([this] { TimerFrequency_Timer(); });
  timerDisplayLength_.SetTick([this] { TimerDisplayLength_Timer(); });
  view_.SetLabelFont(labelFont_);
  view_.SetLabelColor(labelColor_);
}

frmMessage::~frmMessage() {
  timerFrequency_.SetTick({});
  timerDisplayLength_.SetTick({});
}

void frmMessage::Form_Load(const ScreenMetrics& screen, unsigned secondsSinceMidnight) {
  random_.Randomize(secondsSinceMidnight);
  MessageList = CreationList();
  view_.SetCaption((*MessageList)[static_cast<std::size_t>(messageIndex_)]);
  view_.MakeTransparent(kTransparentKey);  // a window that stays opaque still works
  screenWidth_ = RoundHalfEven(screen.width);
  screenHeight_ = RoundHalfEven(screen.height);
  twipsPerPixelX_ = UsableTwipsPerPixel(screen.twipsPerPixelX);
  twipsPerPixelY_ = UsableTwipsPerPixel(screen.twipsPerPixelY);
}

void frmMessage::Begin() {
  TimerDisplayLength_Timer();
}

int frmMessage::RndNum(int upperBound, int lowerBound) {
  const float r = random_.Next();
  const auto span = static_cast<float>(static_cast<std::int64_t>(upperBound) - lowerBound);
  return RoundHalfEven(Single(Single(r * span) + static_cast<float>(lowerBound)));
}

void frmMessage::TimerFrequency_Timer() {
  if (bStopped) return;
  timerFrequency_.SetEnabled(false);

  ++messageIndex_;
  // An empty list has nothing to show: it counts as none.
  if (!MessageList || MessageList->empty()) MessageList = FallbackList();
  if (messageIndex_ > static_cast<int>(MessageList->size()) - 1) messageIndex_ = 0;
  view_.SetCaption((*MessageList)[static_cast<std::size_t>(messageIndex_)]);

  const TwipsSize label = view_.LabelSize();
  view_.SetWindowHeight(label.height + kWindowExtraHeight);
  view_.SetWindowWidth(label.width + kWindowExtraWidth);

  const int top = RndNum(PlacementBound(screenHeight_, label.height, twipsPerPixelY_), 0);
  const int left = RndNum(PlacementBound(screenWidth_, label.width, twipsPerPixelX_), 0);
  view_.SetWindowPosition(RoundHalfEven(Single(static_cast<float>(left) * twipsPerPixelX_)),
                          RoundHalfEven(Single(static_cast<float>(top) * twipsPerPixelY_)));

  view_.SetLabelVisible(true);
  if (!host_.SettingsWindowVisible() && !host_.TrayMenuOpen()) {
    view_.MakeTopMost();
    timerDisplayLength_.SetEnabled(true);
  }
  view_.Refresh();
}

void frmMessage::TimerDisplayLength_Timer() {
  if (bStopped) return;
  timerDisplayLength_.SetEnabled(false);
  view_.SetLabelVisible(false);
  timerFrequency_.SetEnabled(true);
}

void frmMessage::SetLabelFont(const FontSpec& font) {
  labelFont_ = font;
  view_.SetLabelFont(labelFont_);
}

void frmMessage::SetLabelColor(OleColor color) {
  labelColor_ = color;
  view_.SetLabelColor(labelColor_);
}

}  // namespace qm
