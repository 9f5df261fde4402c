// Text in the system's ANSI code page (Windows-1252 on Western systems), as
// the program's files and names hold it: 8-bit bytes in std::string.
// Comparisons "without regard to case" lower-case the Windows-1252 letters,
// accented capitals and the few capitals at 0x8A..0x9F included.
#pragma once

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

}  // namespace qm
