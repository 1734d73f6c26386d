#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>

namespace providers {

/// Where threads wait for each other; the last one to come does what has to be done between two
/// phases before any goes on.
class Barrier {
 public:
  Barrier(std::size_t threads, std::function<void()> between)
      : m_missing(threads), m_threads(threads), m_between(std::move(between)) {}

  void wait() {
    std::unique_lock<std::mutex> lock(m_mutex);
    const std::size_t phase = m_phase;
    if (--m_missing == 0) {
      next();
    } else {
      m_changed.wait(lock, [&] { return m_phase != phase; });
    }
  }

  /// The calling thread takes no part any more.
  void leave() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    --m_threads;
    if (--m_missing == 0 && m_threads > 0) next();
  }

 private:
  void next() {
    m_between();
    m_missing = m_threads;
    ++m_phase;
    m_changed.notify_all();
  }

  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::size_t m_missing;
  std::size_t m_threads;
  std::size_t m_phase = 0;
  const std::function<void()> m_between;
};

}  // namespace providers
