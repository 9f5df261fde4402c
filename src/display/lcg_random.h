// The flasher's uniform generator: a 32-bit linear congruential generator
// (multiplier 1664525, increment 1013904223, modulus 2^32, the constants
// from Numerical Recipes). Each value is the top 24 bits of the state over
// 2^24, so it is exact in single precision and lies in [0, 1).
#pragma once

#include <cstdint>

#include "display/message_flasher.h"

namespace qm {

class LcgRandom final : public RandomSource {
 public:
  static constexpr std::uint32_t kMultiplier = 1664525u;
  static constexpr std::uint32_t kIncrement = 1013904223u;

  explicit LcgRandom(unsigned start = 0) { Randomize(start); }

  void Randomize(unsigned start) override { state_ = start; }
  float Next() override;

 private:
  std::uint32_t state_ = 0;
};

}  // namespace qm
