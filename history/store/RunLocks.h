#pragma once

#include <cstdint>
#include <filesystem>
#include <set>

namespace history {

/// Tells whether somebody still writes a run: a lock of the system on one byte of a file, for each
/// run the byte of its number. The system lets go of it however the writer ends.
class RunLocks {
 public:
  /// Opens or makes the file; one that can neither be made nor opened has no locks.
  explicit RunLocks(const std::filesystem::path& file);
  RunLocks(const RunLocks&) = delete;
  RunLocks& operator=(const RunLocks&) = delete;
  ~RunLocks();

  /// False where the system does not give it.
  bool take(std::int64_t run);
  void release(std::int64_t run) noexcept;
  /// By whichever process.
  bool isTaken(std::int64_t run) const noexcept;

 private:
  bool lock(std::int64_t run) noexcept;
  void unlock(std::int64_t run) noexcept;
  bool isTakenByOthers(std::int64_t run) const noexcept;

  std::intptr_t m_file = -1;     ///< the system's handle; -1 where there is none
  std::set<std::int64_t> m_own;  ///< a handle does not see its own locks
};

}  // namespace history
