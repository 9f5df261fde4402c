// The compositor's frame count, as the flasher asks it whether a phrase
// has been seen. Where windows are drawn into a composed desktop, a window
// painted and hidden again within one refresh may never reach the screen:
// the flasher keeps a phrase up until a frame holding it has been presented.
#pragma once

#include <cstdint>
#include <optional>

namespace qm {

class FrameClock {
 public:
  virtual ~FrameClock() = default;
  // How many frames the compositor has presented so far (a count that only
  // grows); nothing when the system composes no frames or does not say (a
  // desktop drawn straight to the screen, where a painted window is seen
  // at once).
  virtual std::optional<std::uint64_t> PresentedFrames() const = 0;
};

}  // namespace qm
