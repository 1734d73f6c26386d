#include "providers/common/cmpi/CmpiThreads.h"

#include <algorithm>

namespace providers {

namespace {

/// Gives back the context of a thread that was never attached: detaching would have done it.
void release(CMPIContext* context) {
  if (context) context->ft->release(context);
}

}  // namespace

CMPI_THREAD_RETURN CMPI_THREAD_CDECL CmpiThreads::enter(void* parameter) noexcept {
  auto* thread = static_cast<Thread*>(parameter);
  const CMPIBroker* broker = thread->broker;
  // Work that asks nothing of the broker goes on without it.
  const bool attached =
      thread->context && broker->bft->attachThread(broker, thread->context).rc == CMPI_RC_OK;
  thread->work();
  if (attached) {
    broker->bft->detachThread(broker, thread->context);
  } else {
    release(thread->context);
  }
  thread->ended = true;
  return CMPI_THREAD_RETURN();
}

bool CmpiThreads::launch(const CMPIBroker* broker, const CMPIContext* context,
                         std::function<void()> work) {
  const std::lock_guard<std::mutex> lock(m_mutex);
  joinEnded();
  auto thread = std::make_unique<Thread>();
  thread->broker = broker;
  thread->work = std::move(work);
  m_threads.push_back(std::move(thread));
  Thread& started = *m_threads.back();
  started.context = broker->bft->prepareAttachThread(broker, context);
  started.handle = broker->xft->newThread(&CmpiThreads::enter, &started, 0);
  if (started.handle) return true;
  release(started.context);
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
