// Doubles for a real flasher: an overlay that keeps what it was told and
// draws nothing (for tests outside the display's own), a generator of
// scripted values, a host whose settings window and tray menu are both
// closed, and a user whose notification state and window in front a test
// sets.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "display/message_flasher.h"
#include "platform/user_attention.h"

namespace qm::test {

class StateOverlay final : public OverlayView {
 public:
  void SetCaption(std::string_view text) override { caption = text; }
  TwipsSize LabelSize() const override { return {1200, 300}; }
  float TwipsPerPixelX() const override { return 15; }
  float TwipsPerPixelY() const override { return 15; }
  void SetLabelVisible(bool v) override { labelVisible = v; }
  void SetLabelFont(const FontSpec& f) override { font = f; }
  void SetLabelColor(OleColor c) override { color = c; }
  void SetWindowHeight(int) override {}
  void SetWindowWidth(int) override {}
  void SetWindowPosition(int, int) override {}
  bool MakeTransparent(OleColor) override { return true; }
  void MakeTopMost() override {}
  void Refresh() override {}
  void Show() override { visible = true; }
  void Hide() override { visible = false; }
  bool Visible() const override { return visible; }

  std::string caption;
  bool labelVisible = false;
  bool visible = false;
  FontSpec font;
  OleColor color = 0;
};

// Hands out the queued values first, then its one value for ever; keeps
// the starting numbers it was given.
class FixedRandom final : public RandomSource {
 public:
  explicit FixedRandom(float value = 0.5f) : value_(value) {}
  void Randomize(unsigned start) override { starts.push_back(start); }
  float Next() override {
    if (values.empty()) return value_;
    const float v = values.front();
    values.pop_front();
    return v;
  }
  std::deque<float> values;
  std::vector<unsigned> starts;

 private:
  float value_;
};

class ClosedHost final : public FlasherHost {
 public:
  bool SettingsWindowVisible() const override { return false; }
  bool TrayMenuOpen() const override { return false; }
};

class SetAttention final : public UserAttention {
 public:
  std::optional<NotificationState> UserNotificationState() const override { return state; }
  ForegroundWindow Foreground() const override { return foreground; }

  // A window of another program covering the whole of a 1920 x 1080
  // monitor.
  void FullScreenProgram() {
    foreground = {ForegroundWindow::Kind::Other, {0, 0, 1920, 1080}, {0, 0, 1920, 1080}};
  }

  std::optional<NotificationState> state;
  ForegroundWindow foreground;
};

}  // namespace qm::test
