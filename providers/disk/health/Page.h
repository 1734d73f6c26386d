#pragma once

#include <cstddef>
#include <cstdint>

#include "providers/disk/health/DriveCommands.h"

namespace providers::disk {

/// Bytes that a drive has sent. What lies beyond them is 0, as in a page of an older drive.
class Page {
 public:
  explicit Page(const Bytes& bytes) : m_bytes(bytes) {}

  std::size_t size() const { return m_bytes.size(); }
  std::uint8_t at(std::size_t place) const { return place < m_bytes.size() ? m_bytes[place] : 0; }
  /// A number with its least byte first; of longer ones than 8 bytes the highest if it has more.
  std::uint64_t little(std::size_t place, std::size_t count) const {
    std::uint64_t value = 0;
    for (std::size_t i = count; i > 0; --i) {
      const std::uint8_t byte = at(place + i - 1);
      if (i > sizeof value && byte != 0) return UINT64_MAX;
      value = value << 8 | byte;
    }
    return value;
  }
  /// A number of at most 8 bytes with its highest byte first.
  std::uint64_t big(std::size_t place, std::size_t count) const {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < count; ++i) value = value << 8 | at(place + i);
    return value;
  }

 private:
  const Bytes& m_bytes;
};

}  // namespace providers::disk
