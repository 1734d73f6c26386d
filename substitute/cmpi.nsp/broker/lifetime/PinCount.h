#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace cmpinsp::broker {

/// Counts who is using something that will be shut. Safe to use from several threads.
class PinCount {
 public:
  /// False once it is closed.
  bool tryPin() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_closed) return false;
    ++m_count;
    return true;
  }

  void unpin() noexcept {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (--m_count == 0) m_idle.notify_all();
  }

  /// Lets nobody in any more.
  void close() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_closed = true;
  }

  /// The same, and waits until everybody is out.
  void closeAndWait() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_closed = true;
    m_idle.wait(lock, [this] { return m_count == 0; });
  }

 private:
  std::mutex m_mutex;
  std::condition_variable m_idle;
  std::size_t m_count = 0;
  bool m_closed = false;
};

/// Keeps a count pinned; holds nothing where the count was closed.
class Pin {
 public:
  explicit Pin(PinCount& count) : m_count(count.tryPin() ? &count : nullptr) {}
  Pin(const Pin&) = delete;
  Pin& operator=(const Pin&) = delete;
  ~Pin() {
    if (m_count != nullptr) m_count->unpin();
  }

  explicit operator bool() const noexcept { return m_count != nullptr; }

 private:
  PinCount* m_count;
};

}  // namespace cmpinsp::broker
