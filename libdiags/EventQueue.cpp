#include "libdiags/EventQueue.h"

#include <utility>

namespace libdiags {

void EventQueue::push(std::string event) {
  std::unique_lock<std::mutex> lock(m_mutex);
  m_changed.wait(lock, [this] { return hasRoom(); });
  if (m_isDiscarded) return;
  m_bytes += event.size();
  m_events.push_back(std::move(event));
  m_changed.notify_all();
}

void EventQueue::end() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_hasEnded = true;
  m_changed.notify_all();
}

void EventQueue::open() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_isOpen = true;
  m_changed.notify_all();
}

void EventQueue::discard() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_isOpen = m_isDiscarded = true;
  m_events.clear();
  m_bytes = 0;
  m_changed.notify_all();
}

EventQueue::State EventQueue::next(std::optional<std::chrono::milliseconds> wait,
                                   std::string& event) {
  std::unique_lock<std::mutex> lock(m_mutex);
  const auto isReady = [this] { return !m_events.empty() || m_hasEnded; };
  if (!wait) {
    m_changed.wait(lock, isReady);
  } else if (!m_changed.wait_for(lock, *wait, isReady)) {
    return State::kTimeout;
  }
  if (m_events.empty()) return State::kEnd;
  event = std::move(m_events.front());
  m_events.pop_front();
  m_bytes -= event.size();
  m_changed.notify_all();
  return State::kEvent;
}

void EventQueue::putBack(std::string event) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_isDiscarded) return;
  m_bytes += event.size();
  m_events.push_front(std::move(event));
}

}  // namespace libdiags
