#include "engine/worker/tasks/RunnerPause.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "engine/worker/guard/MemoryWatch.h"
#include "platform/ProgramPause.h"

namespace engine::tasks {
namespace {

std::mutex g_mutex;
std::condition_variable g_mayEnd;
int g_toEnd = 0;
unsigned g_failures = 0;  ///< those for want of memory that there were at the last pause

constexpr std::chrono::milliseconds kWithoutMemory(100);

/// What could not be read for want of memory is not there in five seconds either, and ten pauses
/// for a record would keep the cause back for a minute.
bool hasMemoryFailed() {
  const unsigned failures = guard::failuresForWantOfMemory();
  return std::exchange(g_failures, failures) != failures;
}

void pauseFor(std::chrono::milliseconds time) {
  std::unique_lock<std::mutex> lock(g_mutex);
  if (hasMemoryFailed()) time = std::min(time, kWithoutMemory);
  const bool isEnded = g_mayEnd.wait_for(lock, time, [] { return g_toEnd > 0; });
  if (isEnded) --g_toEnd;
}

}  // namespace

void endRunnerPauses(int count) {
  const std::lock_guard<std::mutex> lock(g_mutex);
  g_toEnd += count;
  g_mayEnd.notify_all();
}

}  // namespace engine::tasks

void diagsrunner_pause(unsigned int milliseconds) {
  engine::tasks::pauseFor(std::chrono::milliseconds(milliseconds));
}
