#include "history/show/TrendScale.h"

#include <algorithm>
#include <cmath>

namespace history {
namespace {

/// A limit is worth showing up to so many heights of the points themselves away.
constexpr double kFarthest = 4;

}  // namespace

TrendScale::TrendScale(const Trend& trend) {
  if (trend.points.empty()) return;
  low = trend.points.front().mean;
  high = low;
  for (const TrendPoint& point : trend.points) {
    low = std::min(low, point.mean);
    high = std::max(high, point.mean);
  }
  const double least = low;
  const double most = high;
  const double reach = kFarthest * std::max(most - least, std::fabs(most) / 10);
  if (trend.minimum && *trend.minimum > least - reach) low = std::min(low, *trend.minimum);
  if (trend.maximum && *trend.maximum < most + reach) high = std::max(high, *trend.maximum);
  if (low < high) return;
  // A line that never changes lies in the middle.
  const double half = low == 0 ? 1 : std::max(std::fabs(low) / 10, 1e-9);
  low -= half;
  high += half;
}

double TrendScale::heightOf(double value) const {
  // Half of each, so that the difference of the largest numbers still is one.
  const double height = (value / 2 - low / 2) / (high / 2 - low / 2);
  return std::isfinite(height) ? std::clamp(height, 0.0, 1.0) : 0;
}

bool TrendScale::shows(const std::optional<double>& limit) const {
  return limit && *limit >= low && *limit <= high;
}

std::vector<double> means(const Trend& trend, std::size_t most) {
  const std::size_t count = trend.points.size();
  const std::size_t columns = std::min(count, most);
  std::vector<double> values;
  for (std::size_t column = 0; column < columns; ++column) {
    const std::size_t first = column * count / columns;
    const std::size_t last = (column + 1) * count / columns;
    double sum = 0;
    for (std::size_t i = first; i < last; ++i) {
      sum += trend.points[i].mean / static_cast<double>(last - first);
    }
    values.push_back(sum);
  }
  return values;
}

}  // namespace history
