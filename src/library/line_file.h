// Line files: the category files "\Lists\<name>.lst", the category-state
// file "\_._" and the settings file "\__.__".
//
// Format: 8-bit text in the ANSI code page (Windows-1252), no byte-order
// mark. Lines are separated by CR LF (0x0D 0x0A), with nothing after the
// last line; an empty file holds no lines. A file is read whole and written
// whole, atomically, and the program always writes exactly this form.
//
// Reading is lenient with files edited by hand in other editors: a UTF-8
// byte-order mark at the start is skipped, a lone LF ends a line as CR LF
// does, and a line break at the very end adds no empty line. A lone CR is
// part of its line.
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

inline constexpr std::string_view kUtf8ByteOrderMark = "\xEF\xBB\xBF";

// Calls f(std::string_view line) for each line of the text, in order (see
// the top of this file for what ends a line). An empty text has no lines.
template <class F>
void ForEachLine(std::string_view text, F&& f) {
  if (text.starts_with(kUtf8ByteOrderMark)) text.remove_prefix(kUtf8ByteOrderMark.size());
  while (!text.empty()) {
    const std::size_t lf = text.find('\n');
    if (lf == std::string_view::npos) {
      f(text);
      return;
    }
    const std::size_t end = lf > 0 && text[lf - 1] == '\r' ? lf - 1 : lf;
    f(text.substr(0, end));
    text.remove_prefix(lf + 1);
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
