#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "platform/Hurry.h"
#include "platform/Platform.h"

namespace diagsrunner::platform {
namespace {

struct Sleeps {
  std::mutex mutex;
  std::condition_variable hurried;
  std::uint64_t hurries = 0;
  Hurry hurry;
};

/// Never destroyed: a thread may sleep while the process ends.
Sleeps& sleeps() {
  static Sleeps& all = *new Sleeps;
  return all;
}

}  // namespace

void sleepMilliseconds(unsigned int milliseconds) {
  Sleeps& all = sleeps();
  std::unique_lock<std::mutex> lock(all.mutex);
  const std::uint64_t before = all.hurries;
  all.hurried.wait_for(lock, std::chrono::milliseconds(all.hurry.shorten(milliseconds)),
                       [&] { return all.hurries != before; });
}

void hurry() noexcept {
  Sleeps& all = sleeps();
  {
    const std::lock_guard<std::mutex> lock(all.mutex);
    ++all.hurries;
    all.hurry.begin();
  }
  all.hurried.notify_all();
}

}  // namespace diagsrunner::platform
