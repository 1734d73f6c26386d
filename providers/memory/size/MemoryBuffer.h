#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "providers/memory/engine/Kernels.h"
#include "providers/memory/engine/ThreadTeam.h"

namespace providers::memory {

/// Memory of this process to be tested, aligned to pages. Its pages come when they are touched,
/// each from near the thread that touches it, and are then kept in place where the system allows
/// that.
class MemoryBuffer {
 public:
  /// Throws `std::bad_alloc` when the system has not that much.
  explicit MemoryBuffer(std::size_t bytes);
  MemoryBuffer(const MemoryBuffer&) = delete;
  MemoryBuffer& operator=(const MemoryBuffer&) = delete;
  ~MemoryBuffer();

  std::uint64_t* words() const noexcept { return static_cast<std::uint64_t*>(m_address); }
  std::size_t wordCount() const noexcept { return m_bytes / sizeof(std::uint64_t); }
  /// Keeps these lines in place, which the calling thread has touched; where the system does that
  /// by itself, nothing is left to do. From any thread.
  void keepInPlace(LineRange lines);
  /// The page at that offset, which is broken, is not given back with the others: this process
  /// would be the next to get it, for its own use.
  void withhold(std::size_t offset) { m_withheld.insert(offset / kPage * kPage); }
  /// Why the system may move it to disk; empty when it will not. While nobody keeps any of it.
  const std::string& whyNotLocked() const noexcept { return m_whyNotLocked; }

 private:
  static constexpr std::size_t kPage = 4096;

  /// Calls `release(address, bytes)` for all that lies between the pages that are withheld.
  template <typename Release>
  void releaseOthers(const Release& release) const {
    std::size_t from = 0;
    const auto upTo = [&](std::size_t end) {
      if (end > from) release(static_cast<char*>(m_address) + from, end - from);
    };
    for (const std::size_t page : m_withheld) {
      upTo(page);
      from = page + kPage;
    }
    upTo(m_bytes);
  }

  void* m_address = nullptr;
  std::size_t m_bytes;
  std::set<std::size_t> m_withheld;
  std::mutex m_mutex;
  std::string m_whyNotLocked;
  std::function<void()> m_restore;  ///< what was changed of the process; may be empty
};

/// Has each thread of the team touch its even part of the words. `mayGoOn` is asked from time to
/// time, from any thread; when it says no, no more is touched but what the others are at: not more
/// than `slack` bytes. `touched` is told of each step, on its thread. The lines that have memory
/// now, of each thread.
std::vector<LineRange> touchAll(
    std::uint64_t* words, std::size_t count, ThreadTeam& team, std::uint64_t slack,
    const std::function<bool()>& mayGoOn,
    const std::function<void(LineRange)>& touched = [](LineRange) {});

}  // namespace providers::memory
