#include "engine/worker/tasks/Stopping.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include "engine/worker/tasks/Objects.h"
#include "engine/worker/tasks/RunnerPause.h"
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

Stopping::Stopping(Session& session, int pauses) : m_session(session), m_pauses(pauses) {
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
  while (attendRun()) std::this_thread::sleep_for(kInterval);
}

/// Whether there is more to be done for it.
bool Stopping::attendRun() {
  const std::lock_guard<std::mutex> lock(g_mutex);
  return g_run != nullptr && g_run->attend();
}

/// A run that has only begun has no job yet.
bool Stopping::attend() {
  if (m_jobs.empty()) return terminateJobs();
  try {
    watch();
    return true;
  } catch (...) {
    endRunnerPauses(m_pauses);
    return false;  // whatever it is, the runner meets it, too
  }
}

bool Stopping::terminateJobs() {
  try {
    for (const auto& job : newInstancesOf(m_session.objects(), kJobClass, m_former)) {
      m_jobs.push_back(job->GetObjectPath({}));
      if (!isOver(*job)) terminate(*job);
    }
    return true;
  } catch (...) {
    tellFailure();
    return false;
  }
}

bool Stopping::areJobsOver() {
  for (const NZELVOR20::TCIMReference& path : m_jobs) {
    const auto job = m_session.objects().GetInstance(path, {});
    if (job && !isOver(*job) && textOf(*job, "PercentComplete") != "100") return false;
  }
  return true;
}

/// The runner's patience for a job and its record is a number of pauses: none is ended before there
/// is something new to see.
void Stopping::watch() {
  if (!m_isOver) {
    m_isOver = areJobsOver();
    if (m_isOver) endRunnerPauses(m_pauses);
    return;
  }
  const std::size_t records = instancesOf(m_session.objects(), kRecordClass).size();
  if (std::exchange(m_records, records) != records) endRunnerPauses(1);
}

}  // namespace engine::tasks
