#include "settings/timing_panel.h"

#include <chrono>

namespace qm {

TimingPanel::TimingPanel(SettingsStore& store, frmMessage& flasher) : store_(store), flasher_(flasher) {
  bvlWHEEL1.Change = [this] { bvlWHEEL1_Change(); };
  bvlWHEEL2.Change = [this] { bvlWHEEL2_Change(); };
}

void TimingPanel::bvlWHEEL1_Change() {
  lblDuration = "Duration: " + std::to_string(bvlWHEEL1.Value()) + " Millisecond(s)";
  flasher_.TimerDisplayLength().SetInterval(std::chrono::milliseconds(bvlWHEEL1.Value()));
  store_.Record().duration = bvlWHEEL1.Value();
  store_.SaveSettings();
  if (Changed) Changed();
}

void TimingPanel::bvlWHEEL2_Change() {
  lblFrequency = "Frequency: " + std::to_string(bvlWHEEL2.Value()) + " Second(s)";
  flasher_.TimerFrequency().SetInterval(std::chrono::seconds(bvlWHEEL2.Value()));
  store_.Record().frequency = bvlWHEEL2.Value();
  store_.SaveSettings();
  if (Changed) Changed();
}

}  // namespace qm
