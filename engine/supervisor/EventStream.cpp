#include "engine/supervisor/EventStream.h"

#include <chrono>
#include <cstddef>
#include <exception>
#include <utility>

namespace engine {

void EventStream::put(Source source, std::uint64_t test, Body body) {
  Event event;
  event.source = source;
  event.test = test;
  event.body = std::move(body);
  const std::size_t known = m_failures.size();
  deliver(event);
  for (std::size_t i = known; i < m_failures.size(); ++i) {
    put(Source::kEngine, 0, Message{Severity::kError, m_failures[i], {}});
  }
}

void EventStream::deliver(const Event& event) {
  Event stamped = event;
  stamped.sequence = m_next++;
  stamped.time =
      std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
  for (std::size_t i = 0; i < m_sinks.size();) {
    try {
      m_sinks[i]->take(stamped);
      ++i;
    } catch (const std::exception& failure) {
      m_failures.emplace_back(failure.what());
      m_sinks.erase(m_sinks.begin() + static_cast<std::ptrdiff_t>(i));
    }
  }
}

}  // namespace engine
