#include "substitute/cmpi.nsp/broker/library/LoaderWaits.h"

#include <iterator>
#include <mutex>
#include <unordered_map>

namespace cmpinsp::broker {
namespace {

struct Wait {
  const void* awaited;
  std::thread::id loader;
};

struct Waits {
  std::mutex mutex;
  std::unordered_map<std::thread::id, Wait> byWaiter;
};

/// Never destroyed: a provider may be loaded as late as in a host's static destructors.
Waits& waits() {
  static auto* const waits = new Waits;
  return *waits;
}

}  // namespace

bool beginLoaderWait(std::thread::id waiter, const void* awaited, std::thread::id loader) {
  Waits& all = waits();
  const std::lock_guard<std::mutex> lock(all.mutex);
  // Nobody who would close a circle is ever added, so the chain ends.
  for (std::thread::id next = loader; next != waiter;) {
    const auto wait = all.byWaiter.find(next);
    if (wait == all.byWaiter.end()) {
      all.byWaiter[waiter] = {awaited, loader};
      return true;
    }
    next = wait->second.loader;
  }
  return false;
}

void endLoaderWait(std::thread::id waiter) noexcept {
  Waits& all = waits();
  const std::lock_guard<std::mutex> lock(all.mutex);
  all.byWaiter.erase(waiter);
}

void endLoaderWaits(const void* awaited) noexcept {
  Waits& all = waits();
  const std::lock_guard<std::mutex> lock(all.mutex);
  for (auto wait = all.byWaiter.begin(); wait != all.byWaiter.end();) {
    wait = wait->second.awaited == awaited ? all.byWaiter.erase(wait) : std::next(wait);
  }
}

}  // namespace cmpinsp::broker
