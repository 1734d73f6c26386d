#pragma once

#include <cstddef>

namespace support {

/// Lets allocations of this thread fail, by `std::bad_alloc`. A program that uses it replaces the
/// global `operator new`.
class ScarceMemory {
 public:
  enum class Failing {
    once,       ///< the one allocation alone
    fromThenOn  ///< memory does not come back
  };

  /// The `number`-th allocation from now, counted from 1, is the first one that fails.
  ScarceMemory(std::size_t number, Failing failing);
  ScarceMemory(const ScarceMemory&) = delete;
  ScarceMemory& operator=(const ScarceMemory&) = delete;
  /// Memory is there again.
  ~ScarceMemory();

  /// Whether an allocation has failed.
  bool hasFailed() const;
};

/// How many blocks of the global `operator new` are not given back.
long liveBlocks();

}  // namespace support
