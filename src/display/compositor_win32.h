// The frame clock on Windows: the desktop compositor's frame count, asked
// of dwmapi.dll (loaded from the system folder). Without composition (a
// system before it, composition turned off, or one that does not offer the
// timing, as Wine does not) it tells nothing, and phrases go at the time
// asked.
#pragma once

#include "platform/frame_clock.h"

namespace qm::win32 {

class CompositorClock final : public FrameClock {
 public:
  // The compositor presents a frame at the refresh after it composed it, so
  // the frames presented are those composed less the one awaiting its turn.
  std::optional<std::uint64_t> PresentedFrames() const override;
};

}  // namespace qm::win32
