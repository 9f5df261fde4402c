// The font panel's "Edit Font" through a chooser that the test answers, and
// the colour picker's rows: what the user sees offered and what is stored.
#include "settings/font_panel.h"

#include <gtest/gtest.h>

#include <memory>

#include "../../support/fake_clock.h"
#include "../../support/flasher_doubles.h"
#include "../../support/temp_folder.h"
#include "../../support/watched_files.h"
#include "settings/color_swatches.h"
#include "settings/settings_loader.h"
#include "settings/timing_panel.h"

namespace qm {
namespace {

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
  void SetFontBold(bool bold) override {
    font_.bold = bold;
    font_.weight = bold ? 700 : 400;
  }
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

struct PanelWorld {
  PanelWorld(FileSystem& files, const std::string& folder) : store(files, folder) {
    flasher.Form_Load({1024, 768, 15, 15}, 0);
  }
  void Load() {
    LoadSettings(store, {font.lblPreview, font.ColorPicker1, timing.bvlWHEEL1, timing.bvlWHEEL2, flasher});
  }

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

class EditFontTest : public ::testing::Test {
 protected:
  PanelWorld& Load(std::string_view file) {
    dir.Put("\\__.__", file);
    world = std::make_unique<PanelWorld>(files, dir.Path());
    world->Load();
    return *world;
  }
  std::string File() const { return dir.Get("\\__.__"); }

  test::TempFolder dir;
  test::WatchedFiles files;
  std::unique_ptr<PanelWorld> world;
};

TEST_F(EditFontTest, OkStoresTheChosenFaceSizeAndStylesAndThePreviewShowsThem) {
  PanelWorld& w = Load("Arial\r\n12\r\nFalse\r\nTrue\r\n255\r\n50\r\n3");
  AnsweredChooser chooser;
  chooser.answer = DialogFont{"Courier New", 24, true, false, false, false, 700};
  int repaints = 0;
  w.font.lblPreview.Changed = [&] { ++repaints; };

  w.font.cmdEditFont_Click(chooser);

  // Opened once, for screen fonts, on the preview's font.
  EXPECT_EQ(chooser.shown, 1);
  EXPECT_EQ(chooser.flagsShown, 1u);
  EXPECT_EQ(chooser.fontShown.name, "Arial");
  EXPECT_EQ(chooser.fontShown.size, 12);
  EXPECT_FALSE(chooser.fontShown.bold);
  EXPECT_TRUE(chooser.fontShown.italic);

  const FontSpec chosen{"Courier New", 24, true, false};
  EXPECT_EQ(w.font.lblPreview.Font(), chosen);
  EXPECT_GE(repaints, 1);
  EXPECT_EQ(File(), "Courier New\r\n24\r\nTrue\r\nFalse\r\n255\r\n50\r\n3");
  // The flasher gets the font at the next start, not now.
  EXPECT_EQ(w.overlay.font.name, "Arial");
}

TEST_F(EditFontTest, CancelReappliesTheLookWithTheSizeRoundedHalfToEvenAndSavesIt) {
  // The preview's default font is 9.75 points: the chooser shows 10.
  PanelWorld& w = Load("");
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
  PanelWorld& w = Load("Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n50\r\n3");
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
