#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace engine {

/// The 25 signs of a CIM datetime: those themselves, where they are one
/// ("20261122020000.000000+000", an interval "00000000013000.000000:000", with stars from the right
/// for what is open); a time of ISO 8601 with its offset ("2026-11-22T02:00:00.5+01:00", with `Z`
/// or a blank for `T`); or a duration ("1h30m"). Nothing where the text is none of them.
std::optional<std::string> dateTimeText(std::string_view text);

}  // namespace engine
