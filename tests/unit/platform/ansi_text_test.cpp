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
  EXPECT_EQ(LowerAnsi("\xD7\xDF"
                      "09 .-"),
            "\xD7\xDF"
            "09 .-");
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

TEST(AnsiUtf8, ConvertsWorkedExamplesBothWays) {
  struct Example {
    std::string_view ansi, utf8;
  } const examples[] = {
      {"Calm", "Calm"},
      {"\xE9", "\xC3\xA9"},              // é U+00E9
      {"\x80", "\xE2\x82\xAC"},          // € U+20AC
      {"\x8E", "\xC5\xBD"},              // Ž U+017D
      {"\x9F", "\xC5\xB8"},              // Ÿ U+0178
      {"\x85", "\xE2\x80\xA6"},          // … U+2026
      {"\x81\x9D", "\xC2\x81\xC2\x9D"},  // undefined bytes: their own code points
      {"\xFF", "\xC3\xBF"},              // ÿ U+00FF
      {std::string_view("a\0b", 3), std::string_view("a\0b", 3)},
      {"", ""},
  };
  for (const Example& e : examples) {
    EXPECT_EQ(AnsiToUtf8(e.ansi), e.utf8);
    EXPECT_EQ(Utf8ToAnsi(e.utf8), std::string(e.ansi));
  }
}

TEST(AnsiUtf8, RefusesWhatWindows1252CannotHoldAndWhatIsNotUtf8) {
  EXPECT_EQ(Utf8ToAnsi("\xD0\x96"), std::nullopt);          // Cyrillic Ж
  EXPECT_EQ(Utf8ToAnsi("ok \xE6\xB8\xAC"), std::nullopt);   // CJK 測
  EXPECT_EQ(Utf8ToAnsi("\xC4\x80"), std::nullopt);          // Ā: no best fit to A
  EXPECT_EQ(Utf8ToAnsi("\xF0\x9F\x98\x80"), std::nullopt);  // an emoji, valid UTF-8
  EXPECT_EQ(Utf8ToAnsi("\xE9"), std::nullopt);              // Windows-1252, not UTF-8
  EXPECT_EQ(Utf8ToAnsi("\xC3"), std::nullopt);              // cut short
  EXPECT_EQ(Utf8ToAnsi("\xA9"), std::nullopt);              // a lone continuation byte
  EXPECT_EQ(Utf8ToAnsi("\xC1\xA9"), std::nullopt);          // 0xC1 starts only overlong forms
  EXPECT_EQ(Utf8ToAnsi("\xE0\x83\xA9"), std::nullopt);      // overlong é
  EXPECT_EQ(Utf8ToAnsi("\xED\xA0\x80"), std::nullopt);      // a surrogate
  EXPECT_EQ(Utf8ToAnsi("\xF4\x90\x80\x80"), std::nullopt);  // beyond U+10FFFF
  EXPECT_EQ(Utf8ToAnsi("\xC3\xA9\xC3"), std::nullopt);      // good start, bad end
  EXPECT_EQ(Utf8ToAnsi("\xC2\x80"), std::nullopt);          // U+0080, which byte 0x80 is not
  std::size_t pos = 0;
  EXPECT_EQ(NextUtf8CodePoint("\x81\x80\x80\x80", pos), std::nullopt);  // no lead byte at all
  pos = 0;
  EXPECT_EQ(NextUtf8CodePoint("\xF5\x80\x80\x80", pos), std::nullopt);  // past the last lead byte
}

TEST(AnsiUtf8, EveryByteSurvivesTheRoundTrip) {
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  const std::string utf8 = AnsiToUtf8(all);
  EXPECT_EQ(Utf8ToAnsi(utf8), all);
  // One character per byte, each decoding on its own.
  std::size_t pos = 0;
  int characters = 0;
  while (NextUtf8CodePoint(utf8, pos)) ++characters;
  EXPECT_EQ(pos, utf8.size());
  EXPECT_EQ(characters, 256);
}


}  // namespace
}  // namespace qm
