// The spin wheel's model (bvlWHEEL1, bvlWHEEL2): a whole value held between
// Min and Max, and a change notification that every assignment raises, the
// program's own included, so that the timing panel's handlers run when the
// stored settings set the wheels. The wheel control on the screen mirrors
// this model and sets its value when the user turns it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <utility>

namespace qm {

class Wheel {
 public:
  Wheel(std::int16_t min, std::int16_t max, std::int16_t value)
      : min_(min), max_(max), value_(std::clamp(value, min, max)) {}
  Wheel(const Wheel&) = delete;
  Wheel& operator=(const Wheel&) = delete;

  std::int16_t Min() const { return min_; }
  std::int16_t Max() const { return max_; }
  std::int16_t Value() const { return value_; }

  // Sets the value, held between Min and Max (a value beyond either end
  // stops there), and raises Change even when the value stays the same.
  void SetValue(long value) {
    value_ = static_cast<std::int16_t>(std::clamp<long>(value, min_, max_));
    if (Change) Change();
  }

  // The change notification: the settings window's handler.
  std::function<void()> Change;

 private:
  std::int16_t min_;
  std::int16_t max_;
  std::int16_t value_;
};

}  // namespace qm
