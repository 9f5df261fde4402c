#include "library/line_file.h"

#include <gtest/gtest.h>

#include "../../support/temp_folder.h"

namespace qm {
namespace {

using Lines = std::vector<std::string>;

TEST(LineFileTest, SplitsOnlyAtCrLfAndRoundTripsFilesByteForByte) {
  EXPECT_EQ(SplitLines(""), Lines{});
  EXPECT_EQ(SplitLines("A\r\nB"), (Lines{"A", "B"}));
  EXPECT_EQ(SplitLines("A\r\n"), (Lines{"A", ""}));
  EXPECT_EQ(SplitLines("\r\n"), (Lines{"", ""}));
  EXPECT_EQ(SplitLines("A\rB\nC"), Lines{"A\rB\nC"});  // a lone CR or LF stays in its line
  EXPECT_EQ(SplitLines("\r\r\n\n"), (Lines{"\r", "\n"}));

  test::TempFolder dir;
  FileSystem& fs = SystemFileSystem();
  std::string everyByte;
  for (int i = 1; i < 256; ++i) everyByte += static_cast<char>(i);
  for (const std::string text :
       {"A\r\nB", "A\r\n\r\n", "\r\n", "x", "1\xC9T\xC9\r\n0\x8Cuvre", everyByte.c_str()}) {
    dir.Put("\\in", text);
    const auto lines = ReadLines(fs, dir("\\in"));
    ASSERT_TRUE(lines.has_value());
    ASSERT_TRUE(WriteLines(fs, dir("\\out"), *lines));
    EXPECT_EQ(dir.Get("\\out"), text);
    EXPECT_EQ(ReadLines(fs, dir("\\out")), lines);
  }
  dir.Put("\\empty", "");
  EXPECT_EQ(ReadLines(fs, dir("\\empty")), Lines{});
  EXPECT_EQ(ReadLines(fs, dir("\\missing")), std::nullopt);
  EXPECT_FALSE(WriteLines(fs, dir("\\NoFolder\\x"), {"1A"}));
}

TEST(LineFileTest, MarkedLinesReadHandEditedLinesInFull) {
  const std::pair<std::string, std::string> cases[] = {
      // line, "+" or "-" for the mark followed by the text
      {"1A", "+A"},     {"0B", "-B"}, {"1", "+"},
      {"1 x ", "+ x "}, {"2x", "-x"}, {"Calm words", "-Calm words"},
      {" 1x", "- 1x"},  {"", "-"},
  };
  for (const auto& [line, expected] : cases) {
    const MarkedLine m = ParseMarkedLine(line);
    EXPECT_EQ((m.checked ? "+" : "-") + m.text, expected) << line;
  }
  EXPECT_EQ(FormatMarkedLine(true, " A "), "1 A ");
  EXPECT_EQ(FormatMarkedLine(false, ""), "0");
}

}  // namespace
}  // namespace qm
