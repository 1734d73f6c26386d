#include "providers/common/CmpiThreads.h"

#include <algorithm>

namespace providers {

CMPI_THREAD_RETURN CMPI_THREAD_CDECL CmpiThreads::enter(void* parameter) noexcept {
  auto* thread = static_cast<Thread*>(parameter);
  const CMPIBroker* broker = thread->broker;
  if (thread->context) broker->bft->attachThread(broker, thread->context);
  thread->work();
  if (thread->context) broker->bft->detachThread(broker, thread->context);
  thread->ended = true;
  return CMPI_THREAD_RETURN();
}

bool CmpiThreads::launch(const CMPIBroker* broker, const CMPIContext* context,
                         std::function<void()> work) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  joinEnded();
  auto thread = std::make_unique<Thread>();
  thread->broker = broker;
  thread->context = broker->bft->prepareAttachThread(broker, context);
  thread->work = std::move(work);
  m_threads.push_back(std::move(thread));
  Thread& started = *m_threads.back();
  started.handle = broker->xft->newThread(&CmpiThreads::enter, &started, 0);
  if (started.handle) return true;
  m_threads.pop_back();
  return false;
}

void CmpiThreads::join(const Thread& thread) {
  CMPI_THREAD_RETURN result{};
  thread.broker->xft->joinThread(thread.handle, &result);
}

void CmpiThreads::joinEnded() {
  const auto over = std::partition(m_threads.begin(), m_threads.end(),
                                   [](const auto& thread) { return !thread->ended; });
  std::for_each(over, m_threads.end(), [](const auto& thread) { join(*thread); });
  m_threads.erase(over, m_threads.end());
}

void CmpiThreads::joinAll() {
  const std::lock_guard<std::mutex> lock(m_mutex);
  for (const auto& thread : m_threads) join(*thread);
  m_threads.clear();
}

}  // namespace providers
