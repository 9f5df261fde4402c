// Two rules that keep the flasher considerate of what the user sees and
// does: a phrase leaves the screen only once it has been seen, and no
// phrase appears while the user is busy with the whole screen.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/user_attention.h"

namespace qm {

// When the phrase is painted, the compositor may hold one frame composed
// but not yet presented and be composing the next, both begun before the
// phrase was there: the third frame presented after that moment is the
// first that surely holds it.
inline constexpr std::uint64_t kFramesUntilSeen = 3;

// Whether a phrase painted when the compositor had presented `atShow`
// frames has been presented, now that it has presented `now`. Where either
// count is unknown (no compositor) it is seen once painted.
bool PhraseSeen(std::optional<std::uint64_t> atShow, std::optional<std::uint64_t> now);

// Whether phrases must wait: the shell says the user is busy (a full-screen
// program or game, a presentation, quiet time), or, because not every
// system says so, the window in front (not the desktop, the taskbar or the
// program's own) covers the whole of its monitor. A locked screen or an
// absent user is left to the system, which shows nothing of ours then.
bool StaysQuiet(std::optional<NotificationState> state, const ForegroundWindow& foreground);
bool StaysQuiet(const UserAttention& attention);

}  // namespace qm
