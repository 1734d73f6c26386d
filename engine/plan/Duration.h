#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace engine {

/// How long something may take.
using Duration = std::chrono::milliseconds;

/// The longest that can be written.
constexpr Duration kLongestDuration = std::chrono::hours(24 * 10'000);

/// The duration in a text such as "90s", "8h", "1h30m", "2d" or "500ms": whole numbers, each with
/// its unit (d, h, m, s, ms), the larger unit first. Throws `PlanError` that quotes the text.
Duration durationFrom(std::string_view text);

/// The shortest such text: "1h30m"; "0s" where nothing is left. What is negative is taken for
/// nothing.
std::string textOf(Duration duration);

/// An estimate in seconds, to the next whole second; what is no number counts as nothing.
Duration durationOfSeconds(double seconds);

}  // namespace engine
