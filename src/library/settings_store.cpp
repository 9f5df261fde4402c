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

std::string SettingsUnreadableText(std::string_view path) {
  std::string text = "The settings file ";
  text += path;
  text +=
      " could not be read when Quillmere started (another program may hold it, or it may not be "
      "readable). To keep the settings it holds, Quillmere will not change it: changes made now last "
      "until Quillmere ends. Restart Quillmere once the file can be read.";
  return text;
}

SettingsStore::SettingsStore(FileSystem& files, std::string programFolder)
    : files_(files), programFolder_(std::move(programFolder)) {}

std::string SettingsStore::Path() const {
  return ProgramPath(programFolder_, kSettingsFile);
}

ReadOutcome SettingsStore::ReadSettings() {
  const std::string path = Path();
  const std::optional<std::string> text = files_.ReadAll(path);
  if (!text) {
    unreadable_ = files_.Occupied(path);
    return unreadable_ ? ReadOutcome::Unreadable : ReadOutcome::Missing;
  }
  unreadable_ = false;
  if (text->empty()) return ReadOutcome::Missing;
  ParseSettings(*text, settings_);
  return ReadOutcome::Loaded;
}

SaveOutcome SettingsStore::SaveSettings() {
  if (IsLoading) return SaveOutcome::Skipped;
  const std::string path = Path();
  if (unreadable_) {
    if (!toldUnreadable_ && Tell) Tell(SettingsUnreadableText(path));
    toldUnreadable_ = true;
    return SaveOutcome::Refused;
  }
  if (files_.WriteAll(path, FormatSettings(settings_))) return SaveOutcome::Saved;
  if (Tell) Tell(SettingsNotSavedText(path));
  return SaveOutcome::Failed;
}

void PromotePendingData(FileSystem& files, const std::string& programFolder) {
  const std::string pending = ProgramPath(programFolder, kPendingDataFile);
  if (!files.Exists(pending)) return;
  // Copy replaces "\DATA" atomically: no moment without it.
  if (files.Copy(pending, ProgramPath(programFolder, kDataFile))) files.Remove(pending);
}

}  // namespace qm
