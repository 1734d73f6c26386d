#pragma once

#include <uv.h>

#include <exception>
#include <functional>
#include <mutex>
#include <vector>

namespace engine {

/// One thread's event loop: children, their pipes and timers report on it. Everything belongs to
/// the thread that calls `runUntil`, apart from `post`.
class Loop {
 public:
  /// Throws `std::runtime_error` where the system gives no loop.
  Loop();
  Loop(const Loop&) = delete;
  Loop& operator=(const Loop&) = delete;
  /// Ends what is still being closed. Children and timers go before their loop.
  ~Loop();

  /// Handles events until `isOver` says that enough has happened; asked after each round. What a
  /// callback throws comes out of here, since it may not pass through the system's loop.
  void runUntil(const std::function<bool()>& isOver);

  /// From any thread: `task` is called on the loop's thread, in the order of the calls. One that
  /// comes after the last round is dropped.
  void post(std::function<void()> task);

  uv_loop_t* handle() { return &m_loop; }

  /// Calls back; an exception is kept for `runUntil`, the first one of a round.
  void call(const std::function<void()>& callback) noexcept;

 private:
  void runTasks();

  uv_loop_t m_loop;
  uv_async_t m_wake;
  std::exception_ptr m_failure;
  std::mutex m_mutex;
  std::vector<std::function<void()>> m_tasks;
};

/// Calls back once, some time from now, unless it is stopped before.
class Timer {
 public:
  explicit Timer(Loop& loop);
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;
  ~Timer();

  /// Starts it, anew if it runs. Throws nothing; durations below zero count as zero.
  void start(double seconds, std::function<void()> onTime);
  void stop();

 private:
  Loop& m_loop;
  uv_timer_t* m_timer;
  std::function<void()> m_onTime;
};

}  // namespace engine
