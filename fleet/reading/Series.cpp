#include "fleet/reading/Series.h"

#include <algorithm>
#include <limits>

namespace fleet {
namespace {

float asFloat(double value) {
  constexpr double kMost = std::numeric_limits<float>::max();
  return static_cast<float>(std::clamp(value, -kMost, kMost));
}

}  // namespace

std::uint32_t Tables::seriesOf(const Series& series) {
  const std::string key(reinterpret_cast<const char*>(&series), sizeof(series));
  const std::lock_guard<std::mutex> lock(m_mutex);
  const auto [place, isNew] = m_numbers.emplace(key, static_cast<std::uint32_t>(m_series.size()));
  if (isNew) m_series.push_back(series);
  return place->second;
}

std::vector<std::uint64_t> Tables::ownersOf(const std::vector<Value>& values) const {
  std::vector<std::uint64_t> owners;
  owners.reserve(values.size());
  const std::lock_guard<std::mutex> lock(m_mutex);
  for (const Value& value : values) {
    const Series& series = m_series[value.series];
    owners.push_back(ownerOf(series.test, series.device));
  }
  return owners;
}

void KnownSeries::beginStream(const Limits& limits) {
  if (m_series.size() > limits.measurements || m_bytes > limits.nameBytes) {
    m_series.clear();
    m_bytes = 0;
  }
  m_added = 0;
  m_bytesBefore = m_bytes;
}

std::optional<std::uint32_t> KnownSeries::find(const std::string& key) const {
  const auto found = m_series.find(key);
  return found == m_series.end() ? std::nullopt : std::optional(found->second);
}

bool KnownSeries::hasRoomFor(const std::string& key, const Limits& limits) const {
  return m_added < limits.measurements && m_bytes - m_bytesBefore + key.size() <= limits.nameBytes;
}

void KnownSeries::add(const std::string& key, std::uint32_t series) {
  m_series.emplace(key, series);
  m_bytes += key.size();
  ++m_added;
}

bool Sums::add(std::uint32_t series, double value, std::size_t most) {
  if (series >= m_places.size()) m_places.resize(series + series / 2 + 64);
  std::uint32_t& place = m_places[series];
  if (place == 0) {
    if (m_sums.size() >= most) return false;
    m_sums.push_back({series, 0, 0});
    place = static_cast<std::uint32_t>(m_sums.size());
  }
  Sum& sum = m_sums[place - 1];
  ++sum.count;
  sum.sum += value;
  return true;
}

std::vector<Value> Sums::take() {
  std::vector<Value> values;
  values.reserve(m_sums.size());
  for (const Sum& sum : m_sums) {
    m_places[sum.series] = 0;
    values.push_back({sum.series, asFloat(sum.sum / sum.count)});
  }
  m_sums.clear();
  return values;
}

}  // namespace fleet
