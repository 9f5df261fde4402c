// The settings window's share of the core for tests: a real flasher on
// fake timers and a silent overlay, the settings store on a given file
// system, and the font and timing panels wired as the settings window
// wires them.
#pragma once

#include <chrono>
#include <string>

#include "../../support/fake_clock.h"
#include "display/message_flasher.h"
#include "library/settings_store.h"
#include "settings/font_panel.h"
#include "settings/timing_panel.h"

namespace qm::test {

// An overlay that draws nothing and keeps only what the settings reach.
class QuietOverlay final : public OverlayView {
 public:
  void SetCaption(std::string_view) override {}
  TwipsSize LabelSize() const override { return {600, 240}; }
  void SetLabelVisible(bool) override {}
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

  FontSpec font;
  OleColor color = 0;
  bool visible = false;
};

class ZeroRandom final : public RandomSource {
 public:
  void Randomize(unsigned) override {}
  float Next() override { return 0; }
};

class NoHost final : public FlasherHost {
 public:
  bool SettingsWindowVisible() const override { return false; }
  bool TrayMenuOpen() const override { return false; }
};

struct SettingsWorld {
  SettingsWorld(FileSystem& files, const std::string& folder) : store(files, folder) {
    flasher.Form_Load({1024, 768, 15, 15}, 0);
  }

  void Load() {
    store.LoadSettings({font.lblPreview, font.ColorPicker1, timing.bvlWHEEL1, timing.bvlWHEEL2, flasher});
  }

  std::chrono::milliseconds DisplayInterval() const { return display->Interval(); }
  std::chrono::milliseconds FrequencyInterval() const { return frequency->Interval(); }

  FakeClock clock;
  std::unique_ptr<FakeClock::FakeTimer> frequency = clock.MakeTimer();
  std::unique_ptr<FakeClock::FakeTimer> display = clock.MakeTimer();
  QuietOverlay overlay;
  ZeroRandom random;
  NoHost host;
  frmMessage flasher{overlay, *frequency, *display, random, host};
  SettingsStore store;
  FontPanel font{store, flasher};
  TimingPanel timing{store, flasher};
};

}  // namespace qm::test
