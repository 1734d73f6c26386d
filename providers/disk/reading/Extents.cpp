#include "providers/disk/reading/Extents.h"

#include <algorithm>

#include "providers/common/SplitMix.h"

namespace providers::disk {

namespace {

std::uint64_t down(std::uint64_t value, std::uint64_t unit) { return value - value % unit; }

/// The place of a number among those below `count`, in an order that belongs to the seed: a Feistel
/// network over the next power of four; what falls beyond the count goes through it again.
std::uint64_t shuffled(std::uint64_t index, std::uint64_t count, std::uint64_t seed) {
  constexpr unsigned kRounds = 4;
  unsigned half = 1;
  while (half < 31 && (std::uint64_t{1} << (2 * half)) < count) ++half;
  const std::uint64_t mask = (std::uint64_t{1} << half) - 1;
  do {
    std::uint64_t left = index >> half;
    std::uint64_t right = index & mask;
    for (unsigned round = 0; round < kRounds; ++round) {
      const std::uint64_t mixed = left ^ (splitMix(splitMix(seed, round), right) & mask);
      left = right;
      right = mixed;
    }
    index = left << half | right;
  } while (index >= count);
  return index;
}

}  // namespace

SequentialExtents::SequentialExtents(const Region& region, std::uint64_t wanted, const Sizes& sizes,
                                     std::uint64_t seed)
    : m_region(region), m_sizes(sizes), m_seed(seed), m_zoneBytes(region.bytes()) {
  const std::uint64_t zones = (wanted + sizes.zone - 1) / sizes.zone;
  // Each share of the region has room for its zone wherever its beginning has to be aligned to.
  const bool spread = zones > 0 && region.bytes() / zones >= sizes.zone + sizes.alignment;
  if (!spread) return;
  m_zones = zones;
  m_zoneBytes = sizes.zone;
}

std::uint64_t SequentialExtents::zoneBegin(std::uint64_t zone) const {
  if (zone == 0) return m_region.begin;
  const std::uint64_t last = m_region.end - m_zoneBytes;
  if (zone + 1 == m_zones) return last;
  const std::uint64_t share = m_region.bytes() / m_zones;
  const std::uint64_t free = share - m_zoneBytes;
  const std::uint64_t place = m_region.begin + zone * share + splitMix(m_seed, zone) % (free + 1);
  return down(std::min(place, last), m_sizes.alignment);
}

std::optional<Extent> SequentialExtents::next() {
  if (m_zone == m_zones || m_zoneBytes == 0) return std::nullopt;
  const std::uint64_t left = m_zoneBytes - m_done;
  const Extent extent{zoneBegin(m_zone) + m_done,
                      static_cast<std::uint32_t>(std::min<std::uint64_t>(left, m_sizes.read))};
  m_done += extent.bytes;
  if (m_done == m_zoneBytes) {
    m_done = 0;
    ++m_zone;
  }
  return extent;
}

RandomExtents::RandomExtents(const Region& region, std::uint64_t reads, std::uint32_t bytes,
                             std::uint64_t seed)
    : m_region(region), m_bytes(bytes), m_seed(seed), m_reads(region.bytes() == 0 ? 0 : reads) {}

std::uint64_t RandomExtents::bytes() const {
  if (m_reads == 0) return 0;
  return m_reads / places() * m_region.bytes() + m_reads % places() * m_bytes;
}

std::optional<Extent> RandomExtents::next() {
  if (m_done == m_reads) return std::nullopt;
  const std::uint64_t index = m_done++ % places();
  if (index < whole())
    return Extent{m_region.begin + shuffled(index, whole(), m_seed) * m_bytes, m_bytes};
  const auto rest = static_cast<std::uint32_t>(m_region.bytes() % m_bytes);
  return Extent{m_region.end - rest, rest};
}

}  // namespace providers::disk
