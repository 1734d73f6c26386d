#pragma once

#include <cstddef>
#include <vector>

#include "history/Records.h"

namespace history {

/// Where the points of a series and its limits lie on a picture: the values from `low`, at the
/// bottom, to `high`. Both limits are on it, unless they are so far off that the points would be a
/// flat line.
struct TrendScale {
  explicit TrendScale(const Trend& trend);

  /// From 0 at the bottom to 1 at the top, cut there.
  double heightOf(double value) const;
  bool shows(const std::optional<double>& limit) const;

  double low = 0;
  double high = 1;
};

/// The means of the points, put together so that there are at most that many, in their order.
std::vector<double> means(const Trend& trend, std::size_t most);

}  // namespace history
