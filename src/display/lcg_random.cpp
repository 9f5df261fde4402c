#include "display/lcg_random.h"

namespace qm {

float LcgRandom::Next() {
  state_ = state_ * kMultiplier + kIncrement;   // modulo 2^32 by unsigned wrap-around
  constexpr float kScale = 1.0f / 16777216.0f;  // 2^-24
  return static_cast<float>(state_ >> 8) * kScale;
}

}  // namespace qm
