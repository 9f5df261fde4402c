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
//     was; lines after the seventh are ignored;
//   - a UTF-8 byte-order mark and LF-only line ends are read as the line
//     files read them (line_file.h).
//
// A settings file that exists but cannot be read (held by another program,
// no permission, too large) is never replaced: the program runs on its
// defaults and tells the user once, at the first change it cannot save.
//
// Applying the entries to the panels and the flasher is the settings
// window's business (settings/settings_loader.h); this store only reads
// and writes them.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/file_system.h"

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

enum class SaveOutcome {
  Saved,
  // Nothing written: the settings are being loaded.
  Skipped,
  // The file could not be written; it holds what it held before.
  Failed,
  // The file could not be read at start-up, so it is not replaced.
  Refused,
};

enum class ReadOutcome {
  Loaded,      // the lines that convert are in the entries
  Missing,     // no file, or an empty one: nothing taken
  Unreadable,  // the file is there but could not be read: nothing taken
};

// The messages the user sees when the settings could not be saved (the
// path is UTF-8, as the messages are).
std::string SettingsNotSavedText(std::string_view path);
std::string SettingsUnreadableText(std::string_view path);

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

  // Reads the file once, at start-up, into the entries (the lines that
  // convert). An unreadable file is remembered: it is never replaced.
  ReadOutcome ReadSettings();

  // Writes the whole file from the entries, in one attempt, unless the
  // settings are being loaded or the file could not be read at start-up.
  // A failure leaves the file as it was and is told (Tell) each time; a
  // file that could not be read is told once.
  SaveOutcome SaveSettings();
  // Shows a message to the user (a stop box in the program).
  std::function<void(const std::string& message)> Tell;

 private:
  FileSystem& files_;
  std::string programFolder_;
  Settings settings_;
  bool unreadable_ = false;
  bool toldUnreadable_ = false;
};

// The pending data file: when "\DATA01" exists, it replaces "\DATA" and is
// deleted. "\DATA" is replaced atomically, so it always holds either its
// old or its new content; when the copy fails "\DATA01" is kept, so that
// its data are not lost and are promoted at the next start.
void PromotePendingData(FileSystem& files, const std::string& programFolder);

}  // namespace qm
