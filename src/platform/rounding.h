// Rounding to whole numbers the way the program does it everywhere: to the
// nearest whole number, a half to the even neighbour (2.5 -> 2, 3.5 -> 4,
// -2.5 -> -2). It does not depend on the floating-point unit's rounding
// mode, and it always gives an int: what is not a number gives 0, and what
// lies beyond int's range gives the nearest end of it.
#pragma once

#include <climits>
#include <cmath>

namespace qm {

inline int RoundHalfEven(double value) {
  if (std::isnan(value)) return 0;
  double whole = std::round(value);  // a half away from zero...
  if (std::fabs(value - std::trunc(value)) == 0.5) whole = 2.0 * std::round(value / 2.0);  // ...or to even
  if (whole >= static_cast<double>(INT_MAX)) return INT_MAX;
  if (whole <= static_cast<double>(INT_MIN)) return INT_MIN;
  return static_cast<int>(whole);
}

// Half of a whole number, rounded half to even: what a centring computes
// from a doubled value (7 -> 4, 5 -> 2, -3 -> -2).
inline int HalfRoundedHalfEven(int twice) {
  return RoundHalfEven(static_cast<double>(twice) / 2.0);
}

}  // namespace qm
