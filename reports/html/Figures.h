#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/events/Event.h"

/// Numbers as a reader likes them, the same in every locale.
namespace reports::html {

/// At most six digits that count: "1.5", "268435000", "1.2e-09", "inf".
std::string figure(double number);

/// For a coordinate: two digits behind the point, never an exponent; 0 where it is no number.
std::string coordinate(double number);

/// "0.4 s", "12 s", "16 min 4 s", "2 h 3 min".
std::string duration(double seconds);

/// From one time to the other, in seconds; 0 where the second one is earlier.
double secondsBetween(engine::Time from, engine::Time to);

/// "2026-11-21 20:15:01".
std::string clockTime(engine::Time time);

/// "1 test", "2 tests".
std::string counted(std::uint64_t count, std::string_view what);

/// "yes" or "no" for a truth, the text itself, a figure.
std::string valueText(const engine::MeasuredValue& value);

}  // namespace reports::html
