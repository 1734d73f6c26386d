#pragma once

#include <array>
#include <cstddef>

namespace cmpinsp::broker {

/// Memory for the bodies of objects: they come and go by the hundred thousand, all of a few sizes.
/// Safe to use from several threads; a block may be given back by another thread than the one that
/// took it.
void* takeBlock(std::size_t size);
void giveBlock(void* block, std::size_t size) noexcept;

/// The free blocks of one thread.
class BlockCache {
 public:
  static constexpr std::size_t kStep = 32;
  static constexpr std::size_t kSizes = 8;  ///< larger blocks come from the general memory

  BlockCache() = default;
  BlockCache(const BlockCache&) = delete;
  BlockCache& operator=(const BlockCache&) = delete;
  ~BlockCache() { flush(); }

  void* take(std::size_t size);
  void give(void* block, std::size_t size) noexcept;
  /// Gives every block back to the process.
  void flush() noexcept;

  struct Free {
    Free* next;
  };
  struct List {
    Free* first = nullptr;
    std::size_t count = 0;
  };

 private:
  std::array<List, kSizes> m_free;
};

}  // namespace cmpinsp::broker
