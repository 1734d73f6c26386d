#include "providers/disk/reading/Extents.h"

#include <algorithm>

#include "providers/common/SplitMix.h"

namespace providers::disk {

namespace {

std::uint64_t down(std::uint64_t value, std::uint64_t unit) { return value - value % unit; }

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
    : m_region(region), m_bytes(bytes), m_seed(seed), m_reads(region.bytes() < bytes ? 0 : reads) {}

std::optional<Extent> RandomExtents::next() {
  if (m_done == m_reads) return std::nullopt;
  const std::uint64_t places = m_region.bytes() / m_bytes;
  return Extent{m_region.begin + splitMix(m_seed, m_done++) % places * m_bytes, m_bytes};
}

}  // namespace providers::disk
