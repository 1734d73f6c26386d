#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>

namespace providers::disk {

/// The memory of the slots, aligned to pages and to the disk's blocks, as reads past the cache need
/// it.
class SlotMemory {
 public:
  SlotMemory(unsigned slots, std::uint32_t slotBytes)
      : m_slotBytes(slotBytes),
        m_bytes(static_cast<std::uint8_t*>(
            ::operator new (std::size_t{slots} * slotBytes, alignment()))) {}
  SlotMemory(const SlotMemory&) = delete;
  SlotMemory& operator=(const SlotMemory&) = delete;
  ~SlotMemory() {
    if (m_bytes) ::operator delete(m_bytes, alignment());
  }

  std::uint8_t* of(unsigned slot) const { return m_bytes + std::size_t{slot} * m_slotBytes; }
  /// Leaves the memory to reads that may still come back.
  void abandon() { m_bytes = nullptr; }

 private:
  /// Slots of a whole number of blocks, which are powers of two, have all that blocks need.
  std::align_val_t alignment() const {
    constexpr std::uint32_t kPage = 4096, kMost = 1U << 20;
    const std::uint32_t ofSlots = m_slotBytes & ~(m_slotBytes - 1);
    return std::align_val_t{std::clamp(ofSlots, kPage, kMost)};
  }

  const std::uint32_t m_slotBytes;
  std::uint8_t* m_bytes;
};

}  // namespace providers::disk
