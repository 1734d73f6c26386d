#pragma once

#include <cstdint>

#include "engine/events/Event.h"

namespace history {

/// Whether a run that has taken `kept` bytes of the `most` that there may be still keeps such an
/// event. As the room ends, it does without the chatter first, then without findings, and at last
/// knows only that it ended.
bool isKept(const engine::Body& body, std::uint64_t test, std::uint64_t kept, std::uint64_t most);

}  // namespace history
