#include "library/line_file.h"

namespace qm {

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  ForEachLine(text, [&](std::string_view line) { lines.emplace_back(line); });
  return lines;
}

std::string JoinLines(const std::vector<std::string>& lines) {
  std::size_t size = 0;
  for (const std::string& line : lines) size += line.size() + kLineBreak.size();
  std::string text;
  text.reserve(size);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i > 0) text += kLineBreak;
    text += lines[i];
  }
  return text;
}

std::optional<std::vector<std::string>> ReadLines(FileSystem& files, const std::string& path) {
  const std::optional<std::string> text = files.ReadAll(path);
  if (!text) return std::nullopt;
  return SplitLines(*text);
}

bool WriteLines(FileSystem& files, const std::string& path, const std::vector<std::string>& lines) {
  return files.WriteAll(path, JoinLines(lines));
}

MarkedLine ParseMarkedLine(std::string_view line) {
  if (line.empty() || line.front() < '0' || line.front() > '9') return {false, std::string(line)};
  return {line.front() == '1', std::string(line.substr(1))};
}

std::string FormatMarkedLine(bool checked, std::string_view text) {
  std::string line;
  line.reserve(text.size() + 1);
  line += checked ? '1' : '0';
  line += text;
  return line;
}

}  // namespace qm
