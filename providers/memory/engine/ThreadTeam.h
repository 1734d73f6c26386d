#pragma once

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace providers::memory {

/// Threads that do one piece of work after the other, all of them at once.
class ThreadTeam {
 public:
  using Work = std::function<void(unsigned thread)>;
  /// Starts a thread; throws `std::system_error` where the system allows no more.
  using Start = std::function<std::thread(std::function<void()>)>;

  /// `enter` is the first thing that each thread does, to find its place. Where the system allows
  /// fewer threads, the team has fewer; throws `std::system_error` where it allows none.
  ThreadTeam(unsigned threads, const Work& enter, const Start& start = startThread);
  ThreadTeam(const ThreadTeam&) = delete;
  ThreadTeam& operator=(const ThreadTeam&) = delete;
  ~ThreadTeam();

  static std::thread startThread(std::function<void()> life);

  unsigned size() const { return static_cast<unsigned>(m_threads.size()); }

  /// Does the work on each thread and returns when all are done; meanwhile calls `look` from time
  /// to time, on the calling thread. Throws what the work threw first.
  void run(const Work& work, const std::function<void()>& look);

 private:
  void live(unsigned thread, const Work& enter);
  void end();

  std::mutex m_mutex;
  std::condition_variable m_begin;
  std::condition_variable m_done;
  const Work* m_work = nullptr;
  unsigned m_turn = 0;  ///< counts the pieces of work
  unsigned m_busy = 0;
  bool m_ending = false;
  std::exception_ptr m_failure;
  std::vector<std::thread> m_threads;
};

}  // namespace providers::memory
