#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace slurm {

using Duration = std::chrono::milliseconds;

/// The duration in a text such as "90s", "10m", "1h30m", "2d" or "500ms", as `diags` has them:
/// whole numbers, each with its unit, the larger unit first. Throws `SettingError` that quotes the
/// text.
Duration durationFrom(std::string_view text);

/// Such a text, in milliseconds.
std::string millisecondsText(Duration duration);

/// A text for people, to the tenth of a second: "4.2 s".
std::string secondsText(Duration duration);

}  // namespace slurm
