// Twips and pixels. A twip is 1/1440 inch; the program measures an inch of
// the screen as the screen's logical dots per inch (LOGPIXELSX/Y), so one
// pixel is 1440 / dpi twips: 15 at 96 dots per inch. Every window of the
// program lays itself out, and the flasher places its phrases, with this
// one measure. (The screen service's TwipsPerPixelX/Y, worked out from the
// monitor's physical size, are another thing and place nothing.)
#pragma once

#include <cstdint>

namespace qm {

inline constexpr int kTwipsPerInch = 1440;
inline constexpr int kDefaultDotsPerInch = 96;

// value * numerator / denominator, rounded to the nearest whole number with
// halves away from zero, without overflow in between: the platform's MulDiv.
// -1 when the denominator is 0 or the result does not fit.
constexpr int MulDivRound(int value, int numerator, int denominator) {
  if (denominator == 0) return -1;
  std::int64_t product = static_cast<std::int64_t>(value) * numerator;
  std::int64_t divisor = denominator;
  if (divisor < 0) {
    product = -product;
    divisor = -divisor;
  }
  const std::int64_t result =
      product >= 0 ? (product + divisor / 2) / divisor : (product - divisor / 2) / divisor;
  if (result > INT32_MAX || result < -INT32_MAX) return -1;
  return static_cast<int>(result);
}

// A screen's logical dots per inch in each direction.
struct Dpi {
  int x = kDefaultDotsPerInch;
  int y = kDefaultDotsPerInch;
};

// A dpi the arithmetic can use: anything below 1 counts as 96.
constexpr int UsableDpi(int dotsPerInch) {
  return dotsPerInch > 0 ? dotsPerInch : kDefaultDotsPerInch;
}

constexpr int TwipsToPixels(int twips, int dotsPerInch) {
  return MulDivRound(twips, UsableDpi(dotsPerInch), kTwipsPerInch);
}
constexpr int PixelsToTwips(int pixels, int dotsPerInch) {
  return MulDivRound(pixels, kTwipsPerInch, UsableDpi(dotsPerInch));
}
// Twips in one pixel: 15 at 96 dots per inch, 12 at 120, 10 at 144.
constexpr float TwipsPerPixelAt(int dotsPerInch) {
  return static_cast<float>(kTwipsPerInch) / static_cast<float>(UsableDpi(dotsPerInch));
}

}  // namespace qm
