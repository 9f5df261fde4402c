#include "library/line_file.h"

#include <gtest/gtest.h>

#include "../../support/temp_folder.h"

namespace qm {
namespace {

using Lines = std::vector<std::string>;

TEST(LineFileTest, SplitsOnlyAtCrLf) {
  EXPECT_EQ(SplitLines(""), Lines{});
  EXPECT_EQ(SplitLines("A"), Lines{"A"});
  EXPECT_EQ(SplitLines("A\r\nB"), (Lines{"A", "B"}));
  EXPECT_EQ(SplitLines("A\r\n"), (Lines{"A", ""}));
  EXPECT_EQ(SplitLines("\r\n"), (Lines{"", ""}));
  EXPECT_EQ(SplitLines("A\r\n\r\nB"), (Lines{"A", "", "B"}));
  // A lone CR or LF belongs to its line.
  EXPECT_EQ(SplitLines("A\rB\nC"), Lines{"A\rB\nC"});
  EXPECT_EQ(SplitLines("\r\r\n\n"), (Lines{"\r", "\n"}));
  EXPECT_EQ(JoinLines({"A", "B"}), "A\r\nB");
  EXPECT_EQ(JoinLines({}), "");
}

TEST(LineFileTest, FilesRoundTripByteForByte) {
  test::TempFolder dir;
  FileSystem& fs = SystemFileSystem();
  std::string everyByte;
  for (int i = 1; i < 256; ++i) everyByte += static_cast<char>(i);
  const std::string texts[] = {"A\r\nB",
                               "A\r\n",
                               "\r\n",
                               "\r\r\n\n",
                               "x",
                               "1\xC9T\xC9\r\n0\x8C"
                               "uvre",
                               everyByte};
  for (const std::string& text : texts) {
    dir.Put("\\in", text);
    const auto lines = ReadLines(fs, dir("\\in"));
    ASSERT_TRUE(lines.has_value());
    ASSERT_TRUE(WriteLines(fs, dir("\\out"), *lines));
    EXPECT_EQ(dir.Get("\\out"), text);
    EXPECT_EQ(ReadLines(fs, dir("\\out")), lines);
  }
}

TEST(LineFileTest, AnEmptyFileHasNoLinesAndAMissingOneFails) {
  test::TempFolder dir;
  FileSystem& fs = SystemFileSystem();
  dir.Put("\\empty", "");
  EXPECT_EQ(ReadLines(fs, dir("\\empty")), Lines{});
  EXPECT_EQ(ReadLines(fs, dir("\\missing")), std::nullopt);
  EXPECT_FALSE(WriteLines(fs, dir("\\NoFolder\\x"), {"1A"}));
  ASSERT_TRUE(WriteLines(fs, dir("\\empty2"), {}));
  EXPECT_EQ(dir.Get("\\empty2"), "");
}

TEST(LineFileTest, MarkedLinesReadHandEditedLinesInFull) {
  struct Case {
    std::string line;
    bool checked;
    std::string text;
  };
  const Case cases[] = {
      {"1A", true, "A"},
      {"0B", false, "B"},
      {"1", true, ""},
      {"1 spaced ", true, " spaced "},
      {"2x", false, "x"},
      {"9", false, ""},
      {"Calm words", false, "Calm words"},
      {" 1x", false, " 1x"},
      {"", false, ""},
  };
  for (const Case& c : cases) {
    const MarkedLine m = ParseMarkedLine(c.line);
    EXPECT_EQ(m.checked, c.checked) << c.line;
    EXPECT_EQ(m.text, c.text) << c.line;
  }
  EXPECT_EQ(FormatMarkedLine(true, " A "), "1 A ");
  EXPECT_EQ(FormatMarkedLine(false, ""), "0");
}

}  // namespace
}  // namespace qm
