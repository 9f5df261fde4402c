// A corpus of bad inputs, each its own test: hand-made or damaged library
// and settings files are read without harm, nothing is written while they
// load, and what can be shown is shown; category names that cannot be
// Windows file names are refused before anything is created.
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "../../support/library_world.h"

namespace qm {
namespace {

using test::Texts;

std::string Junk(std::size_t size, unsigned draw) {
  std::mt19937 random(draw);
  std::string bytes(size, '\0');
  for (char& c : bytes) c = static_cast<char>(random() & 0xFF);
  return bytes;
}

struct BadFile {
  const char* name;
  std::string relative;  // under the program folder
  std::string bytes;
  // What the first category's phrases and the categories show afterwards,
  // as "+text" / "-text" each followed by "|"; junk leaves its phrases out.
  std::optional<std::string> phrases = "+Breathe|";
  std::string categories = "-Calm|";
};

// One marked line of `size` letters, then a short one.
std::string LongLine(std::size_t size) {
  std::string text(size + 1, 'y');
  text[0] = '1';
  text.append("\r\n1short");
  return text;
}

std::vector<BadFile> BadFiles() {
  const std::string calm = "\\Lists\\Calm.lst";
  return {
      {"BinaryJunk", calm, Junk(4096, 1), std::nullopt},
      {"NulBytesInLines", calm, std::string("1a\0b\r\n0\0", 8), std::string("-\0|+a\0b|", 8)},
      {"TenMegabyteCategory", calm, std::string(10u << 20, 'x'), "-" + std::string(10u << 20, 'x') + "|"},
      {"OneMegabyteLine", calm, LongLine(1u << 20), "+short|+" + std::string(1u << 20, 'y') + "|"},
      {"LinesWithoutMarks", calm, "Breathe\r\nRest", "-Breathe|-Rest|"},
      {"OnlyLineBreaks", calm, "\r\n\r\n\n\n", "-|-|-|-|"},
      {"LoneCarriageReturns", calm, "1a\rb\r", "+a\rb\r|"},
      {"MarksOtherThanDigits", calm, "xA\r\n9B\r\n1C", "-B|+C|-xA|"},
      {"ByteOrderMarkOnly", calm, "\xEF\xBB\xBF", ""},
      {"HugeCategoryBeyondTheLimit", calm, std::string(kMaxReadBytes + 1, 'z'), ""},
      {"EmptyStateFile", "\\_._", ""},
      {"StateFileNamingMissingCategories", "\\_._", "1Ghost\r\n1Other\r\n0"},
      {"StateFileOfJunk", "\\_._", Junk(2048, 2)},
      {"StateFileLeavingTheFolder", "\\_._", "1..\\Calm\r\n1..\\..\\x\r\n1C:\\x"},
      {"StateFileWithNuls", "\\_._", std::string("1Ca\0lm", 6)},
      {"SettingsJunk", "\\__.__", Junk(1024, 3)},
      {"SettingsFontSizeNotANumber", "\\__.__", "Arial\r\ntwelve\r\nTrue\r\nFalse\r\n255\r\n50\r\n3"},
      {"SettingsNumbersOutOfRange", "\\__.__",
       "Arial\r\n99999999999\r\nTrue\r\nFalse\r\n-99999999999\r\n70000\r\n-5"},
      {"SettingsFractionsAndHex", "\\__.__", "Arial\r\n12.5\r\nTrue\r\nFalse\r\n&HFF\r\n1e3\r\n0x10"},
      {"SettingsBooleansThatAreNot", "\\__.__", "Arial\r\n12\r\nmaybe\r\n2.0\r\n255\r\n50\r\n3"},
      {"SettingsEmptyLines", "\\__.__", "\r\n\r\n\r\n\r\n\r\n\r\n"},
      {"SettingsTooManyLines", "\\__.__", "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n3\r\n4\r\n5\r\nmore"},
      {"SettingsOneLine", "\\__.__", "Times New Roman"},
      {"SettingsHugeFontName", "\\__.__", std::string(1u << 20, 'F').append("\r\n12")},
  };
}

class BadFileTest : public ::testing::TestWithParam<BadFile> {};

TEST_P(BadFileTest, IsReadWithoutHarmAndNothingIsWrittenWhileLoading) {
  const BadFile& bad = GetParam();
  test::LibraryWorld w;
  if (bad.relative != "\\Lists\\Calm.lst") w.dir.Put("\\Lists\\Calm.lst", "1Breathe");
  w.dir.Put(bad.relative, bad.bytes);
  w.library.StartUp();
  w.settings.ReadSettings();
  // What was read converts back into lines that read the same.
  const Settings& read = w.settings.Record();
  Settings again;
  ParseSettings(FormatSettings(read), again);
  if (!read.fontName || !read.fontName->starts_with("\xEF\xBB\xBF")) {
    EXPECT_EQ(again, read);
  }
  if (bad.phrases) {
    EXPECT_EQ(Texts(w.phrases, '|'), *bad.phrases);
  }
  EXPECT_EQ(Texts(w.categories, '|'), bad.categories);
  EXPECT_EQ(w.dir.Get(bad.relative), bad.bytes) << "the file was rewritten while it loaded";
  EXPECT_TRUE(w.prompts.shown.empty());
}

INSTANTIATE_TEST_SUITE_P(Corpus, BadFileTest, ::testing::ValuesIn(BadFiles()),
                         [](const ::testing::TestParamInfo<BadFile>& p) {
                           return std::string(p.param.name);
                         });

struct BadName {
  const char* name;
  std::string text;
};

class BadCategoryNameTest : public ::testing::TestWithParam<BadName> {};

TEST_P(BadCategoryNameTest, IsRefusedWithAMessageAndCreatesNothing) {
  test::LibraryWorld w;
  w.dir.Put("\\Lists\\Calm.lst", "1Breathe");
  w.Start();
  w.editing.txtEditCat = GetParam().text;  // pasted: the key filter never saw it
  w.editing.cmdAddCat_Click();
  ASSERT_EQ(w.prompts.shown.size(), 1u);
  EXPECT_EQ(w.prompts.shown[0].icon, PromptIcon::Exclamation);
  EXPECT_EQ(w.categories.ListCount(), 1);
  EXPECT_EQ(w.files.Writes() + w.files.Changes(), 0);
  EXPECT_FALSE(w.dir.Has("\\x.lst"));
}

INSTANTIATE_TEST_SUITE_P(
    Corpus, BadCategoryNameTest,
    ::testing::Values(BadName{"ReservedCon", "CON"}, BadName{"ReservedComWithDot", "com1.txt"},
                      BadName{"ReservedLptLowerCase", "lpt3"}, BadName{"ReservedNul", "Nul"},
                      BadName{"Star", "a*"}, BadName{"Question", "why?"}, BadName{"Quotes", "\"quoted\""},
                      BadName{"AngleBrackets", "<tag>"}, BadName{"TrailingDot", "name."},
                      BadName{"TrailingSpace", "name "}, BadName{"TooLong", std::string(300, 'n')},
                      BadName{"LeavesTheFolder", "..\\x"}, BadName{"ForwardSlash", "../x"},
                      BadName{"DriveColon", "C:x"}, BadName{"Tab", "a\tb"}),
    [](const ::testing::TestParamInfo<BadName>& p) { return std::string(p.param.name); });

}  // namespace
}  // namespace qm
