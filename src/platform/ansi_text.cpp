#include "platform/ansi_text.h"

#include <algorithm>

namespace qm {

char LowerAnsiChar(char c) {
  const auto u = static_cast<unsigned char>(c);
  if (u >= 'A' && u <= 'Z') return static_cast<char>(u + 0x20);
  // Latin-1 capitals, except the multiplication sign at 0xD7.
  if (u >= 0xC0 && u <= 0xDE && u != 0xD7) return static_cast<char>(u + 0x20);
  switch (u) {
    case 0x8A: return static_cast<char>(0x9A);  // S caron
    case 0x8C: return static_cast<char>(0x9C);  // ligature OE
    case 0x8E: return static_cast<char>(0x9E);  // Z caron
    case 0x9F: return static_cast<char>(0xFF);  // Y diaeresis
    default: return c;
  }
}

std::string LowerAnsi(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(), LowerAnsiChar);
  return out;
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return LowerAnsiChar(x) == LowerAnsiChar(y); });
}

int CompareNoCase(std::string_view a, std::string_view b) {
  const std::size_t n = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < n; ++i) {
    const auto x = static_cast<unsigned char>(LowerAnsiChar(a[i]));
    const auto y = static_cast<unsigned char>(LowerAnsiChar(b[i]));
    if (x != y) return x < y ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

std::string_view TrimSpaces(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  const auto last = text.find_last_not_of(' ');
  return text.substr(first, last - first + 1);
}

bool EndsWithNoCase(std::string_view text, std::string_view suffix) {
  return text.size() >= suffix.size() && EqualsNoCase(text.substr(text.size() - suffix.size()), suffix);
}

}  // namespace qm
