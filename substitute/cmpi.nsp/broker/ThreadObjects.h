#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "substitute/cmpi.nsp/broker/Objects.h"

/// The threads, mutexes and conditions that providers make.
namespace cmpinsp::broker {

struct MutexBody final : Body {
  std::recursive_mutex mutex;
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
/// providers. 0 or an error number.
int requestEnd(CMPI_THREAD_TYPE thread);

void sleepFor(std::chrono::milliseconds time);

/// Waits, until `deadline` where there is one. 0 or an error number.
int waitForCondition(CMPI_COND_TYPE condition, CMPI_MUTEX_TYPE mutex,
                     const std::chrono::system_clock::time_point* deadline);

}  // namespace cmpinsp::broker
