#include "library/settings_store.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "../../support/temp_folder.h"
#include "../../support/watched_files.h"

namespace qm {
namespace {

using test::WatchedFiles;

TEST(SettingsText, ConvertsDecimalNumbersInRangeAndWritesBooleansAsWords) {
  EXPECT_EQ(ParseInt32(" -7 "), -7);
  EXPECT_EQ(ParseInt32("+7"), 7);
  EXPECT_EQ(ParseInt32("-2147483648"), INT32_MIN);
  EXPECT_EQ(ParseInt32("2147483647"), INT32_MAX);
  EXPECT_EQ(ParseInt32("2147483648"), std::nullopt);
  EXPECT_EQ(ParseInt16("-32768"), -32768);
  EXPECT_EQ(ParseInt16("32767"), 32767);
  EXPECT_EQ(ParseInt16("32768"), std::nullopt);
  for (std::string_view bad : {"", "abc", "12.5", "1e3", "&HFF", "- 5", "5 5"})
    EXPECT_EQ(ParseInt32(bad), std::nullopt) << bad;
  EXPECT_EQ(ParseBool(" false "), false);
  EXPECT_EQ(ParseBool("TRUE"), true);
  EXPECT_EQ(ParseBool("-1"), true);
  EXPECT_EQ(ParseBool("yes"), std::nullopt);

  EXPECT_EQ(FormatSettings({}), "\r\n\r\n\r\n\r\n\r\n\r\n");
  const Settings s{"Courier New", 8, false, true, -2147483633, 1000, 30};
  EXPECT_EQ(FormatSettings(s), "Courier New\r\n8\r\nFalse\r\nTrue\r\n-2147483633\r\n1000\r\n30");
  Settings back;
  ParseSettings(FormatSettings(s), back);
  EXPECT_EQ(back, s);
}

class SettingsStoreTest : public ::testing::Test {
 protected:
  test::TempFolder dir;
  WatchedFiles files;
};

TEST_F(SettingsStoreTest, APendingDataFileReplacesTheDataFileAtomicallyOrNotAtAll) {
  struct Case {
    const char* failing;
    const char* data;
    bool pendingKept;
  };
  for (const Case c : {Case{"", "new", false}, Case{"copy", "old", true}, Case{"remove DATA01", "new", true}}) {
    SCOPED_TRACE(c.failing);
    dir.Put("\\DATA", "old");
    dir.Put("\\DATA01", "new");
    files.failing = {c.failing};
    files.steps.clear();
    PromotePendingData(files, dir.Path());
    EXPECT_EQ(dir.Get("\\DATA"), c.data);
    EXPECT_EQ(dir.Has("\\DATA01"), c.pendingKept);
    // "\DATA" is never deleted on the way.
    for (const std::string& step : files.steps) EXPECT_NE(step, "remove DATA");
  }
  // A pending file that cannot be read costs nothing, start after start.
  dir.Put("\\DATA01", "new");
  std::filesystem::resize_file(dir.Native("\\DATA01"), kMaxReadBytes + 1);
  files.failing.clear();
  for (int start = 0; start < 2; ++start) PromotePendingData(files, dir.Path());
  EXPECT_EQ(dir.Get("\\DATA"), "new");
  EXPECT_TRUE(dir.Has("\\DATA01"));
  // Nothing pending: nothing touched.
  std::filesystem::remove(dir.Native("\\DATA01"));
  files.steps.clear();
  PromotePendingData(files, dir.Path());
  EXPECT_TRUE(files.steps.empty());
}

TEST_F(SettingsStoreTest, ASettingsFileThatCouldNotBeReadIsNeverReplacedAndTheUserIsToldOnce) {
  dir.Put("\\__.__", "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n3");
  std::filesystem::resize_file(dir.Native("\\__.__"), kMaxReadBytes + 1);
  SettingsStore store(files, dir.Path());
  std::vector<std::string> told;
  store.Tell = [&](const std::string& message) { told.push_back(message); };
  EXPECT_EQ(store.ReadSettings(), ReadOutcome::Unreadable);
  EXPECT_EQ(store.Record(), Settings{});
  store.Record().frequency = 5;
  EXPECT_EQ(store.SaveSettings(), SaveOutcome::Refused);
  EXPECT_EQ(store.SaveSettings(), SaveOutcome::Refused);
  EXPECT_EQ(files.Writes(), 0);
  EXPECT_EQ(std::filesystem::file_size(dir.Native("\\__.__")), kMaxReadBytes + 1);
  ASSERT_EQ(told.size(), 1u);
  EXPECT_EQ(told[0], SettingsUnreadableText(dir("\\__.__")));
  EXPECT_NE(told[0].find(dir("\\__.__")), std::string::npos);

  // A missing file is no such case: the first change creates it. One saved
  // by another editor (a byte-order mark, LF line ends) reads in full.
  std::filesystem::remove(dir.Native("\\__.__"));
  SettingsStore fresh(files, dir.Path());
  EXPECT_EQ(fresh.ReadSettings(), ReadOutcome::Missing);
  fresh.Record().frequency = 5;
  EXPECT_EQ(fresh.SaveSettings(), SaveOutcome::Saved);
  dir.Put("\\__.__", "\xEF\xBB\xBF" "Courier New\n8\nFalse\nTrue\n65280\n40\n4\n");
  EXPECT_EQ(fresh.ReadSettings(), ReadOutcome::Loaded);
  EXPECT_EQ(fresh.Record(), (Settings{"Courier New", 8, false, true, 65280, 40, 4}));
}

}  // namespace
}  // namespace qm
