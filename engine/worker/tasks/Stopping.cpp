#include "engine/worker/tasks/Stopping.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <thread>

#include "engine/worker/tasks/Objects.h"
#include "engine/worker/wire/Wire.h"
#include "framework/TCMPIInstance.h"

namespace engine::tasks {
namespace {

using NZELVOR20::ICIMInstance;
using NZELVOR20::TCIMValue;

constexpr std::uint16_t kTerminate = 4;  ///< RequestedState of a job
constexpr std::chrono::milliseconds kInterval(50);

std::atomic<bool> g_isOrdered{false};
std::mutex g_mutex;
Stopping* g_run = nullptr;

void terminate(ICIMInstance& job) {
  auto* const instance = dynamic_cast<NZELVOR20::TCMPIInstance*>(&job);
  if (instance == nullptr) return;
  NZELVOR20::TParameterMap parameters;
  parameters.emplace("RequestedState", TCIMValue::Uint16(kTerminate));
  instance->InvokeMethod("RequestStateChange", parameters, {});
}

void tellFailure() {
  wire::send(Happened{
      Source::kWorker,
      Message{Severity::kWarning, "the job cannot be told to end: " + currentExceptionText(), {}}});
}

}  // namespace

Stopping::Stopping(Session& session) : m_session(session) {
  m_former = pathsOf(instancesOf(session.objects(), kJobClass));
  const std::lock_guard<std::mutex> lock(g_mutex);
  g_run = this;
}

Stopping::~Stopping() {
  const std::lock_guard<std::mutex> lock(g_mutex);
  g_run = nullptr;
}

bool Stopping::isOrdered() { return g_isOrdered; }

void Stopping::order() {
  g_isOrdered = true;
  for (;;) {
    {
      const std::lock_guard<std::mutex> lock(g_mutex);
      if (g_run == nullptr || g_run->terminateJobs()) return;
    }
    std::this_thread::sleep_for(kInterval);
  }
}

/// Whether there was one to end: a run that has only begun has none yet.
bool Stopping::terminateJobs() {
  bool wasThere = false;
  try {
    for (const auto& job : newInstancesOf(m_session.objects(), kJobClass, m_former)) {
      if (isOver(*job)) continue;
      wasThere = true;
      terminate(*job);
    }
  } catch (...) {
    tellFailure();
    return true;
  }
  return wasThere;
}

}  // namespace engine::tasks
