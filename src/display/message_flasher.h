// The message flasher, frmMessage: the overlay that cycles through the
// rotation list on two timers. Every period of TimerFrequency it puts the
// next phrase into its label, shrinks itself around the label, jumps to a
// random place on the screen, raises itself into the top-most band and arms
// TimerDisplayLength; that timer's tick hides the label and re-arms the
// interval timer. Everything but the phrase is the transparent key colour.
//
// This is the portable half: the cycle, the placement arithmetic and the
// label's look. The window itself is an OverlayView (the Win32 overlay, or
// a recording double in tests); time comes in through the two Timer ports.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/font_spec.h"
#include "platform/frame_clock.h"
#include "platform/ole_color.h"
#include "platform/timer.h"
#include "platform/user_attention.h"

namespace qm {

// The rotation list: unset (nothing gathered) or a 0-based list of phrases.
using PhraseList = std::optional<std::vector<std::string>>;

// The screen as the screen service reports it at load: its size in pixels,
// and the service's own twips per pixel, worked out from the monitor's
// physical size. The flasher keeps the size; it never places with the
// physical ratios, which on many monitors disagree with the logical inch
// that windows are laid out in: it takes the view's measure instead
// (OverlayView::TwipsPerPixelX/Y).
struct ScreenMetrics {
  float width = 0;
  float height = 0;
  float physicalTwipsPerPixelX = 15;
  float physicalTwipsPerPixelY = 15;
};

// Sizes and places in twips (1/1440 inch).
struct TwipsSize {
  int width = 0;
  int height = 0;
};

// The overlay window as the flasher drives it.
class OverlayView {
 public:
  virtual ~OverlayView() = default;

  // The label's text; the label sizes itself to the text.
  virtual void SetCaption(std::string_view text) = 0;
  // The label's size in twips, as sized to its current text and font.
  virtual TwipsSize LabelSize() const = 0;
  // Twips per pixel across and down, as the view itself converts between
  // them (1440 / the screen's logical dots per inch): the flasher works out
  // a phrase's place in pixels with these, so that the place the view goes
  // to is the place worked out.
  virtual float TwipsPerPixelX() const = 0;
  virtual float TwipsPerPixelY() const = 0;
  virtual void SetLabelVisible(bool visible) = 0;
  virtual void SetLabelFont(const FontSpec& font) = 0;
  virtual void SetLabelColor(OleColor color) = 0;

  virtual void SetWindowHeight(int twips) = 0;
  virtual void SetWindowWidth(int twips) = 0;
  virtual void SetWindowPosition(int leftTwips, int topTwips) = 0;
  // Makes every pixel of the key colour invisible; false when the window
  // could not be made layered.
  virtual bool MakeTransparent(OleColor key) = 0;
  // Raises the window to the top of the top-most band, keeping its place.
  virtual void MakeTopMost() = 0;
  // Repaints the window now.
  virtual void Refresh() = 0;

  // The window's own show, hide and visibility (run control and the tray
  // use them).
  virtual void Show() = 0;
  virtual void Hide() = 0;
  virtual bool Visible() const = 0;
};

// What the flasher asks of the settings window before it raises a phrase:
// while that window is shown or the tray menu is open, the cycle halts.
class FlasherHost {
 public:
  virtual ~FlasherHost() = default;
  virtual bool SettingsWindowVisible() const = 0;
  virtual bool TrayMenuOpen() const = 0;
};

// A uniform generator of single-precision numbers in [0, 1).
class RandomSource {
 public:
  virtual ~RandomSource() = default;
  // Starts the sequence afresh from a number (the flasher uses the seconds
  // since midnight).
  virtual void Randomize(unsigned start) = 0;
  virtual float Next() = 0;
};

// What of a phrase the label is given: no more characters than the screen
// is wide in pixels (no letter is narrower than a pixel, so the rest could
// never be seen), all of it when the width is unknown (0 or less). It costs
// nothing whatever the phrase's length: the phrase is not copied.
std::string_view PhraseForDisplay(std::string_view phrase, int screenWidthPixels);

// The flasher. Both timers are disabled until Begin runs (the flasher is
// stopped from its creation until run control starts it); their ticks are
// wired to the two tick routines for the flasher's life, so the timers must
// outlive it. Creating it gives the view the label's first font and colour.
class frmMessage {
 public:
  // The window is the label's size plus these, in twips.
  static constexpr int kWindowExtraWidth = 50;
  static constexpr int kWindowExtraHeight = 150;

  // The list the flasher holds from its creation until run control gives it
  // one, and the list it falls back to when a tick finds none.
  static const std::vector<std::string>& CreationList();
  static const std::vector<std::string>& FallbackList();

  frmMessage(OverlayView& view, Timer& timerFrequency, Timer& timerDisplayLength, RandomSource& random,
             const FlasherHost& host);
  ~frmMessage();
  frmMessage(const frmMessage&) = delete;
  frmMessage& operator=(const frmMessage&) = delete;

  // The window's load routine: starts the random sequence, puts the first
  // phrase of the creation list into the label, makes the window
  // transparent and keeps the screen's size.
  void Form_Load(const ScreenMetrics& screen, unsigned secondsSinceMidnight);

  // The rotation list: an assignment replaces it and keeps MessageIndex.
  // An empty list counts as none: the next tick falls back. The list keeps
  // every phrase whole; only what the label is given is cut to the screen
  // (PhraseForDisplay).
  PhraseList MessageList;
  // While true both tick routines do nothing.
  bool bStopped = false;

  // Runs the display tick: unless stopped, hides the label and arms the
  // interval timer, so the next phrase comes one frequency period later.
  void Begin();
  // A random whole number between the two bounds, both included: the next
  // generator value times (upper - lower), plus lower, rounded half to even
  // in single precision, so the two ends come with half the weight.
  int RndNum(int upperBound, int lowerBound);

  void TimerFrequency_Timer();
  void TimerDisplayLength_Timer();

  // Every phrase seen: with a frame clock, the display tick leaves a raised
  // phrase up until the compositor has presented a frame holding it, and
  // meanwhile asks again at every tick of `frameWait` (a short period),
  // kMaxFrameChecks times at most, so a compositor that stops presenting
  // cannot keep a phrase up for good. Without a clock, or where it tells
  // nothing, a phrase goes at the time asked. The clock and the timer must
  // outlive the flasher.
  static constexpr int kMaxFrameChecks = 250;
  void WaitForFrames(const FrameClock* clock, Timer* frameWait);
  // True while the phrase on the screen waits for a frame that shows it.
  bool WaitingForFrame() const { return frameWait_ && frameWait_->Enabled(); }

  // Never in the way: while StaysQuiet says so, an interval tick shows
  // nothing and comes again one period later (the interval timer stays
  // enabled), as while stopped. Run control's watchdog also pauses the
  // whole display then. Without an attention port the flasher is never
  // quiet. The port must outlive the flasher.
  void HeedUser(const UserAttention* attention) { attention_ = attention; }
  bool Quiet() const;

  Timer& TimerFrequency() { return timerFrequency_; }
  Timer& TimerDisplayLength() { return timerDisplayLength_; }

  // The label's look, set from outside (settings, font panel, run control).
  void SetLabelFont(const FontSpec& font);
  const FontSpec& LabelFont() const { return labelFont_; }
  void SetLabelColor(OleColor color);
  OleColor LabelColor() const { return labelColor_; }

  // Hides the phrase (run control does so before it shows the overlay).
  void HideLabel() { view_.SetLabelVisible(false); }

  // The window's own show, hide and visibility.
  void Show() { view_.Show(); }
  void Hide() { view_.Hide(); }
  bool Visible() const { return view_.Visible(); }

  int MessageIndex() const { return messageIndex_; }
  // The screen's size in pixels as kept at load.
  int ScreenWidth() const { return screenWidth_; }
  int ScreenHeight() const { return screenHeight_; }

 private:
  OverlayView& view_;
  Timer& timerFrequency_;
  Timer& timerDisplayLength_;
  RandomSource& random_;
  const FlasherHost& host_;
  int messageIndex_ = 0;
  int screenWidth_ = 0;
  int screenHeight_ = 0;
  FontSpec labelFont_{};
  OleColor labelColor_ = kLightGrey;

  // Whether the raised phrase may go now; counts the checks made.
  bool PhraseMayGo();
  void FrameWait_Timer();
  // The display tick's own work: the label hidden, the interval timer armed.
  void HidePhrase();
  void EndFrameWait();

  const FrameClock* frameClock_ = nullptr;
  Timer* frameWait_ = nullptr;
  // The frames presented when the raised phrase was painted; nothing when
  // no raised phrase waits to be seen.
  std::optional<std::uint64_t> frameMark_;
  int frameChecks_ = 0;
  const UserAttention* attention_ = nullptr;
};

}  // namespace qm
