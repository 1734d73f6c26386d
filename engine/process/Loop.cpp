#include "engine/process/Loop.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace engine {

Loop::Loop() {
  if (const int failure = uv_loop_init(&m_loop)) {
    throw std::runtime_error(std::string("no event loop: ") + uv_strerror(failure));
  }
  const auto wake = [](uv_async_t* handle) { static_cast<Loop*>(handle->data)->runTasks(); };
  if (const int failure = uv_async_init(&m_loop, &m_wake, wake)) {
    uv_loop_close(&m_loop);
    throw std::runtime_error(std::string("no event loop: ") + uv_strerror(failure));
  }
  m_wake.data = this;
}

Loop::~Loop() {
  uv_close(reinterpret_cast<uv_handle_t*>(&m_wake), nullptr);
  uv_run(&m_loop, UV_RUN_DEFAULT);
  uv_loop_close(&m_loop);
}

void Loop::runUntil(const std::function<bool()>& isOver) {
  while (!isOver()) {
    uv_run(&m_loop, UV_RUN_ONCE);
    if (m_failure) std::rethrow_exception(std::exchange(m_failure, nullptr));
  }
}

void Loop::call(const std::function<void()>& callback) noexcept {
  try {
    if (callback) callback();
  } catch (...) {
    if (!m_failure) m_failure = std::current_exception();
  }
}

void Loop::post(std::function<void()> task) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_tasks.push_back(std::move(task));
  uv_async_send(&m_wake);
}

void Loop::runTasks() {
  std::vector<std::function<void()>> tasks;
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    tasks.swap(m_tasks);
  }
  for (const auto& task : tasks) call(task);
}

namespace {

constexpr double kMostSeconds = 1e9;  // three decades: a timer that nobody waits for

std::uint64_t millisecondsOf(double seconds) {
  return static_cast<std::uint64_t>(std::min(std::max(seconds, 0.0), kMostSeconds) * 1000);
}

void deleteTimer(uv_handle_t* handle) { delete reinterpret_cast<uv_timer_t*>(handle); }

}  // namespace

Timer::Timer(Loop& loop) : m_loop(loop), m_timer(new uv_timer_t) {
  uv_timer_init(loop.handle(), m_timer);
  m_timer->data = this;
}

Timer::~Timer() { uv_close(reinterpret_cast<uv_handle_t*>(m_timer), deleteTimer); }

void Timer::start(double seconds, std::function<void()> onTime) {
  m_onTime = std::move(onTime);
  const auto fire = [](uv_timer_t* timer) {
    // The callback may start the timer again, or end it.
    auto* const self = static_cast<Timer*>(timer->data);
    self->m_loop.call(std::exchange(self->m_onTime, nullptr));
  };
  uv_update_time(m_timer->loop);
  uv_timer_start(m_timer, fire, millisecondsOf(seconds), 0);
}

void Timer::stop() { uv_timer_stop(m_timer); }

}  // namespace engine
