#include <gtest/gtest.h>

#include "../../support/temp_folder.h"
#include "settings_world.h"

namespace qm {
namespace {

using namespace std::chrono_literals;

class PanelsTest : public ::testing::Test {
 protected:
  PanelsTest() {
    dir.Put("\\__.__", "Arial\r\n12\r\nTrue\r\nFalse\r\n255\r\n1\r\n1");
    world.Load();
  }
  std::string Line(int n) const {
    const std::string file = dir.Get("\\__.__");
    std::size_t start = 0;
    for (int i = 1; i < n; ++i) start = file.find("\r\n", start) + 2;
    return file.substr(start, file.find("\r\n", start) - start);
  }

  test::TempFolder dir;
  test::SettingsWorld world{SystemFileSystem(), dir.Path()};
  TimingPanel& timing = world.timing;
  FontPanel& font = world.font;
};

TEST_F(PanelsTest, TurningTheDurationWheelRelabelsRetimesAndSaves) {
  int repaints = 0;
  timing.Changed = [&] { ++repaints; };
  timing.bvlWHEEL1.SetValue(2);
  EXPECT_EQ(timing.lblDuration, "Duration: 2 Millisecond(s)");
  EXPECT_EQ(world.DisplayInterval(), 2ms);
  EXPECT_EQ(Line(6), "2");
  EXPECT_EQ(repaints, 1);
}

TEST_F(PanelsTest, TheWheelsStopAtTheirEnds) {
  timing.bvlWHEEL2.SetValue(31);
  EXPECT_EQ(timing.lblFrequency, "Frequency: 30 Second(s)");
  EXPECT_EQ(world.FrequencyInterval(), 30000ms);
  EXPECT_EQ(Line(7), "30");
  timing.bvlWHEEL2.SetValue(0);
  EXPECT_EQ(timing.lblFrequency, "Frequency: 1 Second(s)");
  EXPECT_EQ(world.FrequencyInterval(), 1000ms);

  timing.bvlWHEEL1.SetValue(1000);
  EXPECT_EQ(timing.lblDuration, "Duration: 1000 Millisecond(s)");
  timing.bvlWHEEL1.SetValue(100000);
  EXPECT_EQ(timing.bvlWHEEL1.Value(), 1000);
  EXPECT_EQ(Line(6), "1000");
}

TEST_F(PanelsTest, PickingPureWhiteGivesTheNearestOtherColourEverywhere) {
  font.ColorPicker1.SetValue(kTransparentKey);
  EXPECT_EQ(font.ColorPicker1.Value(), kAlmostWhite);
  EXPECT_EQ(font.lblPreview.ForeColor(), kAlmostWhite);
  EXPECT_EQ(world.flasher.LabelColor(), kAlmostWhite);
  EXPECT_EQ(world.overlay.color, kAlmostWhite);
  EXPECT_EQ(Line(5), "16777214");
}

TEST_F(PanelsTest, APickedColourReachesTheRunningFlasherAtOnce) {
  font.ColorPicker1.SetValue(0x00FF0000);
  EXPECT_EQ(world.overlay.color, 0x00FF0000u);
  EXPECT_EQ(font.lblPreview.ForeColor(), 0x00FF0000u);
  EXPECT_EQ(Line(5), "16711680");
  // The font stays with the preview until the next start.
  EXPECT_TRUE(font.lblPreview.SetFontName("Courier New"));
  EXPECT_EQ(world.flasher.LabelFont().name, "Arial");
}

}  // namespace
}  // namespace qm
