// LoadSettings: the settings window's loading applies the stored settings
// to what shows and uses them: the font panel's preview label and colour
// picker, the timing panel's wheels and the flasher.
#pragma once

#include "display/message_flasher.h"
#include "library/settings_store.h"
#include "settings/color_picker.h"
#include "settings/preview_label.h"
#include "settings/wheel.h"

namespace qm {

// What LoadSettings applies the stored entries to.
struct SettingsTargets {
  PreviewLabel& lblPreview;
  ColorPicker& ColorPicker1;
  Wheel& bvlWHEEL1;
  Wheel& bvlWHEEL2;
  frmMessage& flasher;
};

// Reads the settings file once at start-up and applies it, with saving
// suppressed meanwhile:
//   1. the lines that convert fill their entries;
//   2. the font entries go to the preview label (name, size, bold, italic)
//      and then the colour; a value the label refuses is dropped and the
//      label keeps its own;
//   3. the colour picker takes the label's colour (its change handling
//      runs), the flasher's label the label's colour and font;
//   4. each wheel takes its entry, or 2 where the entry is 0 or unset;
//      where the entry was used, the flasher's timer then takes the wheel's
//      value too.
// A missing, empty or unreadable file applies nothing: the wheels' change
// handling runs with the values they show, so that the flasher's timers
// follow them.
// Either way loading ends with saving allowed and every entry holding the
// value in force (entries left unset are filled from the label, the picker
// and the wheels), so the first change writes all seven lines.
void LoadSettings(SettingsStore& store, const SettingsTargets& targets);

}  // namespace qm
