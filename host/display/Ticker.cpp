#include "host/display/Ticker.h"

#include <utility>

namespace host {

Ticker::Ticker(std::function<void()> call, std::chrono::milliseconds period)
    : m_call(std::move(call)), m_period(period), m_thread([this] { run(); }) {}

Ticker::~Ticker() {
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isStopped = true;
  }
  m_stop.notify_one();
  m_thread.join();
}

void Ticker::run() noexcept {
  std::unique_lock<std::mutex> lock(m_mutex);
  while (!m_stop.wait_for(lock, m_period, [this] { return m_isStopped; })) {
    lock.unlock();
    try {
      m_call();
    } catch (...) {
      return;  // whoever takes the events meets the same, and reports it
    }
    lock.lock();
  }
}

}  // namespace host
