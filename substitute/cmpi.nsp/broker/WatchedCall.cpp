#include "substitute/cmpi.nsp/broker/WatchedCall.h"

#include <atomic>

namespace cmpinsp {
namespace {

std::atomic<substitute::ICallWatch*> watchOfCalls{nullptr};

}  // namespace

void setCallWatch(substitute::ICallWatch* watch) noexcept {
  watchOfCalls.store(watch, std::memory_order_release);
}

WatchedCall::WatchedCall(const char* provider, const char* operation) noexcept
    : m_watch(watchOfCalls.load(std::memory_order_acquire)) {
  if (m_watch != nullptr) m_watch->entered(provider, operation);
}

}  // namespace cmpinsp
