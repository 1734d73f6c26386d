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

  /// `enter` is the first thing that each thread does, to find its place.
  ThreadTeam(unsigned threads, Work enter);
  ThreadTeam(const ThreadTeam&) = delete;
  ThreadTeam& operator=(const ThreadTeam&) = delete;
  ~ThreadTeam();

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
