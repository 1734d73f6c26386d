#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

namespace providers::disk {

/// The memory of the slots, aligned to pages, as reads past the cache need it.
class SlotMemory {
 public:
  SlotMemory(unsigned slots, std::uint32_t slotBytes)
      : m_slotBytes(slotBytes),
        m_bytes(static_cast<std::uint8_t*>(
            ::operator new (std::size_t{slots} * slotBytes, std::align_val_t{kAlignment}))) {}
  SlotMemory(const SlotMemory&) = delete;
  SlotMemory& operator=(const SlotMemory&) = delete;
  ~SlotMemory() {
    if (m_bytes) ::operator delete (m_bytes, std::align_val_t{kAlignment});
  }

  std::uint8_t* of(unsigned slot) const { return m_bytes + std::size_t{slot} * m_slotBytes; }
  /// Leaves the memory to reads that may still come back.
  void abandon() { m_bytes = nullptr; }

 private:
  static constexpr std::size_t kAlignment = 4096;
  const std::uint32_t m_slotBytes;
  std::uint8_t* m_bytes;
};

}  // namespace providers::disk
