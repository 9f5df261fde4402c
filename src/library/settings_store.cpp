#include "library/settings_store.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "library/line_file.h"
#include "platform/ansi_text.h"

namespace qm {
namespace {

constexpr std::size_t kLineCount = 7;
// The timing a wheel takes when its entry is 0 or unset.
constexpr std::int16_t kFallbackTiming = 2;

std::string_view TrimBlanks(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
  return s;
}

template <typename Int>
std::optional<Int> ParseInteger(std::string_view line) {
  line = TrimBlanks(line);
  bool negative = false;
  if (!line.empty() && (line.front() == '+' || line.front() == '-')) {
    negative = line.front() == '-';
    line.remove_prefix(1);
  }
  if (line.empty() || line.front() < '0' || line.front() > '9') return std::nullopt;
  // Read as the wider type first, so that the most negative value converts.
  std::int64_t magnitude = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), magnitude);
  if (error != std::errc{} || end != line.data() + line.size()) return std::nullopt;
  const std::int64_t value = negative ? -magnitude : magnitude;
  if (value < std::numeric_limits<Int>::min() || value > std::numeric_limits<Int>::max()) return std::nullopt;
  return static_cast<Int>(value);
}

const char* BoolText(bool b) {
  return b ? "True" : "False";
}

template <typename T>
std::string IntText(const std::optional<T>& v) {
  return v ? std::to_string(*v) : std::string();
}

// Whole points as the font chooser reads them: rounded half to even.
std::int32_t WholePoints(double points) {
  return static_cast<std::int32_t>(std::nearbyint(points));
}

}  // namespace

std::optional<std::int32_t> ParseInt32(std::string_view line) {
  return ParseInteger<std::int32_t>(line);
}
std::optional<std::int16_t> ParseInt16(std::string_view line) {
  return ParseInteger<std::int16_t>(line);
}

std::optional<bool> ParseBool(std::string_view line) {
  const std::string_view word = TrimBlanks(line);
  if (EqualsNoCase(word, "True")) return true;
  if (EqualsNoCase(word, "False")) return false;
  if (const auto number = ParseInt32(word)) return *number != 0;
  return std::nullopt;
}

std::string FormatSettings(const Settings& s) {
  return JoinLines({
      s.fontName.value_or(""),
      IntText(s.fontSize),
      s.bold ? BoolText(*s.bold) : "",
      s.italic ? BoolText(*s.italic) : "",
      IntText(s.color),
      IntText(s.duration),
      IntText(s.frequency),
  });
}

void ParseSettings(std::string_view text, Settings& s) {
  std::array<std::optional<std::string_view>, kLineCount> lines;
  std::size_t count = 0;
  // Only the first seven lines matter; the rest are passed over unstored.
  ForEachLine(text, [&](std::string_view line) {
    if (count < kLineCount) lines[count] = line;
    ++count;
  });
  auto take = [](const std::optional<std::string_view>& line, auto& entry, auto parse) {
    if (!line) return;
    if (auto value = parse(*line)) entry = std::move(*value);
  };
  take(lines[0], s.fontName,
       [](std::string_view l) { return l.empty() ? std::nullopt : std::optional<std::string>(l); });
  take(lines[1], s.fontSize, ParseInt32);
  take(lines[2], s.bold, ParseBool);
  take(lines[3], s.italic, ParseBool);
  take(lines[4], s.color, ParseInt32);
  take(lines[5], s.duration, ParseInt16);
  take(lines[6], s.frequency, ParseInt16);
}

std::string SettingsNotSavedText(std::string_view path) {
  std::string text = "The settings could not be saved to the file ";
  text += path;
  text += ". The settings saved before are kept.";
  return text;
}

SettingsStore::SettingsStore(FileSystem& files, std::string programFolder)
    : files_(files), programFolder_(std::move(programFolder)) {}

std::string SettingsStore::Path() const {
  return ProgramPath(programFolder_, kSettingsFile);
}

SaveOutcome SettingsStore::SaveSettings() {
  if (IsLoading) return SaveOutcome::Skipped;
  const std::string path = Path();
  if (files_.WriteAll(path, FormatSettings(settings_))) return SaveOutcome::Saved;
  if (WriteFailed) WriteFailed(path);
  return SaveOutcome::Failed;
}

void SettingsStore::LoadSettings(const SettingsTargets& t) {
  using std::chrono::milliseconds;
  using std::chrono::seconds;
  IsLoading = true;
  const std::optional<std::string> text = files_.ReadAll(Path());
  Settings& s = settings_;

  if (text && !text->empty()) {
    ParseSettings(*text, s);

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
  IsLoading = false;
}

void PromotePendingData(FileSystem& files, const std::string& programFolder) {
  const std::string pending = ProgramPath(programFolder, kPendingDataFile);
  if (!files.Exists(pending)) return;
  const std::string data = ProgramPath(programFolder, kDataFile);
  files.Remove(data);
  if (files.Copy(pending, data)) files.Remove(pending);
}

}  // namespace qm
