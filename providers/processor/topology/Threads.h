#pragma once

#include <functional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace providers {

/// Starts a thread; throws `std::system_error` where the system allows no more. A test has its own.
using StartThread = std::function<std::thread(std::function<void()>)>;

inline std::thread startThread(std::function<void()> work) { return std::thread(std::move(work)); }

/// Threads that are waited for at the end of their scope, whatever ends it.
class JoinedThreads {
 public:
  explicit JoinedThreads(const StartThread& start) : m_start(start) {}
  JoinedThreads(const JoinedThreads&) = delete;
  JoinedThreads& operator=(const JoinedThreads&) = delete;
  ~JoinedThreads() { join(); }

  /// False when the system allows no more threads.
  bool add(std::function<void()> work) {
    m_threads.emplace_back();  // room for it before there is a thread to be lost
    try {
      m_threads.back() = m_start(std::move(work));
      return true;
    } catch (const std::system_error&) {
      m_threads.pop_back();
      return false;
    }
  }

  void join() {
    for (std::thread& thread : m_threads)
      if (thread.joinable()) thread.join();
    m_threads.clear();
  }

 private:
  const StartThread& m_start;
  std::vector<std::thread> m_threads;
};

}  // namespace providers
