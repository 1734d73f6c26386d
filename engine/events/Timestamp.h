#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "engine/events/Event.h"

namespace engine {

/// "2026-11-21T21:07:00.000123Z": ISO 8601, UTC. Years 0 to 9999; a time outside is cut there.
std::string timestampOf(Time time);

/// The time in such a text, with up to six digits behind the point or no point; nothing where it is
/// none, or no date of the calendar.
std::optional<Time> timeFrom(std::string_view timestamp);

}  // namespace engine
