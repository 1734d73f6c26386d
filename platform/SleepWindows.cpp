#include <windows.h>

#include <mutex>

#include "platform/Hurry.h"
#include "platform/Platform.h"

namespace diagsrunner::platform {
namespace {

struct Sleeps {
  std::mutex mutex;
  HANDLE hurried = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  Hurry hurry;
};

/// Never destroyed: a thread may sleep while the process ends.
Sleeps& sleeps() {
  static Sleeps& all = *new Sleeps;
  return all;
}

/// The time of a sleep that begins now, which only what comes later ends.
DWORD begin(Sleeps& all, unsigned int milliseconds) {
  const std::lock_guard<std::mutex> lock(all.mutex);
  if (all.hurried != nullptr) ResetEvent(all.hurried);
  return all.hurry.shorten(milliseconds);
}

}  // namespace

void sleepMilliseconds(unsigned int milliseconds) {
  Sleeps& all = sleeps();
  const DWORD time = begin(all, milliseconds);
  if (all.hurried == nullptr) {
    Sleep(time);
  } else {
    WaitForSingleObject(all.hurried, time);
  }
}

void hurry() noexcept {
  Sleeps& all = sleeps();
  const std::lock_guard<std::mutex> lock(all.mutex);
  all.hurry.begin();
  if (all.hurried != nullptr) SetEvent(all.hurried);
}

}  // namespace diagsrunner::platform
