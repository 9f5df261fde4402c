// Deterministic time for core tests: timers made by a FakeClock tick only
// when the test advances the clock, in the order of their due times (ties
// in the order the timers were made). A timer whose interval is zero or
// less never ticks.
#pragma once

#include <algorithm>
#include <chrono>
#include <memory>
#include <vector>

#include "platform/timer.h"

namespace qm::test {

class FakeClock {
 public:
  using ms = std::chrono::milliseconds;

  class FakeTimer final : public Timer {
   public:
    explicit FakeTimer(FakeClock& clock) : clock_(&clock) { clock_->timers_.push_back(this); }
    ~FakeTimer() override {
      auto& v = clock_->timers_;
      v.erase(std::remove(v.begin(), v.end(), this), v.end());
    }
    FakeTimer(const FakeTimer&) = delete;
    FakeTimer& operator=(const FakeTimer&) = delete;

    void SetEnabled(bool enabled) override {
      if (enabled && !enabled_) due_ = clock_->now_ + interval_;
      enabled_ = enabled;
    }
    bool Enabled() const override { return enabled_; }
    void SetInterval(ms interval) override {
      interval_ = interval;
      if (enabled_) due_ = clock_->now_ + interval_;
    }
    ms Interval() const override { return interval_; }
    // When the next tick is due (meaningful while enabled).
    ms Due() const { return due_; }
    int Ticks() const { return ticks_; }

   private:
    friend class FakeClock;
    FakeClock* clock_;
    bool enabled_ = false;
    ms interval_{0};
    ms due_{0};
    int ticks_ = 0;
  };

  std::unique_ptr<FakeTimer> MakeTimer() { return std::make_unique<FakeTimer>(*this); }

  ms Now() const { return now_; }

  // Moves time forward, firing every tick that falls due on the way.
  void Advance(ms by) {
    const ms target = now_ + by;
    for (;;) {
      FakeTimer* next = nullptr;
      for (FakeTimer* t : timers_) {
        if (!t->enabled_ || t->interval_ <= ms{0} || t->due_ > target) continue;
        if (!next || t->due_ < next->due_) next = t;
      }
      if (!next) break;
      now_ = next->due_;
      next->due_ += next->interval_;
      ++next->ticks_;
      next->FireTick();
    }
    now_ = target;
  }

 private:
  ms now_{0};
  std::vector<FakeTimer*> timers_;
};

}  // namespace qm::test
