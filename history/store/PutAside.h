#pragma once

#include <chrono>
#include <filesystem>

#include "history/store/RunLocks.h"

namespace history {

/// While it lives, no other process mends the history of that folder. The constructor waits for
/// them, and throws `HistoryError` where that takes too long.
class Mending {
 public:
  Mending(const std::filesystem::path& directory, std::chrono::milliseconds patience);
  Mending(const Mending&) = delete;
  Mending& operator=(const Mending&) = delete;

 private:
  RunLocks m_locks;
};

/// Gives a damaged file, and what belongs to it, another name beside it, and returns that. Another
/// process that has it open goes on with it. Throws `HistoryError` where that cannot be done.
std::filesystem::path putAside(const std::filesystem::path& file);

}  // namespace history
