#pragma once

#include <cstdint>
#include <vector>

namespace fleet {

/// Which side of its peers a measured value is worse on.
enum class Worse : std::uint8_t { kLow, kHigh, kUnknown };

/// Where values lie, and how far apart, whatever a few of them are.
struct Spread {
  double median = 0;
  /// As a standard deviation: from the median absolute deviation of all, or of those on the worse
  /// side where that is larger.
  double deviation = 0;
};

/// Of at least one value; leaves them in another order.
double medianOf(std::vector<float>& values);
Spread spreadOf(std::vector<float>& values, Worse worse);

}  // namespace fleet
