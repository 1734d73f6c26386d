#pragma once

#include <cstdint>
#include <optional>

#include "providers/disk/reading/BlockSource.h"

namespace providers::disk {

/// Whole logical blocks of a disk, from `begin` up to, but not including, `end`.
struct Region {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
  std::uint64_t bytes() const { return end - begin; }
};

/// What is to be read, one read after the other.
class Extents {
 public:
  virtual ~Extents() = default;
  virtual std::optional<Extent> next() = 0;
  virtual std::uint64_t bytes() const = 0;  ///< of all reads together
};

/// Reads upward: the whole region, or about `wanted` bytes of it in zones spread evenly over it.
/// The first zone is at its beginning, the last one at its end, the others somewhere in their
/// share.
class SequentialExtents : public Extents {
 public:
  struct Sizes {
    std::uint32_t read = 1U << 20;
    std::uint64_t zone = 8U << 20;      ///< read in one go
    std::uint32_t alignment = 1 << 12;  ///< of a zone's beginning, where zones are spread
  };

  SequentialExtents(const Region& region, std::uint64_t wanted, const Sizes& sizes,
                    std::uint64_t seed);

  std::optional<Extent> next() override;
  std::uint64_t bytes() const override { return m_zones * m_zoneBytes; }

 private:
  std::uint64_t zoneBegin(std::uint64_t zone) const;

  const Region m_region;
  const Sizes m_sizes;
  const std::uint64_t m_seed;
  std::uint64_t m_zones = 1;
  std::uint64_t m_zoneBytes;
  std::uint64_t m_zone = 0;
  std::uint64_t m_done = 0;  ///< of the zone
};

/// Small reads all over the region, in an order that belongs to the seed. No place comes again
/// before each has come once. Where the region does not end with a whole read, its rest is read
/// last.
class RandomExtents : public Extents {
 public:
  RandomExtents(const Region& region, std::uint64_t reads, std::uint32_t bytes, std::uint64_t seed);

  std::optional<Extent> next() override;
  std::uint64_t bytes() const override;

 private:
  std::uint64_t whole() const { return m_region.bytes() / m_bytes; }
  std::uint64_t places() const { return whole() + (m_region.bytes() % m_bytes > 0 ? 1 : 0); }

  const Region m_region;
  const std::uint32_t m_bytes;
  const std::uint64_t m_seed;
  const std::uint64_t m_reads;
  std::uint64_t m_done = 0;
};

}  // namespace providers::disk
