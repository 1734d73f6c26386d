#include <windows.h>

#include "engine/worker/guard/Keeper.h"

namespace engine::guard {

/// The job is never closed: the system does that when this process ends, however it does. The keys
/// that end a program reach every one of a console: this one is ended by its supervisor.
void stayKept() {
  SetConsoleCtrlHandler(nullptr, TRUE);
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  const HANDLE job = CreateJobObjectW(nullptr, nullptr);
  if (job == nullptr) return;
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
  AssignProcessToJobObject(job, GetCurrentProcess());
}

}  // namespace engine::guard
