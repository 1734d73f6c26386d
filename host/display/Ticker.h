#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace host {

/// Calls something again and again on a thread of its own, as long as it lives: a display has to be
/// drawn anew also while nothing happens. It ends with the first call that throws.
class Ticker {
 public:
  explicit Ticker(std::function<void()> call,
                  std::chrono::milliseconds period = std::chrono::seconds(1));
  Ticker(const Ticker&) = delete;
  Ticker& operator=(const Ticker&) = delete;

  /// No call begins any more; one that is going on is waited for.
  ~Ticker();

 private:
  void run() noexcept;

  std::function<void()> m_call;
  std::chrono::milliseconds m_period;
  std::mutex m_mutex;
  std::condition_variable m_stop;
  bool m_isStopped = false;
  std::thread m_thread;
};

}  // namespace host
