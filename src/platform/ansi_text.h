// Text in the system's ANSI code page (Windows-1252 on Western systems), as
// the program's files and names hold it: 8-bit bytes in std::string.
// Comparisons "without regard to case" lower-case the Windows-1252 letters,
// accented capitals and the few capitals at 0x8A..0x9F included.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qm {

char LowerAnsiChar(char c);
std::string LowerAnsi(std::string_view text);
bool EqualsNoCase(std::string_view a, std::string_view b);
// <0, 0, >0 like strcmp, comparing the lower-cased bytes as unsigned values.
int CompareNoCase(std::string_view a, std::string_view b);
// The text less leading and trailing blanks (spaces only, as a text box's
// content is trimmed).
std::string_view TrimSpaces(std::string_view text);
bool EndsWithNoCase(std::string_view text, std::string_view suffix);

// Between Windows-1252 and UTF-8, as the system's own conversions do it.
// The five bytes Windows-1252 leaves undefined (0x81, 0x8D, 0x8F, 0x90,
// 0x9D) stand for the code points of the same number, so every byte
// survives a round trip. Paths are UTF-8; file contents and list texts are
// Windows-1252: a name goes through these on its way between the two.
std::string AnsiToUtf8(std::string_view ansi);
// Nothing when the text is not valid UTF-8 (overlong forms, surrogates and
// stray bytes included) or holds a character Windows-1252 cannot hold.
std::optional<std::string> Utf8ToAnsi(std::string_view utf8);
// Decodes the UTF-8 character at pos and moves pos past it; nothing, with
// pos where it was, at the end or where the bytes are not valid UTF-8.
std::optional<char32_t> NextUtf8CodePoint(std::string_view text, std::size_t& pos);

}  // namespace qm
