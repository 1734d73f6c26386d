#include "history/store/RunLocks.h"

namespace history {

bool RunLocks::take(std::int64_t run) {
  if (run < 0) return false;
  m_own.insert(run);
  if (lock(run)) return true;
  m_own.erase(run);
  return false;
}

void RunLocks::release(std::int64_t run) noexcept {
  if (m_own.erase(run) != 0) unlock(run);
}

bool RunLocks::isTaken(std::int64_t run) const noexcept {
  return m_own.count(run) != 0 || (run >= 0 && isTakenByOthers(run));
}

}  // namespace history
