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

namespace {

// The code points of the bytes 0x80..0x9F; the rest of Windows-1252 is
// Latin-1, whose bytes are their own code points.
constexpr char32_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80..87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88..8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90..97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98..9F
};

char32_t CodePointOfAnsi(unsigned char byte) {
  return byte >= 0x80 && byte <= 0x9F ? kHighControls[byte - 0x80] : byte;
}

std::optional<unsigned char> AnsiOfCodePoint(char32_t cp) {
  if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<unsigned char>(cp);
  for (unsigned i = 0; i < 32; ++i)
    if (kHighControls[i] == cp) return static_cast<unsigned char>(0x80 + i);
  return std::nullopt;
}

void AppendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

}  // namespace

std::optional<char32_t> NextUtf8CodePoint(std::string_view text, std::size_t& pos) {
  if (pos >= text.size()) return std::nullopt;
  const auto lead = static_cast<unsigned char>(text[pos]);
  if (lead < 0x80) {
    ++pos;
    return lead;
  }
  std::size_t length;
  char32_t cp;
  char32_t least;  // the smallest code point of this length: shorter forms are refused
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2, cp = lead & 0x1F, least = 0x80;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3, cp = lead & 0x0F, least = 0x800;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4, cp = lead & 0x07, least = 0x10000;
  } else {
    return std::nullopt;
  }
  if (text.size() - pos < length) return std::nullopt;
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[pos + i]);
    if ((next & 0xC0) != 0x80) return std::nullopt;
    cp = (cp << 6) | (next & 0x3F);
  }
  if (cp < least || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return std::nullopt;
  pos += length;
  return cp;
}

std::string AnsiToUtf8(std::string_view ansi) {
  std::string out;
  out.reserve(ansi.size());
  for (const char c : ansi) AppendUtf8(out, CodePointOfAnsi(static_cast<unsigned char>(c)));
  return out;
}

std::optional<std::string> Utf8ToAnsi(std::string_view utf8) {
  std::string out;
  out.reserve(utf8.size());
  std::size_t pos = 0;
  while (pos < utf8.size()) {
    const std::optional<char32_t> cp = NextUtf8CodePoint(utf8, pos);
    if (!cp) return std::nullopt;
    const std::optional<unsigned char> byte = AnsiOfCodePoint(*cp);
    if (!byte) return std::nullopt;
    out += static_cast<char>(*byte);
  }
  return out;
}

}  // namespace qm
