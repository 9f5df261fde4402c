#include "settings/font_panel.h"

#include "platform/rounding.h"

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

void FontPanel::cmdEditFont_Click(FontChooser& CommonDialog1) {
  const FontSpec before = lblPreview.Font();
  CommonDialog1.SetFlags(kEditFontFlags);
  CommonDialog1.SetFontSize(RoundHalfEven(before.size));
  CommonDialog1.SetFontName(before.name);
  CommonDialog1.SetFontBold(before.bold);
  CommonDialog1.SetFontItalic(before.italic);
  CommonDialog1.ShowFont();

  const DialogFont chosen = CommonDialog1.Font();
  FontSpec font;
  font.name = chosen.name;
  font.size = chosen.size;
  font.bold = chosen.bold;
  font.italic = chosen.italic;
  font.underline = chosen.underline;
  font.strikethrough = chosen.strikethrough;
  lblPreview.SetFont(font);

  const FontSpec& shown = lblPreview.Font();
  Settings& s = store_.Record();
  s.fontSize = RoundHalfEven(shown.size);
  s.bold = shown.bold;
  s.italic = shown.italic;
  s.fontName = shown.name;
  store_.SaveSettings();
  if (Changed) Changed();
}

}  // namespace qm
