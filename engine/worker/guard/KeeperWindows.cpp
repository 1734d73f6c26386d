#include <io.h>
#include <windows.h>

#include <cstdint>
#include <initializer_list>

#include "engine/worker/guard/Keeper.h"

namespace engine::guard {
namespace {

bool isOfThisProcess(std::intptr_t handle) {
  constexpr int kDescriptors = 5;  // the standard streams and the protocol's two
  for (int i = 0; i < kDescriptors; ++i) {
    if (_get_osfhandle(i) == handle) return true;
  }
  for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
    if (reinterpret_cast<std::intptr_t>(GetStdHandle(stream)) == handle) return true;
  }
  return false;
}

/// Whatever else the supervisor had open, files and other workers' pipes, comes with a start that
/// hands its streams on. What this process has opened by now is not inheritable; so what is, is
/// known by that. A provider could write to it, and would keep it open.
void closeInherited() {
  constexpr std::intptr_t kStep = 4;
  constexpr std::intptr_t kMost = kStep << 20;
  DWORD count = 0;
  GetProcessHandleCount(GetCurrentProcess(), &count);
  const int gap = count == 0 ? 256 : 1 << 16;  // Wine does not tell how many there are
  DWORD seen = 0;
  int missed = 0;
  for (std::intptr_t value = kStep; value < kMost; value += kStep) {
    if (missed > gap || (count != 0 && seen == count)) return;
    const HANDLE handle = reinterpret_cast<HANDLE>(value);
    DWORD flags = 0;
    const bool isOpen = GetHandleInformation(handle, &flags) != 0;
    missed = isOpen ? 0 : missed + 1;
    if (isOpen) ++seen;
    if ((flags & HANDLE_FLAG_INHERIT) != 0 && !isOfThisProcess(value)) CloseHandle(handle);
  }
}

}  // namespace

/// The job is never closed: the system does that when this process ends, however it does. The keys
/// that end a program reach every one of a console: this one is ended by its supervisor.
void stayKept() {
  closeInherited();
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
