// A timer of the user-interface thread: an interval, an enabled flag and one
// tick. While enabled it ticks once every interval; ticks run on the
// user-interface thread between other events, never inside one.
//
// Enabling a timer that is already enabled changes nothing. Setting the
// interval of an enabled timer starts a new period with that interval.
#pragma once

#include <chrono>
#include <functional>
#include <utility>

namespace qm {

class Timer {
 public:
  using Tick = std::function<void()>;

  virtual ~Timer() = default;

  virtual void SetEnabled(bool enabled) = 0;
  virtual bool Enabled() const = 0;
  virtual void SetInterval(std::chrono::milliseconds interval) = 0;
  virtual std::chrono::milliseconds Interval() const = 0;

  void SetTick(Tick tick) { tick_ = std::move(tick); }

 protected:
  void FireTick() {
    if (tick_) tick_();
  }

 private:
  Tick tick_;
};

}  // namespace qm
