#include "settings/settings_loader.h"

#include "platform/rounding.h"

#include <chrono>
#include <cstdint>

namespace qm {
namespace {

// The timing a wheel takes when its entry is 0 or unset.
constexpr std::int16_t kFallbackTiming = 2;

// Whole points as the font chooser reads them: rounded half to even.
std::int32_t WholePoints(double points) {
  return RoundHalfEven(points);
}

}  // namespace

void LoadSettings(SettingsStore& store, const SettingsTargets& t) {
  using std::chrono::milliseconds;
  using std::chrono::seconds;
  store.IsLoading = true;
  Settings& s = store.Record();

  if (store.ReadSettings() == ReadOutcome::Loaded) {
    // The preview label, in this order; a refused value is dropped.
    if (s.fontName && !t.lblPreview.SetFontName(*s.fontName)) s.fontName.reset();
    if (s.fontSize && !t.lblPreview.SetFontSize(*s.fontSize)) s.fontSize.reset();
    if (s.bold) t.lblPreview.SetBold(*s.bold);
    if (s.italic) t.lblPreview.SetItalic(*s.italic);
    if (s.color && !t.lblPreview.SetForeColor(static_cast<OleColor>(*s.color))) s.color.reset();

    t.ColorPicker1.SetValue(t.lblPreview.ForeColor());
    t.flasher.SetLabelColor(t.lblPreview.ForeColor());
    t.flasher.SetLabelFont(t.lblPreview.Font());

    // Each wheel's change handling labels it, sets the flasher's timer and
    // stores its entry.
    if (!s.duration || *s.duration == 0) {
      t.bvlWHEEL1.SetValue(kFallbackTiming);
    } else {
      t.bvlWHEEL1.SetValue(*s.duration);
      t.flasher.TimerDisplayLength().SetInterval(milliseconds(t.bvlWHEEL1.Value()));
    }
    if (!s.frequency || *s.frequency == 0) {
      t.bvlWHEEL2.SetValue(kFallbackTiming);
    } else {
      t.bvlWHEEL2.SetValue(*s.frequency);
      t.flasher.TimerFrequency().SetInterval(seconds(t.bvlWHEEL2.Value()));
    }
  } else {
    // Nothing stored: the flasher's timers follow what the wheels show.
    t.bvlWHEEL1.SetValue(t.bvlWHEEL1.Value());
    t.bvlWHEEL2.SetValue(t.bvlWHEEL2.Value());
  }

  // Every entry holds the value in force from here on.
  const FontSpec& font = t.lblPreview.Font();
  if (!s.fontName) s.fontName = font.name;
  if (!s.fontSize) s.fontSize = WholePoints(font.size);
  if (!s.bold) s.bold = font.bold;
  if (!s.italic) s.italic = font.italic;
  if (!s.color) s.color = static_cast<std::int32_t>(t.ColorPicker1.Value());
  if (!s.duration) s.duration = t.bvlWHEEL1.Value();
  if (!s.frequency) s.frequency = t.bvlWHEEL2.Value();
  store.IsLoading = false;
}

}  // namespace qm
