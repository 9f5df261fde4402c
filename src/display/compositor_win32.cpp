#include "display/compositor_win32.h"

#include "platform/system_dll_win32.h"

namespace qm::win32 {

std::optional<std::uint64_t> CompositorClock::PresentedFrames() const {
  BOOL composed = FALSE;
  if (FAILED(sys::DwmIsCompositionEnabled(&composed)) || !composed) return std::nullopt;
  DWM_TIMING_INFO timing{};
  timing.cbSize = sizeof timing;
  // The whole desktop's timing: a window of its own is refused since
  // Windows 8.
  if (FAILED(sys::DwmGetCompositionTimingInfo(nullptr, &timing)) || timing.cFrame == 0) return std::nullopt;
  return static_cast<std::uint64_t>(timing.cFrame - 1);
}

}  // namespace qm::win32
