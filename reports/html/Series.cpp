#include "reports/html/Series.h"

#include <algorithm>
#include <cmath>

namespace reports::html {
namespace {

/// As many as a small plot can show.
constexpr std::size_t kPlaces = 240;

void unite(Series::Place& one, const Series::Place& other) {
  one.least = std::min(one.least, other.least);
  one.most = std::max(one.most, other.most);
  one.sum += other.sum;
  one.count += other.count;
  one.isOutside = one.isOutside || other.isOutside;
}

}  // namespace

bool isBeyondLimits(const engine::Measurement& measurement) {
  const auto* const number = std::get_if<double>(&measurement.value);
  if (number == nullptr) return false;
  // What cannot be compared is not within limits either.
  if (measurement.minimum && !(*number >= *measurement.minimum)) return true;
  return measurement.maximum && !(*number <= *measurement.maximum);
}

Series::Series(const engine::Measurement& first) : m_latest(first) { add(first); }

bool Series::isOf(const engine::Measurement& measurement) const {
  return measurement.name == m_latest.name && measurement.part == m_latest.part &&
         measurement.unit == m_latest.unit;
}

void Series::add(const engine::Measurement& measurement) {
  const bool isOutside = isBeyondLimits(measurement);
  if (const auto* const number = std::get_if<double>(&measurement.value)) {
    if (std::isfinite(*number)) addNumber(*number, isOutside);
  }
  ++m_count;
  if (isOutside) ++m_outside;
  m_latest = measurement;
}

void Series::addNumber(double number, bool isOutside) {
  m_least = m_places.empty() ? number : std::min(m_least, number);
  m_most = m_places.empty() ? number : std::max(m_most, number);
  const Place place{number, number, number, 1, isOutside};
  if (!m_places.empty() && m_places.back().count < m_each) {
    unite(m_places.back(), place);
    return;
  }
  if (m_places.size() == kPlaces) share();
  m_places.push_back(place);
}

void Series::share() {
  for (std::size_t i = 0; i < kPlaces / 2; ++i) {
    m_places[i] = m_places[2 * i];
    unite(m_places[i], m_places[2 * i + 1]);
  }
  m_places.resize(kPlaces / 2);
  m_each *= 2;
}

}  // namespace reports::html
