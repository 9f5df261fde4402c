// The stored settings applied to the font and timing panels and the
// flasher, the panels' changes saved, the font panel's "Edit Font" through
// a chooser the test answers, and the colour picker's rows.
#include "settings/settings_loader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "../../support/fake_clock.h"
#include "../../support/flasher_doubles.h"
#include "../../support/temp_folder.h"
#include "../../support/watched_files.h"
#include "settings/color_swatches.h"
#include "settings/font_panel.h"
#include "settings/timing_panel.h"

namespace qm {
namespace {

using namespace std::chrono_literals;

// The settings window's share of the core: a real flasher on fake timers,
// the store, and the font and timing panels wired to both.
struct SettingsWorld {
  SettingsWorld(FileSystem& files, const std::string& folder) : store(files, folder) {
    flasher.Form_Load({1024, 768, 15, 15}, 0);
  }

  void Load() {
    LoadSettings(store, {font.lblPreview, font.ColorPicker1, timing.bvlWHEEL1, timing.bvlWHEEL2, flasher});
  }

  std::chrono::milliseconds DisplayInterval() const { return display->Interval(); }
  std::chrono::milliseconds FrequencyInterval() const { return frequency->Interval(); }

  test::FakeClock clock;
  std::unique_ptr<test::FakeClock::FakeTimer> frequency = clock.MakeTimer();
  std::unique_ptr<test::FakeClock::FakeTimer> display = clock.MakeTimer();
  test::StateOverlay overlay;
  test::FixedRandom random{0};
  test::ClosedHost host;
  frmMessage flasher{overlay, *frequency, *display, random, host};
  SettingsStore store;
  FontPanel font{store, flasher};
  TimingPanel timing{store, flasher};
};

constexpr std::string_view kExample = "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n3";

class SettingsStoreTest : public ::testing::Test {
 protected:
  // A fresh settings window loading the given file.
  SettingsWorld& Load(std::string_view file) {
    dir.Put("\\__.__", file);
    world = std::make_unique<SettingsWorld>(files, dir.Path());
    world->Load();
    return *world;
  }
  std::string File() const { return dir.Get("\\__.__"); }

  test::TempFolder dir;
  test::WatchedFiles files;
  std::unique_ptr<SettingsWorld> world;
};

TEST_F(SettingsStoreTest, TheExampleIsAppliedEverywhereAndWrittenBackByteForByte) {
  SettingsWorld& w = Load(kExample);
  EXPECT_EQ(files.Writes(), 0);
  EXPECT_FALSE(w.store.IsLoading);
  const FontSpec bold12{"Arial", 12, true, false};
  EXPECT_EQ(w.font.lblPreview.Font(), bold12);
  EXPECT_EQ(w.font.lblPreview.ForeColor(), 255u);
  EXPECT_EQ(w.font.ColorPicker1.Value(), 255u);
  EXPECT_EQ(w.overlay.color, 255u);
  EXPECT_EQ(w.overlay.font, bold12);
  EXPECT_EQ(w.timing.lblDuration, "Duration: 50 Millisecond(s)");
  EXPECT_EQ(w.timing.lblFrequency, "Frequency: 3 Second(s)");
  EXPECT_EQ(w.DisplayInterval(), 50ms);
  EXPECT_EQ(w.FrequencyInterval(), 3000ms);

  EXPECT_EQ(w.store.SaveSettings(), SaveOutcome::Saved);
  EXPECT_EQ(File(), kExample);
}

TEST_F(SettingsStoreTest, TurningAWheelOrPickingAColourTakesEffectAtOnceAndSaves) {
  SettingsWorld& w = Load(kExample);
  int repaints = 0;
  w.timing.Changed = [&] { ++repaints; };
  w.timing.bvlWHEEL1.SetValue(2);
  EXPECT_EQ(w.timing.lblDuration, "Duration: 2 Millisecond(s)");
  EXPECT_EQ(w.DisplayInterval(), 2ms);
  EXPECT_EQ(repaints, 1);
  w.timing.bvlWHEEL2.SetValue(31);
  EXPECT_EQ(w.timing.lblFrequency, "Frequency: 30 Second(s)");
  EXPECT_EQ(w.FrequencyInterval(), 30000ms);

  w.font.ColorPicker1.SetValue(0x00FF0000);
  EXPECT_EQ(w.font.lblPreview.ForeColor(), 0x00FF0000u);
  EXPECT_EQ(w.overlay.color, 0x00FF0000u);
  EXPECT_EQ(File(), "Arial\r\n12\r\nTrue\r\nFalse\r\n16711680\r\n2\r\n30");
}

TEST_F(SettingsStoreTest, NothingIsWrittenWhileLoading) {
  SettingsWorld w(files, dir.Path());
  w.store.IsLoading = true;
  w.timing.bvlWHEEL1.SetValue(9);
  w.font.ColorPicker1.SetValue(0x00FF00);
  EXPECT_EQ(w.store.SaveSettings(), SaveOutcome::Skipped);
  EXPECT_EQ(files.Writes(), 0);
  EXPECT_EQ(w.store.Record().duration, 9);
}

TEST_F(SettingsStoreTest, AZeroOrUnsetTimingFallsBackToTwoForThatTimingAlone) {
  EXPECT_EQ(Load("Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n0\r\n5").DisplayInterval(), 2ms);
  EXPECT_EQ(world->timing.lblDuration, "Duration: 2 Millisecond(s)");
  EXPECT_EQ(world->FrequencyInterval(), 5000ms);
  EXPECT_EQ(Load("Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n0").FrequencyInterval(), 2000ms);
  EXPECT_EQ(world->DisplayInterval(), 50ms);
  EXPECT_EQ(Load("Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50").FrequencyInterval(), 2000ms);
  // Beyond the wheels' ends a timing stops there.
  EXPECT_EQ(Load("Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n5000\r\n-4").DisplayInterval(), 1000ms);
  EXPECT_EQ(world->FrequencyInterval(), 1000ms);
  EXPECT_EQ(files.Writes(), 0);
}

TEST_F(SettingsStoreTest, LinesThatDoNotConvertKeepTheirValuesAndTheRestLoad) {
  SettingsWorld& w = Load("Times New Roman\r\ntwelve\r\nmaybe\r\nTrue\r\n65280\r\n70000\r\n4");
  EXPECT_EQ(w.font.lblPreview.Font(), (FontSpec{"Times New Roman", 9.75, false, true}));
  EXPECT_EQ(w.overlay.color, 0x00FF00u);
  EXPECT_EQ(w.DisplayInterval(), 2ms);  // 70000 is no 16-bit number
  // The entries that did not convert now hold the values in force.
  w.timing.bvlWHEEL2.SetValue(6);
  EXPECT_EQ(File(), "Times New Roman\r\n10\r\nFalse\r\nTrue\r\n65280\r\n2\r\n6");

  Load("Courier New\r\n20\r\nTrue");
  EXPECT_EQ(world->font.lblPreview.Font(), (FontSpec{"Courier New", 20, true, false}));
  world->timing.bvlWHEEL1.SetValue(30);
  EXPECT_EQ(File(), "Courier New\r\n20\r\nTrue\r\nFalse\r\n12632256\r\n30\r\n2");
}

TEST_F(SettingsStoreTest, ValuesTheLabelRefusesAreSkippedAndAStoredWhiteIsNotTheKey) {
  SettingsWorld& w = Load("\r\n0\r\nTrue\r\nFalse\r\n-1\r\n50\r\n3");
  EXPECT_EQ(w.font.lblPreview.Font(), (FontSpec{"Arial", 9.75, true, false}));
  EXPECT_EQ(w.font.ColorPicker1.Value(), kLightGrey);
  EXPECT_EQ(FormatSettings(w.store.Record()), "Arial\r\n10\r\nTrue\r\nFalse\r\n12632256\r\n50\r\n3");
  EXPECT_EQ(Load(std::string(40, 'A') + "\r\n14").font.lblPreview.Font().name, "Arial");

  Load("Arial\r\n12\r\nTrue\r\nFalse\r\n16777215\r\n50\r\n3");
  EXPECT_EQ(world->font.ColorPicker1.Value(), kAlmostWhite);
  EXPECT_EQ(world->overlay.color, kAlmostWhite);
  EXPECT_EQ(world->store.Record().color, 16777214);
  EXPECT_EQ(files.Writes(), 0);
}

TEST_F(SettingsStoreTest, AMissingOrEmptyFileAppliesNothingAndTheFirstChangeWritesAllSeven) {
  for (bool empty : {false, true}) {
    SCOPED_TRACE(empty ? "empty" : "missing");
    SettingsWorld w(files, dir.Path());
    if (empty) dir.Put("\\__.__", "");
    w.Load();
    EXPECT_FALSE(w.store.IsLoading);
    EXPECT_EQ(w.font.lblPreview.Font(), FontSpec{});
    EXPECT_EQ(w.timing.bvlWHEEL1.Value(), 1);
    // The flasher's timers follow what the wheels show.
    EXPECT_EQ(w.DisplayInterval(), 1ms);
    EXPECT_EQ(w.FrequencyInterval(), 1000ms);
    EXPECT_EQ(files.Writes(), 0);

    w.timing.bvlWHEEL2.SetValue(4);
    EXPECT_EQ(File(), "Arial\r\n10\r\nFalse\r\nFalse\r\n12632256\r\n1\r\n4");
    files.eventsBeforeWrite.clear();
    std::filesystem::remove(dir.Native("\\__.__"));
  }
}

TEST_F(SettingsStoreTest, AFailedWriteIsReportedAndLeavesTheOldFile) {
  SettingsWorld& w = Load(kExample);
  std::string reported;
  w.store.Tell = [&](const std::string& message) { reported = message; };
  files.failing = {"write"};
  w.timing.bvlWHEEL1.SetValue(900);
  EXPECT_EQ(w.store.SaveSettings(), SaveOutcome::Failed);
  EXPECT_EQ(File(), kExample);
  EXPECT_EQ(reported, SettingsNotSavedText(dir("\\__.__")));

  files.failing.clear();
  w.timing.bvlWHEEL2.SetValue(7);
  EXPECT_EQ(File(), "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n900\r\n7");
}

// A chooser answered by the test: it remembers what it was opened with and
// then either returns `answer` (OK) or leaves its font as it was set
// (Cancel), as the system's chooser does.
class AnsweredChooser final : public FontChooser {
 public:
  std::optional<DialogFont> answer;  // nothing: Cancel
  int shown = 0;
  std::uint32_t flagsShown = 0;
  DialogFont fontShown;

  void SetFlags(std::uint32_t flags) override { flags_ = flags; }
  void SetFontSize(std::int32_t points) override { font_.size = points; }
  void SetFontName(const std::string& name) override { font_.name = name; }
  void SetFontBold(bool bold) override { font_.bold = bold; }
  void SetFontItalic(bool italic) override { font_.italic = italic; }
  void ShowFont() override {
    ++shown;
    flagsShown = flags_;
    fontShown = font_;
    if (answer) font_ = *answer;
  }
  DialogFont Font() override { return font_; }

 private:
  std::uint32_t flags_ = 0;
  DialogFont font_;
};

using EditFontTest = SettingsStoreTest;

TEST_F(EditFontTest, OkStoresTheChosenFaceSizeAndStylesAndThePreviewShowsThem) {
  SettingsWorld& w = Load("Arial\r\n12\r\nFalse\r\nTrue\r\n255\r\n50\r\n3");
  AnsweredChooser chooser;
  chooser.answer = DialogFont{"Courier New", 24, true, false, false, false, 700};
  int repaints = 0;
  w.font.lblPreview.Changed = [&] { ++repaints; };

  w.font.cmdEditFont_Click(chooser);

  // Opened once, for screen fonts, on the preview's font.
  EXPECT_EQ(chooser.shown, 1);
  EXPECT_EQ(chooser.flagsShown, 1u);
  EXPECT_EQ(chooser.fontShown, (DialogFont{"Arial", 12, false, true}));

  const FontSpec chosen{"Courier New", 24, true, false};
  EXPECT_EQ(w.font.lblPreview.Font(), chosen);
  EXPECT_GE(repaints, 1);
  EXPECT_EQ(File(), "Courier New\r\n24\r\nTrue\r\nFalse\r\n255\r\n50\r\n3");
  // The flasher gets the font at the next start, not now.
  EXPECT_EQ(w.overlay.font.name, "Arial");
}

TEST_F(EditFontTest, CancelReappliesTheLookWithTheSizeRoundedHalfToEvenAndSavesIt) {
  // The preview's default font is 9.75 points: the chooser shows 10.
  SettingsWorld& w = Load("");
  AnsweredChooser chooser;
  w.font.cmdEditFont_Click(chooser);
  EXPECT_EQ(chooser.fontShown.size, 10);
  EXPECT_EQ(w.font.lblPreview.Font().size, 10);
  EXPECT_EQ(File(), "Arial\r\n10\r\nFalse\r\nFalse\r\n12632256\r\n1\r\n1");

  // Halves go to the even neighbour: 10.5 -> 10, 11.5 -> 12.
  for (const auto& [points, shown] : {std::pair{10.5, 10}, std::pair{11.5, 12}}) {
    ASSERT_TRUE(w.font.lblPreview.SetFontSize(points));
    w.font.cmdEditFont_Click(chooser);
    EXPECT_EQ(chooser.fontShown.size, shown) << points;
    EXPECT_EQ(w.store.Record().fontSize, shown) << points;
  }
}

TEST_F(EditFontTest, AFontThePreviewRefusesLeavesItAndStoresWhatItShows) {
  SettingsWorld& w = Load("Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n3");
  AnsweredChooser chooser;
  chooser.answer = DialogFont{"", 0, false, true, false, false, 400};
  w.font.cmdEditFont_Click(chooser);
  EXPECT_EQ(w.font.lblPreview.Font(), (FontSpec{"Arial", 12, true, false}));
  EXPECT_EQ(File(), "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n3");
}

TEST(ColorSwatchesTest, EachValueHasOneRowAndOnlyAColourWithoutASwatchGetsTheExtraRow) {
  ColorSwatches swatches;
  const std::size_t plain = swatches.Rows().size();
  ASSERT_TRUE(swatches.IsMore(static_cast<int>(plain) - 1));
  EXPECT_EQ(swatches.Rows().back().text, "More colours...");

  // Red, the preview's grey and white have swatches of their own.
  for (OleColor c : {OleColor{0x000000FF}, kLightGrey, kTransparentKey}) {
    const int row = swatches.RowFor(c);
    EXPECT_EQ(swatches.ColorAt(row), c);
    EXPECT_EQ(swatches.Rows()[row].kind, SwatchRow::Kind::Swatch);
    EXPECT_EQ(swatches.Rows().size(), plain);
  }

  // Almost white (what a picked white becomes) gets the extra row, just
  // above "More colours...", with its components.
  int row = swatches.RowFor(kAlmostWhite);
  EXPECT_EQ(swatches.Rows().size(), plain + 1);
  EXPECT_EQ(swatches.Rows()[row].text, "RGB 254, 255, 255");
  EXPECT_EQ(swatches.ColorAt(row), kAlmostWhite);
  EXPECT_TRUE(swatches.IsMore(row + 1));
  EXPECT_FALSE(swatches.ColorAt(row + 1).has_value());

  // Another such colour takes the same row; a swatch's colour removes it.
  row = swatches.RowFor(0x00123456);
  EXPECT_EQ(swatches.Rows().size(), plain + 1);
  EXPECT_EQ(swatches.Rows()[row].text, "RGB 86, 52, 18");
  EXPECT_EQ(swatches.ColorAt(swatches.RowFor(0x00000000)), 0x00000000u);
  EXPECT_EQ(swatches.Rows().size(), plain);
  EXPECT_EQ(swatches.Rows()[swatches.RowFor(SystemColorCode(8))].text, "System colour 8");
  EXPECT_FALSE(swatches.ColorAt(-1).has_value());
  EXPECT_FALSE(swatches.ColorAt(1000).has_value());
}

}  // namespace
}  // namespace qm
