#include "providers/memory/engine/ThreadTeam.h"

#include <chrono>
#include <system_error>
#include <utility>

namespace providers::memory {

std::thread ThreadTeam::startThread(std::function<void()> life) {
  return std::thread(std::move(life));
}

ThreadTeam::ThreadTeam(unsigned threads, const Work& enter, const Start& start) {
  m_threads.reserve(threads);
  try {
    while (m_threads.size() < threads) {
      const auto number = static_cast<unsigned>(m_threads.size());
      m_threads.push_back(start([this, number, enter] { live(number, enter); }));
    }
  } catch (const std::system_error& error) {
    if (m_threads.empty())
      throw std::system_error(error.code(), "the system starts no thread for the test");
  } catch (...) {
    end();
    throw;
  }
}

ThreadTeam::~ThreadTeam() { end(); }

void ThreadTeam::end() {
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_ending = true;
  }
  m_begin.notify_all();
  for (std::thread& thread : m_threads) thread.join();
  m_threads.clear();
}

void ThreadTeam::run(const Work& work, const std::function<void()>& look) {
  constexpr std::chrono::milliseconds kBetweenLooks{100};
  std::unique_lock<std::mutex> lock(m_mutex);
  m_work = &work;
  m_busy = size();
  m_failure = nullptr;
  std::exception_ptr failure;
  ++m_turn;
  m_begin.notify_all();
  while (!m_done.wait_for(lock, kBetweenLooks, [this] { return m_busy == 0; })) {
    lock.unlock();
    // The work is the caller's: nobody may leave while threads are at it.
    try {
      if (!failure) look();
    } catch (...) {
      failure = std::current_exception();
    }
    lock.lock();
  }
  if (failure && !m_failure) m_failure = failure;
  if (m_failure) std::rethrow_exception(std::exchange(m_failure, nullptr));
}

void ThreadTeam::live(unsigned thread, const Work& enter) {
  enter(thread);
  unsigned turn = 0;
  std::unique_lock<std::mutex> lock(m_mutex);
  while (true) {
    m_begin.wait(lock, [&] { return m_ending || m_turn != turn; });
    if (m_ending) return;
    turn = m_turn;
    const Work& work = *m_work;
    lock.unlock();
    std::exception_ptr failure;
    try {
      work(thread);
    } catch (...) {
      failure = std::current_exception();
    }
    lock.lock();
    if (failure && !m_failure) m_failure = failure;
    if (--m_busy == 0) m_done.notify_all();
  }
}

}  // namespace providers::memory
