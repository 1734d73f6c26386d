#pragma once

#include <cstddef>
#include <cstdint>

namespace providers {

/// Zeroed memory of this process, aligned to pages, kept in place while it is tested where the
/// system allows that.
class MemoryBuffer {
 public:
  /// Throws `std::bad_alloc` when the system has not that much.
  explicit MemoryBuffer(std::size_t bytes);
  MemoryBuffer(const MemoryBuffer&) = delete;
  MemoryBuffer& operator=(const MemoryBuffer&) = delete;
  ~MemoryBuffer();

  std::uint64_t* words() const noexcept { return static_cast<std::uint64_t*>(m_address); }
  std::size_t wordCount() const noexcept { return m_bytes / sizeof(std::uint64_t); }
  /// True when the system will not move it to disk.
  bool locked() const noexcept { return m_locked; }

 private:
  void* m_address = nullptr;
  std::size_t m_bytes;
  bool m_locked = false;
};

}  // namespace providers
