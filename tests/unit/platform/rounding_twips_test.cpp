// Half-to-even rounding and the twips-and-pixels arithmetic every window of
// the program shares.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <utility>

#include "platform/rounding.h"
#include "platform/twips.h"

namespace qm {
namespace {

TEST(Rounding, HalvesGoToTheEvenNeighbourAndTheRestToTheNearest) {
  const std::pair<double, int> cases[] = {{0.5, 0},   {1.5, 2},       {2.5, 2},    {3.5, 4},    {-0.5, 0},
                                          {-1.5, -2}, {-2.5, -2},     {2.4999, 2}, {2.5001, 3}, {-2.5001, -3},
                                          {7.0, 7},   {1022.5, 1022}, {767.5, 768}};
  for (auto [value, whole] : cases) EXPECT_EQ(RoundHalfEven(value), whole) << value;
  // Single precision values as the flasher hands them over.
  EXPECT_EQ(RoundHalfEven(0.5f * 3), 2);
  EXPECT_EQ(RoundHalfEven(4194304.5f), 4194304);  // 2^22 + 0.5, the last halves a float holds
}

TEST(Rounding, NothingAndTheUnboundedStayWithinInt) {
  EXPECT_EQ(RoundHalfEven(std::nan("")), 0);
  EXPECT_EQ(RoundHalfEven(1e30), INT_MAX);
  EXPECT_EQ(RoundHalfEven(-1e30), INT_MIN);
  EXPECT_EQ(RoundHalfEven(2147483646.5), 2147483646);
}

TEST(Rounding, HalvesOfWholeNumbers) {
  EXPECT_EQ(HalfRoundedHalfEven(45), 22);
  EXPECT_EQ(HalfRoundedHalfEven(47), 24);
  EXPECT_EQ(HalfRoundedHalfEven(-3), -2);
  EXPECT_EQ(HalfRoundedHalfEven(-5), -2);
  EXPECT_EQ(HalfRoundedHalfEven(INT_MIN), INT_MIN / 2);
}

// Worked by hand: 1440 twips are an inch, dpi pixels.
TEST(Twips, ConvertAtTheLogicalInchRoundingHalvesAwayFromZero) {
  EXPECT_EQ(TwipsToPixels(15, 96), 1);
  EXPECT_EQ(TwipsToPixels(7, 96), 0);     // 0.4667
  EXPECT_EQ(TwipsToPixels(8, 96), 1);     // 0.5333
  EXPECT_EQ(TwipsToPixels(30, 144), 3);   // exactly 3
  EXPECT_EQ(TwipsToPixels(5, 144), 1);    // 0.5 goes up
  EXPECT_EQ(TwipsToPixels(-5, 144), -1);  // and -0.5 down
  EXPECT_EQ(PixelsToTwips(125, 120), 1500);
  EXPECT_EQ(PixelsToTwips(1, 110), 13);  // 13.09
  EXPECT_EQ(TwipsPerPixelAt(96), 15.0f);
  EXPECT_EQ(TwipsPerPixelAt(120), 12.0f);
  EXPECT_EQ(TwipsPerPixelAt(0), 15.0f) << "an unknown dpi counts as 96";
  EXPECT_EQ(TwipsToPixels(1440, -3), 96);

  // Every pixel turned into twips and back is the same pixel.
  for (int dpi : {72, 96, 110, 120, 144, 192}) {
    for (int px = -2000; px <= 5000; px += 7)
      ASSERT_EQ(TwipsToPixels(PixelsToTwips(px, dpi), dpi), px) << dpi;
  }
}

TEST(Twips, MulDivNeverOverflowsInBetweenAndRefusesWhatDoesNotFit) {
  EXPECT_EQ(MulDivRound(2'000'000'000, 3, 4), 1'500'000'000);
  EXPECT_EQ(MulDivRound(2'000'000'000, 3, 2), -1);
  EXPECT_EQ(MulDivRound(5, 3, 0), -1);
  EXPECT_EQ(MulDivRound(7, 1, -2), -4);  // -3.5 away from zero
  EXPECT_EQ(MulDivRound(-7, 1, -2), 4);
}

}  // namespace
}  // namespace qm
