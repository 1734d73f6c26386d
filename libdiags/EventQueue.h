#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <string>

namespace libdiags {

/// Events on their way from the thread of a run to whoever asks for them. Every function may be
/// called from any thread.
class EventQueue {
 public:
  explicit EventQueue(std::size_t mostBytes) : m_mostBytes(mostBytes) {}

  /// Waits while too many bytes are in it, unless it is opened or discarded.
  void push(std::string event);
  /// Nothing will come any more.
  void end();
  /// Takes whatever comes from now on: a run that is to end must not stand still.
  void open();
  /// Forgets what is in it and what will come.
  void discard();

  enum class State { kEvent, kTimeout, kEnd };
  /// The next event; waits up to so long, or for ever without a time.
  State next(std::optional<std::chrono::milliseconds> wait, std::string& event);
  /// The same, and what waits behind it, until they are so many bytes or more.
  State nextMany(std::optional<std::chrono::milliseconds> wait, std::size_t bytes,
                 std::deque<std::string>& events);
  /// Puts back what could not be handed on, as the next ones.
  void putBack(std::deque<std::string> events);

 private:
  bool hasRoom() const { return m_isOpen || m_bytes < m_mostBytes; }
  State await(std::unique_lock<std::mutex>& lock, std::optional<std::chrono::milliseconds> wait);
  std::string takeFirst();

  const std::size_t m_mostBytes;
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::deque<std::string> m_events;
  std::size_t m_bytes = 0;
  bool m_isOpen = false;
  bool m_isDiscarded = false;
  bool m_hasEnded = false;
};

}  // namespace libdiags
