#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"

/// The threads, mutexes and conditions that providers make.
namespace cmpinsp::broker {

/// A recursive mutex that knows its owner and whether anybody waits, which the standard's does not
/// tell.
class OwnedMutex {
 public:
  /// Counts a thread that will want the mutex.
  class Waiting {
   public:
    explicit Waiting(OwnedMutex& mutex) : m_mutex(mutex) { ++m_mutex.m_waiting; }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;
    ~Waiting() { --m_mutex.m_waiting; }

   private:
    OwnedMutex& m_mutex;
  };

  void lock() {
    if (!m_mutex.try_lock()) {
      const Waiting waiting(*this);
      m_mutex.lock();
    }
    m_owner.store(std::this_thread::get_id(), std::memory_order_relaxed);
    ++m_depth;
  }
  void unlock() {
    if (--m_depth == 0) m_owner.store(std::thread::id(), std::memory_order_relaxed);
    m_mutex.unlock();
  }
  /// However often the calling thread has locked it.
  void unlockAll() {
    while (isMine()) unlock();
  }
  bool isMine() const { return m_owner.load() == std::this_thread::get_id(); }
  bool isUsed() const { return m_owner.load() != std::thread::id() || m_waiting.load() != 0; }

 private:
  std::recursive_mutex m_mutex;
  std::atomic<std::thread::id> m_owner{std::thread::id()};
  std::atomic<int> m_waiting{0};
  int m_depth = 0;
};

struct MutexBody final : Body {
  OwnedMutex mutex;
};

struct ConditionBody final : Body {
  std::condition_variable_any changed;
  /// How often it was signalled: a thread that was just looking whether it has to end, and did not
  /// wait, learns of the signal by it.
  std::atomic<std::uint64_t> signals{0};
};

/// Starts a thread; a detached one is forgotten when it ends, another one when it is joined. An
/// exception ends the thread alone, with all bits of its value set.
CMPI_THREAD_TYPE startThread(CMPIThreadFunc start, void* parameter, bool detached);

/// Waits for the end of a joinable thread. 0 or an error number.
int waitForThread(CMPI_THREAD_TYPE thread, CMPI_THREAD_RETURN& value);

/// Ends the calling thread, which `startThread` has made. Any other thread goes on, with an error
/// number, and so does one that is in a call into a provider.
int endThisThread(CMPI_THREAD_RETURN value);

/// Asks a thread to end. It does so where it sleeps, waits or joins next, outside of calls into
/// providers; where it waits for a condition, it unlocks the mutex. 0 or an error number.
int requestEnd(CMPI_THREAD_TYPE thread);

void sleepFor(std::chrono::milliseconds time);

/// Waits, until `deadline` where there is one. 0 or an error number.
int waitForCondition(CMPI_COND_TYPE condition, CMPI_MUTEX_TYPE mutex,
                     const std::chrono::system_clock::time_point* deadline);

}  // namespace cmpinsp::broker
