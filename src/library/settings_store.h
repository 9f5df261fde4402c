// The settings store: the seven display settings in memory (Settings) and
// in the settings file "\__.__" of the program folder, and the pending data
// file "\DATA01" promoted at start-up.
//
// The settings file: seven lines in the ANSI code page, CR LF between them
// and none after the last, one entry each in this order:
//   1 font name            text, as it is          Arial
//   2 font size, points    32-bit integer          12
//   3 bold                 True or False           True
//   4 italic               True or False           False
//   5 colour 0x00BBGGRR    32-bit integer          255
//   6 duration, ms         16-bit integer          50
//   7 frequency, seconds   16-bit integer          3
// Integers are written in decimal; an unset entry is an empty line.
// Reading is lenient where the file was edited by hand:
//   - an integer line converts when it holds an optional sign and decimal
//     digits, with blanks allowed around them, and the number fits the
//     entry's type; anything else (empty, letters, a fraction, hexadecimal,
//     out of range) does not convert;
//   - a Boolean line converts from True or False in any case, or from an
//     integer as above (0 is False, any other number True);
//   - an empty font-name line does not convert;
//   - a line that does not convert, or is missing, leaves its entry as it
//     was; lines after the seventh are ignored.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "display/message_flasher.h"
#include "platform/file_system.h"
#include "settings/color_picker.h"
#include "settings/preview_label.h"
#include "settings/wheel.h"

namespace qm {

inline constexpr std::string_view kSettingsFile = "\\__.__";
inline constexpr std::string_view kDataFile = "\\DATA";
inline constexpr std::string_view kPendingDataFile = "\\DATA01";

// The seven entries, each unset until loaded or first set.
struct Settings {
  std::optional<std::string> fontName;    // 0
  std::optional<std::int32_t> fontSize;   // 1, whole points
  std::optional<bool> bold;               // 2
  std::optional<bool> italic;             // 3
  std::optional<std::int32_t> color;      // 4, 0x00BBGGRR
  std::optional<std::int16_t> duration;   // 5, milliseconds on screen
  std::optional<std::int16_t> frequency;  // 6, seconds between phrases

  friend bool operator==(const Settings&, const Settings&) = default;
};

// Text conversions of the file's lines (see the top of this file).
std::optional<std::int32_t> ParseInt32(std::string_view line);
std::optional<std::int16_t> ParseInt16(std::string_view line);
std::optional<bool> ParseBool(std::string_view line);

// The file's content for the entries.
std::string FormatSettings(const Settings& settings);
// Takes every line of the text that converts into its entry; the others
// keep their values.
void ParseSettings(std::string_view text, Settings& settings);

// What LoadSettings applies the stored entries to: the font panel's preview
// label and colour picker, the timing panel's wheels and the flasher.
struct SettingsTargets {
  PreviewLabel& lblPreview;
  ColorPicker& ColorPicker1;
  Wheel& bvlWHEEL1;
  Wheel& bvlWHEEL2;
  frmMessage& flasher;
};

enum class SaveOutcome {
  Saved,
  // Nothing written: the settings are being loaded.
  Skipped,
  // The file could not be written; it holds what it held before.
  Failed,
};

// The message the user sees when the settings could not be saved.
std::string SettingsNotSavedText(std::string_view path);

class SettingsStore {
 public:
  SettingsStore(FileSystem& files, std::string programFolder);
  SettingsStore(const SettingsStore&) = delete;
  SettingsStore& operator=(const SettingsStore&) = delete;

  Settings& Record() { return settings_; }
  const Settings& Record() const { return settings_; }
  std::string Path() const;

  // While true, SaveSettings writes nothing.
  bool IsLoading = false;

  // Writes the whole file from the entries, in one attempt, unless the
  // settings are being loaded. On failure the file keeps its former
  // content and WriteFailed (when set) is told the file's path.
  SaveOutcome SaveSettings();
  std::function<void(const std::string& path)> WriteFailed;

  // Reads the file once at start-up and applies it, with saving suppressed
  // meanwhile:
  //   1. the lines that convert fill their entries;
  //   2. the font entries go to the preview label (name, size, bold,
  //      italic) and then the colour; a value the label refuses is dropped
  //      and the label keeps its own;
  //   3. the colour picker takes the label's colour (its change handling
  //      runs), the flasher's label the label's colour and font;
  //   4. each wheel takes its entry, or 2 where the entry is 0 or unset;
  //      where the entry was used, the flasher's timer then takes the
  //      wheel's value too.
  // A missing or empty file applies nothing: the wheels' change handling
  // runs with the values they show, so that the flasher's timers follow
  // them.
  // Either way loading ends with saving allowed and every entry holding the
  // value in force (entries left unset are filled from the label, the
  // picker and the wheels), so the first change writes all seven lines.
  void LoadSettings(const SettingsTargets& targets);

 private:
  FileSystem& files_;
  std::string programFolder_;
  Settings settings_;
};

// The pending data file: when "\DATA01" exists, it replaces "\DATA" (delete
// "\DATA", copy "\DATA01" to "\DATA", delete "\DATA01"). A failing step is
// passed over, except that "\DATA01" is kept when the copy failed, so that
// its data are not lost and are promoted at the next start.
void PromotePendingData(FileSystem& files, const std::string& programFolder);

}  // namespace qm
