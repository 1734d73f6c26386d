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
  explicit CmpiThreads(const CMPIBroker* broker) : m_broker(broker) {}

  /// Runs the work, which lets no exception out, on a new thread that is attached to the broker.
  /// `context` is that of the present call. False when the broker has no thread.
  bool launch(const CMPIContext* context, std::function<void()> work);

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
  void join(Thread& thread) const;
  void joinEnded();

  const CMPIBroker* m_broker;
  std::mutex m_mutex;
  std::vector<std::unique_ptr<Thread>> m_threads;
};

}  // namespace providers
