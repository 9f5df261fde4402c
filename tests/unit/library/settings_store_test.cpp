#include "library/settings_store.h"

#include <gtest/gtest.h>

#include <set>

#include "../../support/temp_folder.h"
#include "../settings/settings_world.h"

namespace qm {
namespace {

using namespace std::chrono_literals;
using test::SettingsWorld;
using test::TempFolder;

constexpr std::string_view kExample = "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n3";

// The machine's file system, with a count of writes and failures on demand.
class WatchedFiles final : public FileSystem {
 public:
  std::optional<std::string> ReadAll(const std::string& p) override { return real.ReadAll(p); }
  bool WriteAll(const std::string& p, std::string_view bytes) override {
    ++writes;
    return !failWrites && real.WriteAll(p, bytes);
  }
  bool Exists(const std::string& p) override { return real.Exists(p); }
  std::vector<std::string> List(const std::string& f, std::string_view e) override { return real.List(f, e); }
  bool Copy(const std::string& from, const std::string& to) override {
    log.push_back("copy");
    return !failing.contains("copy") && real.Copy(from, to);
  }
  bool Remove(const std::string& p) override {
    const std::string step = "remove " + p.substr(p.rfind('\\') + 1);
    log.push_back(step);
    return !failing.contains(step) && real.Remove(p);
  }
  bool MakeFolder(const std::string& p) override { return real.MakeFolder(p); }

  FileSystem& real = SystemFileSystem();
  int writes = 0;
  bool failWrites = false;
  std::set<std::string> failing;
  std::vector<std::string> log;
};

class SettingsStoreTest : public ::testing::Test {
 protected:
  std::string File() const { return dir.Get("\\__.__"); }

  TempFolder dir;
  WatchedFiles files;
  SettingsWorld world{files, dir.Path()};
  SettingsStore& store = world.store;
};

TEST(SettingsText, IntegersConvertOnlyWhenDecimalAndInRange) {
  EXPECT_EQ(ParseInt32("12"), 12);
  EXPECT_EQ(ParseInt32(" -7 "), -7);
  EXPECT_EQ(ParseInt32("+7"), 7);
  EXPECT_EQ(ParseInt32("-2147483648"), INT32_MIN);
  EXPECT_EQ(ParseInt32("2147483648"), std::nullopt);
  EXPECT_EQ(ParseInt16("-32768"), -32768);
  EXPECT_EQ(ParseInt16("32768"), std::nullopt);
  for (std::string_view bad : {"", " ", "abc", "12.5", "1e3", "&HFF", "0x10", "- 5", "5 5", "12pt"})
    EXPECT_EQ(ParseInt32(bad), std::nullopt) << bad;

  EXPECT_EQ(ParseBool("True"), true);
  EXPECT_EQ(ParseBool(" false "), false);
  EXPECT_EQ(ParseBool("-1"), true);
  EXPECT_EQ(ParseBool("0"), false);
  EXPECT_EQ(ParseBool("yes"), std::nullopt);
  EXPECT_EQ(ParseBool(""), std::nullopt);
}

TEST(SettingsText, UnsetEntriesAreEmptyLinesAndBooleansAreWords) {
  EXPECT_EQ(FormatSettings({}), "\r\n\r\n\r\n\r\n\r\n\r\n");
  Settings s{"Courier New", 8, false, true, -2147483633, 1000, 30};
  EXPECT_EQ(FormatSettings(s), "Courier New\r\n8\r\nFalse\r\nTrue\r\n-2147483633\r\n1000\r\n30");
  Settings back;
  ParseSettings(FormatSettings(s), back);
  EXPECT_EQ(back, s);
}

TEST_F(SettingsStoreTest, TheExampleIsAppliedEverywhereAndWrittenBackByteForByte) {
  dir.Put("\\__.__", kExample);
  world.Load();

  EXPECT_EQ(files.writes, 0);
  EXPECT_FALSE(store.IsLoading);
  const FontSpec bold12{"Arial", 12, true, false};
  EXPECT_EQ(world.font.lblPreview.Font(), bold12);
  EXPECT_EQ(world.font.lblPreview.ForeColor(), 255u);
  EXPECT_EQ(world.font.ColorPicker1.Value(), 255u);
  EXPECT_EQ(world.flasher.LabelColor(), 255u);
  EXPECT_EQ(world.flasher.LabelFont(), bold12);
  EXPECT_EQ(world.overlay.font, bold12);
  EXPECT_EQ(world.timing.bvlWHEEL1.Value(), 50);
  EXPECT_EQ(world.timing.bvlWHEEL2.Value(), 3);
  EXPECT_EQ(world.timing.lblDuration, "Duration: 50 Millisecond(s)");
  EXPECT_EQ(world.timing.lblFrequency, "Frequency: 3 Second(s)");
  EXPECT_EQ(world.DisplayInterval(), 50ms);
  EXPECT_EQ(world.FrequencyInterval(), 3000ms);

  EXPECT_EQ(store.SaveSettings(), SaveOutcome::Saved);
  EXPECT_EQ(File(), kExample);
}

TEST_F(SettingsStoreTest, TurningTheFrequencyWheelRewritesOnlyTheSeventhLine) {
  dir.Put("\\__.__", kExample);
  world.Load();
  world.timing.bvlWHEEL2.SetValue(5);
  EXPECT_EQ(File(), "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n5");
  EXPECT_EQ(world.FrequencyInterval(), 5000ms);
  EXPECT_EQ(files.writes, 1);
}

TEST_F(SettingsStoreTest, NothingIsWrittenWhileLoading) {
  store.IsLoading = true;
  world.timing.bvlWHEEL1.SetValue(9);
  world.font.ColorPicker1.SetValue(0x00FF00);
  EXPECT_EQ(store.SaveSettings(), SaveOutcome::Skipped);
  EXPECT_EQ(files.writes, 0);
  EXPECT_FALSE(dir.Has("\\__.__"));
  EXPECT_EQ(store.Record().duration, 9);
}

TEST_F(SettingsStoreTest, AZeroTimingFallsBackToTwoForThatTimingAlone) {
  dir.Put("\\__.__", "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n0\r\n5");
  world.Load();
  EXPECT_EQ(world.timing.bvlWHEEL1.Value(), 2);
  EXPECT_EQ(world.timing.lblDuration, "Duration: 2 Millisecond(s)");
  EXPECT_EQ(world.DisplayInterval(), 2ms);
  EXPECT_EQ(world.FrequencyInterval(), 5000ms);
  EXPECT_EQ(files.writes, 0);

  SettingsWorld other{files, dir.Path()};
  dir.Put("\\__.__", "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n0");
  other.Load();
  EXPECT_EQ(other.DisplayInterval(), 50ms);
  EXPECT_EQ(other.timing.bvlWHEEL2.Value(), 2);
  EXPECT_EQ(other.FrequencyInterval(), 2000ms);
}

TEST_F(SettingsStoreTest, StoredTimingsBeyondTheWheelsStopAtTheirEnds) {
  dir.Put("\\__.__", "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n5000\r\n-4");
  world.Load();
  EXPECT_EQ(world.DisplayInterval(), 1000ms);
  EXPECT_EQ(world.FrequencyInterval(), 1000ms);
  EXPECT_EQ(world.timing.lblDuration, "Duration: 1000 Millisecond(s)");
  EXPECT_EQ(store.Record().duration, 1000);
  EXPECT_EQ(store.Record().frequency, 1);
}

TEST_F(SettingsStoreTest, LinesThatDoNotConvertKeepTheirValuesAndTheRestLoad) {
  dir.Put("\\__.__", "Times New Roman\r\ntwelve\r\nmaybe\r\nTrue\r\n65280\r\n70000\r\n4");
  world.Load();
  const FontSpec& f = world.font.lblPreview.Font();
  EXPECT_EQ(f.name, "Times New Roman");
  EXPECT_EQ(f.size, 9.75);
  EXPECT_FALSE(f.bold);
  EXPECT_TRUE(f.italic);
  EXPECT_EQ(world.flasher.LabelColor(), 0x00FF00u);
  EXPECT_EQ(world.timing.bvlWHEEL1.Value(), 2);  // 70000 is no 16-bit number
  EXPECT_EQ(world.FrequencyInterval(), 4000ms);

  // The entries that did not convert now hold what is in force.
  world.timing.bvlWHEEL2.SetValue(6);
  EXPECT_EQ(File(), "Times New Roman\r\n10\r\nFalse\r\nTrue\r\n65280\r\n2\r\n6");
}

TEST_F(SettingsStoreTest, AShortFileLoadsItsLinesAndTheFirstChangeWritesAllSeven) {
  dir.Put("\\__.__", "Courier New\r\n20\r\nTrue");
  world.Load();
  EXPECT_EQ(world.font.lblPreview.Font(), (FontSpec{"Courier New", 20, true, false}));
  EXPECT_EQ(world.font.lblPreview.ForeColor(), kLightGrey);
  EXPECT_EQ(world.DisplayInterval(), 2ms);
  EXPECT_EQ(world.FrequencyInterval(), 2000ms);

  world.timing.bvlWHEEL1.SetValue(30);
  EXPECT_EQ(File(), "Courier New\r\n20\r\nTrue\r\nFalse\r\n12632256\r\n30\r\n2");
}

TEST_F(SettingsStoreTest, ValuesTheLabelRefusesAreSkippedAndReplacedByItsOwn) {
  dir.Put("\\__.__", "\r\n0\r\nTrue\r\nFalse\r\n-1\r\n50\r\n3");
  world.Load();
  EXPECT_EQ(world.font.lblPreview.Font(), (FontSpec{"Arial", 9.75, true, false}));
  EXPECT_EQ(world.font.lblPreview.ForeColor(), kLightGrey);
  EXPECT_EQ(world.font.ColorPicker1.Value(), kLightGrey);
  EXPECT_EQ(FormatSettings(store.Record()), "Arial\r\n10\r\nTrue\r\nFalse\r\n12632256\r\n50\r\n3");

  // A face name too long for any font, and control characters.
  SettingsWorld other{files, dir.Path()};
  dir.Put("\\__.__", std::string(40, 'A') + "\r\n14");
  other.Load();
  EXPECT_EQ(other.font.lblPreview.Font().name, "Arial");
  EXPECT_EQ(other.font.lblPreview.Font().size, 14);
  EXPECT_FALSE(PreviewLabel().SetFontName("Ari\nal"));
}

TEST_F(SettingsStoreTest, AStoredPureWhiteBecomesTheNearestOtherColour) {
  dir.Put("\\__.__", "Arial\r\n12\r\nTrue\r\nFalse\r\n16777215\r\n50\r\n3");
  world.Load();
  EXPECT_EQ(world.font.ColorPicker1.Value(), kAlmostWhite);
  EXPECT_EQ(world.font.lblPreview.ForeColor(), kAlmostWhite);
  EXPECT_EQ(world.flasher.LabelColor(), kAlmostWhite);
  EXPECT_EQ(store.Record().color, 16777214);
  EXPECT_EQ(files.writes, 0);
}

TEST_F(SettingsStoreTest, AMissingOrEmptyFileAppliesNothingAndTheFirstChangeWritesAllSeven) {
  for (bool empty : {false, true}) {
    SCOPED_TRACE(empty ? "empty" : "missing");
    if (empty) dir.Put("\\__.__", "");
    SettingsWorld w{files, dir.Path()};
    w.Load();
    EXPECT_FALSE(w.store.IsLoading);
    EXPECT_EQ(w.font.lblPreview.Font(), FontSpec{});
    EXPECT_EQ(w.timing.bvlWHEEL1.Value(), 1);
    EXPECT_EQ(w.timing.bvlWHEEL2.Value(), 1);
    // The flasher's timers follow what the wheels show.
    EXPECT_EQ(w.DisplayInterval(), 1ms);
    EXPECT_EQ(w.FrequencyInterval(), 1000ms);
    EXPECT_EQ(dir.Has("\\__.__"), empty);
    EXPECT_EQ(files.writes, 0);

    w.timing.bvlWHEEL2.SetValue(4);
    EXPECT_EQ(File(), "Arial\r\n10\r\nFalse\r\nFalse\r\n12632256\r\n1\r\n4");
    files.writes = 0;
    std::filesystem::remove(dir.Native("\\__.__"));
  }
}

TEST_F(SettingsStoreTest, AFailedWriteIsReportedAndLeavesTheOldFile) {
  dir.Put("\\__.__", kExample);
  world.Load();
  std::string reported;
  store.WriteFailed = [&](const std::string& path) { reported = path; };

  files.failWrites = true;
  world.timing.bvlWHEEL1.SetValue(900);
  EXPECT_EQ(store.SaveSettings(), SaveOutcome::Failed);
  EXPECT_EQ(File(), kExample);
  EXPECT_EQ(reported, dir("\\__.__"));
  EXPECT_NE(SettingsNotSavedText(reported).find(reported), std::string::npos);

  // Once writing works again, the next change saves everything in force.
  files.failWrites = false;
  world.timing.bvlWHEEL2.SetValue(7);
  EXPECT_EQ(File(), "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n900\r\n7");
}

TEST_F(SettingsStoreTest, APendingDataFileReplacesTheDataFile) {
  dir.Put("\\DATA", "old");
  dir.Put("\\DATA01", "new");
  PromotePendingData(files, dir.Path());
  EXPECT_EQ(dir.Get("\\DATA"), "new");
  EXPECT_FALSE(dir.Has("\\DATA01"));
  EXPECT_EQ(files.log, (std::vector<std::string>{"remove DATA", "copy", "remove DATA01"}));

  // Nothing pending: nothing touched.
  files.log.clear();
  PromotePendingData(files, dir.Path());
  EXPECT_TRUE(files.log.empty());
  EXPECT_EQ(dir.Get("\\DATA"), "new");
}

TEST_F(SettingsStoreTest, EachFailingPromotionStepIsPassedOverWithoutLosingThePendingData) {
  struct Case {
    const char* failing;
    const char* data;
    bool pendingKept;
  };
  for (const Case c :
       {Case{"remove DATA", "new", false}, Case{"copy", "", true}, Case{"remove DATA01", "new", true}}) {
    SCOPED_TRACE(c.failing);
    dir.Put("\\DATA", "old");
    dir.Put("\\DATA01", "new");
    files.failing = {c.failing};
    files.log.clear();
    PromotePendingData(files, dir.Path());
    EXPECT_EQ(dir.Get("\\DATA"), c.data);
    EXPECT_EQ(dir.Has("\\DATA01"), c.pendingKept);
    EXPECT_EQ(files.log.front(), "remove DATA");
  }
}

}  // namespace
}  // namespace qm
