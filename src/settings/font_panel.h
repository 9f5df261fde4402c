// The font panel's core (the frame "Font"): the preview label lblPreview,
// whose font and colour the next start hands to the flasher, and the colour
// picker ColorPicker1. A change of the picker, the user's or the program's,
// colours the preview and the flasher's label at once, stores the settings
// entry and saves the settings (which writes nothing while they are being
// loaded). Pure white, the overlay's transparent key, becomes 0x00FFFFFE.
// The frame on the screen mirrors this model; Changed tells it to.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "display/message_flasher.h"
#include "library/settings_store.h"
#include "platform/common_dialog.h"
#include "settings/color_picker.h"
#include "settings/preview_label.h"

namespace qm {

// The font chooser as the panel drives it: the settings window's common
// dialog object. The chooser starts from the font set here and, when the
// user confirms it, returns the chosen one into Font(); a cancel leaves
// everything as it was set and returns normally.
class FontChooser {
 public:
  virtual ~FontChooser() = default;
  virtual void SetFlags(std::uint32_t flags) = 0;
  virtual void SetFontSize(std::int32_t points) = 0;
  virtual void SetFontName(const std::string& name) = 0;
  virtual void SetFontBold(bool bold) = 0;
  virtual void SetFontItalic(bool italic) = 0;
  // Opens the chooser and returns when it closes.
  virtual void ShowFont() = 0;
  virtual DialogFont Font() = 0;
};

// The chooser's flags as the panel opens it: screen fonts only.
inline constexpr std::uint32_t kEditFontFlags = 1;

class FontPanel {
 public:
  FontPanel(SettingsStore& store, frmMessage& flasher, FontSpec previewFont = {});
  FontPanel(const FontPanel&) = delete;
  FontPanel& operator=(const FontPanel&) = delete;

  PreviewLabel lblPreview;
  // Starts with the preview's colour.
  ColorPicker ColorPicker1{kLightGrey};

  void ColorPicker1_Change();

  // "Edit Font": the chooser opens on the preview's font (its size rounded
  // to whole points, a half to the even one); whatever it closes with, OK
  // or Cancel, becomes the preview's font, is stored in entries 1, 2, 3 and
  // 0 and is saved. A font the preview refuses leaves the preview as it
  // was, and the entries then store what the preview shows.
  void cmdEditFont_Click(FontChooser& CommonDialog1);

  // Called after the handler has run.
  std::function<void()> Changed;

 private:
  SettingsStore& store_;
  frmMessage& flasher_;
};

}  // namespace qm
