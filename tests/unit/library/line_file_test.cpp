#include "library/line_file.h"

#include <gtest/gtest.h>

#include "../../support/temp_folder.h"

namespace qm {
namespace {

using Lines = std::vector<std::string>;
// A UTF-8 byte-order mark, as other editors write one.
const std::string kBom = "\xEF\xBB\xBF";

TEST(LineFileTest, ReadsHandEditedFilesLenientlyAndRoundTripsItsOwnByteForByte) {
  EXPECT_EQ(SplitLines("\r\n0"), (Lines{"", "0"}));
  // Another editor's files: LF-only line ends, a closing line break, a
  // UTF-8 byte-order mark; a lone CR stays in its line. (More hand-made
  // files are in the bad-input corpus.)
  EXPECT_EQ(SplitLines("1A\n0B\n"), (Lines{"1A", "0B"}));
  EXPECT_EQ(SplitLines("1A\r\n\r\n"), (Lines{"1A", ""}));
  EXPECT_EQ(SplitLines(kBom + "1Calm\r\n0Sleep"), (Lines{"1Calm", "0Sleep"}));
  EXPECT_EQ(SplitLines("A\rB\r\r\nC"), (Lines{"A\rB\r", "C"}));
  EXPECT_EQ(SplitLines("x\xEF\xBB\xBF"), Lines{"x\xEF\xBB\xBF"});  // only at the start

  test::TempFolder dir;
  FileSystem& fs = SystemFileSystem();
  std::string everyByte;
  for (int i = 1; i < 256; ++i)
    if (i != '\n') everyByte += static_cast<char>(i);
  for (const std::string text :
       {"A\r\nB", "A\r\n\r\n0", "\r\n0", "x", "1\xC9T\xC9\r\n0\x8Cuvre", everyByte.c_str()}) {
    dir.Put("\\in", text);
    const auto lines = ReadLines(fs, dir("\\in"));
    ASSERT_TRUE(lines.has_value());
    ASSERT_TRUE(WriteLines(fs, dir("\\out"), *lines));
    EXPECT_EQ(dir.Get("\\out"), text);
    EXPECT_EQ(ReadLines(fs, dir("\\out")), lines);
  }
  // A hand-edited file is written back in the program's own form.
  dir.Put("\\in", kBom + "1A\n0B\n");
  ASSERT_TRUE(WriteLines(fs, dir("\\out"), *ReadLines(fs, dir("\\in"))));
  EXPECT_EQ(dir.Get("\\out"), "1A\r\n0B");
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
