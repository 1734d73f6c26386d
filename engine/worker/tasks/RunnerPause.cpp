#include "engine/worker/tasks/RunnerPause.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "platform/ProgramPause.h"

namespace engine::tasks {
namespace {

std::mutex g_mutex;
std::condition_variable g_mayEnd;
int g_toEnd = 0;

void pauseFor(std::chrono::milliseconds time) {
  std::unique_lock<std::mutex> lock(g_mutex);
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
