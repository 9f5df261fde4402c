#include "settings/font_panel.h"

namespace qm {

FontPanel::FontPanel(SettingsStore& store, frmMessage& flasher, FontSpec previewFont)
    : lblPreview(previewFont, kLightGrey), store_(store), flasher_(flasher) {
  ColorPicker1.Change = [this] { ColorPicker1_Change(); };
}

void FontPanel::ColorPicker1_Change() {
  // Setting the picker runs this handler again, which finds the new value
  // and completes; this run then completes with the same value.
  if (ColorPicker1.Value() == kTransparentKey) ColorPicker1.SetValue(kAlmostWhite);
  // A colour the label refuses leaves the preview as it was; the flasher
  // and the entry take what the preview shows.
  lblPreview.SetForeColor(ColorPicker1.Value());
  flasher_.SetLabelColor(lblPreview.ForeColor());
  lblPreview.Refresh();
  store_.Record().color = static_cast<std::int32_t>(lblPreview.ForeColor());
  store_.SaveSettings();
  if (Changed) Changed();
}

}  // namespace qm
