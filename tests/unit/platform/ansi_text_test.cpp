#include "platform/ansi_text.h"

#include <gtest/gtest.h>

namespace qm {
namespace {

TEST(AnsiText, LowerCasesWindows1252LettersNotOnlyAscii) {
  EXPECT_EQ(LowerAnsi("CALM Sleep"), "calm sleep");
  // À É Î Õ Ü Þ -> à é î õ ü þ
  EXPECT_EQ(LowerAnsi("\xC0\xC9\xCE\xD5\xDC\xDE"), "\xE0\xE9\xEE\xF5\xFC\xFE");
  // Š Œ Ž Ÿ -> š œ ž ÿ
  EXPECT_EQ(LowerAnsi("\x8A\x8C\x8E\x9F"), "\x9A\x9C\x9E\xFF");
  // The multiplication sign, sharp s, digits and marks have no lower case.
  EXPECT_EQ(LowerAnsi("\xD7\xDF" "09 .-"), "\xD7\xDF" "09 .-");
}

TEST(AnsiText, ComparesWithoutRegardToCase) {
  EXPECT_TRUE(EqualsNoCase("Calm", "cALM"));
  EXPECT_TRUE(EqualsNoCase("\xC9t\xE9", "\xE9T\xC9"));  // Été, éTÉ
  EXPECT_FALSE(EqualsNoCase("Calm", "Calm "));
  EXPECT_EQ(CompareNoCase("apple", "Banana"), -1);
  EXPECT_EQ(CompareNoCase("Zeta", "alpha"), 1);
  EXPECT_EQ(CompareNoCase("calm", "CALM"), 0);
  EXPECT_EQ(CompareNoCase("Cal", "calm"), -1);
  // Accented letters sort after z, as bytes above 0x7F, not as negative chars.
  EXPECT_EQ(CompareNoCase("\xC9t\xE9", "zoo"), 1);
}

TEST(AnsiText, TrimsSpacesOnly) {
  EXPECT_EQ(TrimSpaces("  a b  "), "a b");
  EXPECT_EQ(TrimSpaces("   "), "");
  EXPECT_EQ(TrimSpaces("\ta\t"), "\ta\t");
  EXPECT_TRUE(EndsWithNoCase("Calm.LST", ".lst"));
  EXPECT_FALSE(EndsWithNoCase("lst", ".lst"));
}

}  // namespace
}  // namespace qm
