#pragma once

#include <array>
#include <cstdint>

namespace providers::disk {

/// How long reads took, in buckets that are a thirty-second of their value wide: enough for
/// percentiles, and as small for millions of reads as for ten.
class Latencies {
 public:
  void add(double seconds);

  std::uint64_t count() const { return m_count; }
  /// In seconds; at most 1/32 above what it was. `share` is 0 to 1. 0 where there is nothing.
  double percentile(double share) const;
  double most() const { return m_most; }

 private:
  static constexpr unsigned kParts = 32;  // of a power of two
  static constexpr unsigned kPowers = 48;

  std::array<std::uint64_t, kPowers * kParts> m_buckets{};
  std::uint64_t m_count = 0;
  double m_most = 0;
};

}  // namespace providers::disk
