// The font panel's core (the frame "Font"): the preview label lblPreview,
// whose font and colour the next start hands to the flasher, and the colour
// picker ColorPicker1. A change of the picker, the user's or the program's,
// colours the preview and the flasher's label at once, stores the settings
// entry and saves the settings (which writes nothing while they are being
// loaded). Pure white, the overlay's transparent key, becomes 0x00FFFFFE.
// The frame on the screen mirrors this model; Changed tells it to.
#pragma once

#include <functional>

#include "display/message_flasher.h"
#include "library/settings_store.h"
#include "settings/color_picker.h"
#include "settings/preview_label.h"

namespace qm {

class FontPanel {
 public:
  FontPanel(SettingsStore& store, frmMessage& flasher, FontSpec previewFont = {});
  FontPanel(const FontPanel&) = delete;
  FontPanel& operator=(const FontPanel&) = delete;

  PreviewLabel lblPreview;
  // Starts with the preview's colour.
  ColorPicker ColorPicker1{kLightGrey};

  void ColorPicker1_Change();

  // Called after the handler has run.
  std::function<void()> Changed;

 private:
  SettingsStore& store_;
  frmMessage& flasher_;
};

}  // namespace qm
