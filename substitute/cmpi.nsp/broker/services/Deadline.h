#pragma once

#include <chrono>
#include <cstdint>

namespace cmpinsp::broker {

/// That long after the clock's zero, to the microsecond, as far as the clock can tell.
std::chrono::system_clock::time_point timeAfter(std::int64_t seconds, std::int64_t nanoseconds);

/// The deadline that a provider passes, in the layout of its own system's headers.
std::chrono::system_clock::time_point deadlineIn(const void* wait);

}  // namespace cmpinsp::broker
