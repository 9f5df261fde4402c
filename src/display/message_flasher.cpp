#include "display/message_flasher.h"

#include <cmath>
#include <cstdint>

#include "display/flash_guard.h"
#include "platform/rounding.h"
#include "platform/twips.h"

namespace qm {
namespace {

// Keeps a value in single precision. On x87 (the i686 build) intermediate
// results would otherwise stay in extended precision and round differently.
float Single(float value) {
  volatile float stored = value;
  return stored;
}

// A ratio the arithmetic can divide by: a missing or absurd one counts as
// that of 96 dots per inch.
float UsableTwipsPerPixel(float twipsPerPixel) {
  return std::isfinite(twipsPerPixel) && twipsPerPixel > 0 ? twipsPerPixel
                                                           : TwipsPerPixelAt(kDefaultDotsPerInch);
}

// The upper bound of an edge in pixels: the screen's extent less the
// label's, rounded.
int PlacementBound(int screenPixels, int labelTwips, float twipsPerPixel) {
  const float labelPixels = Single(static_cast<float>(labelTwips) / twipsPerPixel);
  return RoundHalfEven(Single(static_cast<float>(screenPixels) - labelPixels));
}

}  // namespace

std::string_view PhraseForDisplay(std::string_view phrase, int screenWidthPixels) {
  if (screenWidthPixels <= 0) return phrase;
  return phrase.substr(0, static_cast<std::size_t>(screenWidthPixels));
}

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
  if (frameWait_) frameWait_->SetTick({});
}

void frmMessage::Form_Load(const ScreenMetrics& screen, unsigned secondsSinceMidnight) {
  random_.Randomize(secondsSinceMidnight);
  MessageList = CreationList();
  view_.SetCaption((*MessageList)[static_cast<std::size_t>(messageIndex_)]);
  view_.MakeTransparent(kTransparentKey);  // a window that stays opaque still works
  screenWidth_ = RoundHalfEven(screen.width);
  screenHeight_ = RoundHalfEven(screen.height);
}

void frmMessage::Begin() {
  // A start or a resume hides whatever the label holds at once.
  if (!bStopped) EndFrameWait();
  TimerDisplayLength_Timer();
}

int frmMessage::RndNum(int upperBound, int lowerBound) {
  const float r = random_.Next();
  const auto span = static_cast<float>(static_cast<std::int64_t>(upperBound) - lowerBound);
  return RoundHalfEven(Single(Single(r * span) + static_cast<float>(lowerBound)));
}

void frmMessage::TimerFrequency_Timer() {
  if (bStopped || Quiet()) return;
  timerFrequency_.SetEnabled(false);

  ++messageIndex_;
  // An empty list has nothing to show: it counts as none.
  if (!MessageList || MessageList->empty()) MessageList = FallbackList();
  if (messageIndex_ > static_cast<int>(MessageList->size()) - 1) messageIndex_ = 0;
  view_.SetCaption(PhraseForDisplay((*MessageList)[static_cast<std::size_t>(messageIndex_)], screenWidth_));

  const TwipsSize label = view_.LabelSize();
  view_.SetWindowHeight(label.height + kWindowExtraHeight);
  view_.SetWindowWidth(label.width + kWindowExtraWidth);

  // Pixels and twips in the view's own measure, so the edges drawn in
  // pixels are where the view puts the window.
  const float twipsPerPixelX = UsableTwipsPerPixel(view_.TwipsPerPixelX());
  const float twipsPerPixelY = UsableTwipsPerPixel(view_.TwipsPerPixelY());
  const int top = RndNum(PlacementBound(screenHeight_, label.height, twipsPerPixelY), 0);
  const int left = RndNum(PlacementBound(screenWidth_, label.width, twipsPerPixelX), 0);
  view_.SetWindowPosition(RoundHalfEven(Single(static_cast<float>(left) * twipsPerPixelX)),
                          RoundHalfEven(Single(static_cast<float>(top) * twipsPerPixelY)));

  view_.SetLabelVisible(true);
  if (!host_.SettingsWindowVisible() && !host_.TrayMenuOpen()) {
    view_.MakeTopMost();
    timerDisplayLength_.SetEnabled(true);
  }
  view_.Refresh();
  // The phrase is painted: what the compositor had presented by now cannot
  // hold it yet.
  EndFrameWait();
  if (timerDisplayLength_.Enabled() && frameClock_ && frameWait_) frameMark_ = frameClock_->PresentedFrames();
}

void frmMessage::TimerDisplayLength_Timer() {
  if (bStopped) return;
  if (WaitingForFrame()) return;  // the frame wait asks meanwhile
  if (!PhraseMayGo()) {
    frameWait_->SetEnabled(true);
    return;
  }
  HidePhrase();
}

void frmMessage::HidePhrase() {
  EndFrameWait();
  timerDisplayLength_.SetEnabled(false);
  view_.SetLabelVisible(false);
  timerFrequency_.SetEnabled(true);
}

void frmMessage::WaitForFrames(const FrameClock* clock, Timer* frameWait) {
  EndFrameWait();
  if (frameWait_) frameWait_->SetTick({});
  frameClock_ = clock;
  frameWait_ = frameWait;
  if (frameWait_) frameWait_->SetTick([this] { FrameWait_Timer(); });
}

bool frmMessage::PhraseMayGo() {
  if (!frameMark_ || !frameClock_) return true;
  if (PhraseSeen(frameMark_, frameClock_->PresentedFrames())) return true;
  return ++frameChecks_ > kMaxFrameChecks;
}

void frmMessage::FrameWait_Timer() {
  // While stopped nothing is asked; the display tick asks again on resume.
  if (bStopped) {
    frameWait_->SetEnabled(false);
    return;
  }
  if (PhraseMayGo()) HidePhrase();
}

void frmMessage::EndFrameWait() {
  frameMark_.reset();
  frameChecks_ = 0;
  if (frameWait_) frameWait_->SetEnabled(false);
}

bool frmMessage::Quiet() const {
  return attention_ && StaysQuiet(*attention_);
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
