#pragma once

#include <cstddef>
#include <mutex>
#include <unordered_set>

namespace cmpinsp::broker {

/// Memory that providers asked the broker for and have not given back. Safe to use from several
/// threads.
class MemoryAccount {
 public:
  /// The account of what was asked for outside any provider. It never ends.
  static MemoryAccount& common();

  /// Throws `std::bad_alloc`.
  void* allocate(std::size_t size);
  /// Throws `std::bad_alloc`, or `Failure` (invalid handle) where `memory` is not of this account.
  void* reallocate(void* memory, std::size_t size);
  /// Frees `memory` if it is of this account, or of the common one; ignores everything else.
  void release(void* memory) noexcept;
  void releaseAll() noexcept;

 private:
  bool releaseOwn(void* memory) noexcept;

  std::mutex m_mutex;
  std::unordered_set<void*> m_blocks;
};

}  // namespace cmpinsp::broker
