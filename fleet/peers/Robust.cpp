#include "fleet/peers/Robust.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace fleet {
namespace {

/// What makes a median absolute deviation the standard deviation of what is normally distributed.
constexpr double kNormal = 1.4826;

bool isWorse(double difference, Worse worse) {
  if (worse == Worse::kUnknown) return true;
  return worse == Worse::kLow ? difference <= 0 : difference >= 0;
}

double deviationOf(const std::vector<float>& values, double median, Worse worse) {
  std::vector<float> distances;
  distances.reserve(values.size());
  for (const float value : values) {
    const double difference = static_cast<double>(value) - median;
    if (isWorse(difference, worse)) distances.push_back(static_cast<float>(std::abs(difference)));
  }
  return distances.empty() ? 0 : kNormal * medianOf(distances);
}

}  // namespace

double medianOf(std::vector<float>& values) {
  const std::size_t middle = values.size() / 2;
  const auto place = values.begin() + static_cast<std::ptrdiff_t>(middle);
  std::nth_element(values.begin(), place, values.end());
  const double upper = *place;
  if (values.size() % 2 == 1) return upper;
  return (upper + static_cast<double>(*std::max_element(values.begin(), place))) / 2;
}

Spread spreadOf(std::vector<float>& values, Worse worse) {
  Spread spread;
  spread.median = medianOf(values);
  spread.deviation = deviationOf(values, spread.median, Worse::kUnknown);
  if (worse != Worse::kUnknown) {
    spread.deviation = std::max(spread.deviation, deviationOf(values, spread.median, worse));
  }
  return spread;
}

}  // namespace fleet
