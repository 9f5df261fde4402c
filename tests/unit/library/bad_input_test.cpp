// A corpus of bad inputs, each its own test: hand-made or damaged library
// and settings files are read without harm, nothing is written while they
// load, and what can be shown is shown; category names that cannot be
// Windows file names are refused before anything is created.
#include <gtest/gtest.h>

#include <functional>
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
  // What the lists show afterwards, when the case says: categories, then
  // the first category's phrases, as "+text" / "-text" separated by "|".
  std::function<void(const CheckedList& categories, const CheckedList& phrases)> check;
};

// One marked line of `size` letters, then a short one.
std::string LongLine(std::size_t size) {
  std::string text(size + 1, 'y');
  text[0] = '1';
  text.append("\r\n1short");
  return text;
}

std::vector<BadFile> BadFiles() {
  const auto phrases = [](std::string expected) {
    return [expected](const CheckedList&, const CheckedList& p) { EXPECT_EQ(Texts(p, '|'), expected); };
  };
  const auto categories = [](std::string expected) {
    return [expected](const CheckedList& c, const CheckedList&) { EXPECT_EQ(Texts(c, '|'), expected); };
  };
  const auto phraseCount = [](int count) {
    return [count](const CheckedList&, const CheckedList& p) { EXPECT_EQ(p.ListCount(), count); };
  };
  return {
      {"BinaryJunk", "\\Lists\\Calm.lst", Junk(4096, 1), nullptr},
      {"NulBytesInLines", "\\Lists\\Calm.lst", std::string("1a\0b\r\n0\0", 8),
       phrases(std::string("-\0|+a\0b|", 8))},
      {"TenMegabyteCategory", "\\Lists\\Calm.lst", std::string(10u << 20, 'x'), phraseCount(1)},
      {"OneMegabyteLine", "\\Lists\\Calm.lst", LongLine(1u << 20), phraseCount(2)},
      {"LinesWithoutMarks", "\\Lists\\Calm.lst", "Breathe\r\nRest", phrases("-Breathe|-Rest|")},
      {"OnlyLineBreaks", "\\Lists\\Calm.lst", "\r\n\r\n\n\n", phrases("-|-|-|-|")},
      {"LoneCarriageReturns", "\\Lists\\Calm.lst", "1a\rb\r", phrases("+a\rb\r|")},
      {"MarksOtherThanDigits", "\\Lists\\Calm.lst", "xA\r\n9B\r\n1C", phrases("-B|+C|-xA|")},
      {"ByteOrderMarkOnly", "\\Lists\\Calm.lst", "\xEF\xBB\xBF", phraseCount(0)},
      {"HugeCategoryBeyondTheLimit", "\\Lists\\Calm.lst", std::string(kMaxReadBytes + 1, 'z'),
       phraseCount(0)},
      {"EmptyStateFile", "\\_._", "", categories("-Calm|")},
      {"StateFileNamingMissingCategories", "\\_._", "1Ghost\r\n1Other\r\n0", categories("-Calm|")},
      {"StateFileOfJunk", "\\_._", Junk(2048, 2), nullptr},
      {"StateFileLeavingTheFolder", "\\_._", "1..\\Calm\r\n1..\\..\\x\r\n1C:\\x", categories("-Calm|")},
      {"StateFileWithNuls", "\\_._", std::string("1Ca\0lm", 6), categories("-Calm|")},
      {"SettingsJunk", "\\__.__", Junk(1024, 3), nullptr},
      {"SettingsFontSizeNotANumber", "\\__.__", "Arial\r\ntwelve\r\nTrue\r\nFalse\r\n255\r\n50\r\n3",
       nullptr},
      {"SettingsNumbersOutOfRange", "\\__.__",
       "Arial\r\n99999999999\r\nTrue\r\nFalse\r\n-99999999999\r\n70000\r\n-5", nullptr},
      {"SettingsFractionsAndHex", "\\__.__", "Arial\r\n12.5\r\nTrue\r\nFalse\r\n&HFF\r\n1e3\r\n0x10",
       nullptr},
      {"SettingsBooleansThatAreNot", "\\__.__", "Arial\r\n12\r\nmaybe\r\n2.0\r\n255\r\n50\r\n3", nullptr},
      {"SettingsEmptyLines", "\\__.__", "\r\n\r\n\r\n\r\n\r\n\r\n", nullptr},
      {"SettingsTooManyLines", "\\__.__", "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n3\r\n4\r\n5\r\nmore",
       nullptr},
      {"SettingsOneLine", "\\__.__", "Times New Roman", nullptr},
      {"SettingsHugeFontName", "\\__.__", std::string(1u << 20, 'F').append("\r\n12"), nullptr},
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
  if (bad.check) bad.check(w.categories, w.phrases);
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
