// Line files: the category files "\Lists\<name>.lst", the category-state
// file "\_._" and the settings file "\__.__".
//
// Format: 8-bit text in the ANSI code page (Windows-1252), no byte-order
// mark. Lines are separated by CR LF (0x0D 0x0A), with nothing after the
// last line; an empty file holds no lines. A lone CR or LF is part of its
// line. A file is read whole and written whole, atomically.
//
// Marked lines (category files and the category-state file): the first
// character is the mark, the digit 1 for checked and 0 for unchecked, and
// the rest of the line is the item's text, untrimmed and possibly empty,
// for example "1Calm" or "0I am relaxed". Lines edited by hand are read
// leniently, so that a hand-written list loads in full:
//   - any other digit reads as unchecked and is dropped like a mark;
//   - a line whose first character is no digit reads as an unchecked item
//     whose text is the whole line as written;
//   - an empty line reads as an unchecked item with an empty text.
// The program itself writes only 0 and 1.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace qm {

inline constexpr std::string_view kLineBreak = "\r\n";

// Calls f(std::string_view line) for each line of the text, in order. An
// empty text has no lines; a text ending in CR LF ends with an empty line.
template <class F>
void ForEachLine(std::string_view text, F&& f) {
  if (text.empty()) return;
  for (;;) {
    const std::size_t end = text.find(kLineBreak);
    if (end == std::string_view::npos) {
      f(text);
      return;
    }
    f(text.substr(0, end));
    text.remove_prefix(end + kLineBreak.size());
  }
}

std::vector<std::string> SplitLines(std::string_view text);
std::string JoinLines(const std::vector<std::string>& lines);

// The file's lines, or nothing when it cannot be read (missing, a folder,
// no permission, too large).
std::optional<std::vector<std::string>> ReadLines(FileSystem& files, const std::string& path);
// Replaces the file's content with the lines; false when the file could not
// be written, in which case it is left exactly as it was.
bool WriteLines(FileSystem& files, const std::string& path, const std::vector<std::string>& lines);

struct MarkedLine {
  bool checked = false;
  std::string text;
};

MarkedLine ParseMarkedLine(std::string_view line);
std::string FormatMarkedLine(bool checked, std::string_view text);

}  // namespace qm
