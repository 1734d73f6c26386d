#pragma once

#include <cstdint>
#include <string>

#include "engine/events/Event.h"

namespace history {

/// "20261122-013000-3f2a": when the run began, in UTC, and four digits that keep two of the same
/// second apart. By name, they are in the order of time.
std::string runId(engine::Time started, std::uint16_t digits);

/// Four such digits at random.
std::uint16_t someDigits();

}  // namespace history
