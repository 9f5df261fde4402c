// The timing panel's core (the frame "Times and Duration"): the duration
// wheel bvlWHEEL1 (1 to 1000 milliseconds on screen) and the frequency
// wheel bvlWHEEL2 (1 to 30 seconds between phrases), each with its caption.
// Every change of a wheel, the user's or the program's, rewrites its
// caption, gives the flasher's timer the new interval, stores the settings
// entry and saves the settings (which writes nothing while they are being
// loaded). The frame on the screen mirrors this model; Changed tells it to.
#pragma once

#include <functional>
#include <string>

#include "display/message_flasher.h"
#include "library/settings_store.h"
#include "settings/wheel.h"

namespace qm {

class TimingPanel {
 public:
  TimingPanel(SettingsStore& store, frmMessage& flasher);
  TimingPanel(const TimingPanel&) = delete;
  TimingPanel& operator=(const TimingPanel&) = delete;

  Wheel bvlWHEEL1{1, 1000, 1};
  Wheel bvlWHEEL2{1, 30, 1};
  std::string lblDuration = "Duration: 1 Millisecond(s)";
  std::string lblFrequency = "Frequency: 1 Second(s)";

  void bvlWHEEL1_Change();
  void bvlWHEEL2_Change();

  // Called after each handler has run.
  std::function<void()> Changed;

 private:
  SettingsStore& store_;
  frmMessage& flasher_;
};

}  // namespace qm
