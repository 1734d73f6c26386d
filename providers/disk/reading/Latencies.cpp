#include "providers/disk/reading/Latencies.h"

#include <algorithm>
#include <cmath>

namespace providers::disk {

namespace {

constexpr double kUnit = 1e-7;  // seconds; what is shorter counts as this

}  // namespace

void Latencies::add(double seconds) {
  int power = 0;
  // 0.5 <= part < 1
  const double part = std::frexp(std::max(seconds / kUnit, 1.0), &power);
  const auto within = static_cast<unsigned>((part - 0.5) * 2 * kParts);
  const unsigned bucket = static_cast<unsigned>(power - 1) * kParts + std::min(within, kParts - 1);
  ++m_buckets[std::min<std::size_t>(bucket, m_buckets.size() - 1)];
  ++m_count;
  m_most = std::max(m_most, seconds);
}

double Latencies::percentile(double share) const {
  const double wanted = std::max(1.0, std::ceil(share * static_cast<double>(m_count)));
  std::uint64_t seen = 0;
  for (std::size_t bucket = 0; bucket < m_buckets.size(); ++bucket) {
    seen += m_buckets[bucket];
    if (m_count == 0 || static_cast<double>(seen) < wanted) continue;
    const double upper = 1 + static_cast<double>(bucket % kParts + 1) / kParts;
    return std::min(m_most, std::ldexp(upper, static_cast<int>(bucket / kParts)) * kUnit);
  }
  return 0;
}

}  // namespace providers::disk
