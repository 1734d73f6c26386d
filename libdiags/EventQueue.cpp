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

EventQueue::State EventQueue::await(std::unique_lock<std::mutex>& lock,
                                    std::optional<std::chrono::milliseconds> wait) {
  const auto isReady = [this] { return !m_events.empty() || m_hasEnded; };
  if (!wait) {
    m_changed.wait(lock, isReady);
  } else if (!m_changed.wait_for(lock, *wait, isReady)) {
    return State::kTimeout;
  }
  return m_events.empty() ? State::kEnd : State::kEvent;
}

std::string EventQueue::takeFirst() {
  std::string event = std::move(m_events.front());
  m_events.pop_front();
  m_bytes -= event.size();
  return event;
}

EventQueue::State EventQueue::next(std::optional<std::chrono::milliseconds> wait,
                                   std::string& event) {
  std::unique_lock<std::mutex> lock(m_mutex);
  const State state = await(lock, wait);
  if (state != State::kEvent) return state;
  event = takeFirst();
  m_changed.notify_all();
  return state;
}

EventQueue::State EventQueue::nextMany(std::optional<std::chrono::milliseconds> wait,
                                       std::size_t bytes, std::deque<std::string>& events) {
  std::unique_lock<std::mutex> lock(m_mutex);
  const State state = await(lock, wait);
  if (state != State::kEvent) return state;
  for (std::size_t taken = 0; taken < bytes && !m_events.empty();) {
    events.emplace_back();  // before anything is taken that could get lost
    events.back() = takeFirst();
    taken += events.back().size();
  }
  m_changed.notify_all();
  return state;
}

void EventQueue::putBack(std::deque<std::string> events) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_isDiscarded) return;
  for (; !events.empty(); events.pop_back()) {
    m_bytes += events.back().size();
    m_events.push_front(std::move(events.back()));
  }
}

}  // namespace libdiags
