#include "substitute/cmpi.nsp/broker/WatchedCall.h"

#include <atomic>

namespace cmpinsp {
namespace {

std::atomic<substitute::ICallWatch*> watchOfCalls{nullptr};

}  // namespace

void setCallWatch(substitute::ICallWatch* watch) noexcept {
  watchOfCalls.store(watch, std::memory_order_release);
}

void tellThrown(const char* provider, const char* what) noexcept {
  substitute::ICallWatch* const watch = watchOfCalls.load(std::memory_order_acquire);
  if (watch != nullptr) watch->threw(provider, what);
}

WatchedCall::WatchedCall(const char* provider, const char* operation) noexcept
    : m_watch(watchOfCalls.load(std::memory_order_acquire)) {
  if (m_watch != nullptr) m_watch->entered(provider, operation);
}

}  // namespace cmpinsp
