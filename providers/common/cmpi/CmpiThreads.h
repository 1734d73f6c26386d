#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "cmpi/cmpi.h"

namespace providers {

/// The threads that a provider starts through its broker. Safe to use from any thread.
class CmpiThreads {
 public:
  /// Runs the work, which lets no exception out, on a new thread that is attached to the broker.
  /// `context` is that of the present call. False when the broker has no thread.
  bool launch(const CMPIBroker* broker, const CMPIContext* context, std::function<void()> work);

  /// Waits for every thread; the work has to be told to end before.
  void joinAll();

 private:
  struct Thread {
    const CMPIBroker* broker = nullptr;
    CMPIContext* context = nullptr;
    std::function<void()> work;
    CMPI_THREAD_TYPE handle = nullptr;
    std::atomic<bool> ended{false};
  };

  static CMPI_THREAD_RETURN CMPI_THREAD_CDECL enter(void* parameter) noexcept;
  static void join(const Thread& thread);
  void joinEnded();

  std::mutex m_mutex;
  std::vector<std::unique_ptr<Thread>> m_threads;
};

}  // namespace providers
