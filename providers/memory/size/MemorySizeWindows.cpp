#include <windows.h>

#include <algorithm>

#include "providers/memory/size/MemorySize.h"

namespace providers::memory {

namespace {

/// Lowers the sizes to what the job object of this process leaves.
void applyJobLimit(MemorySize& size) {
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
  if (!QueryInformationJobObject(nullptr, JobObjectExtendedLimitInformation, &limits, sizeof limits,
                                 nullptr))
    return;
  const DWORD flags = limits.BasicLimitInformation.LimitFlags;
  if (flags & JOB_OBJECT_LIMIT_PROCESS_MEMORY) {
    size.usable = std::min<std::uint64_t>(size.usable, limits.ProcessMemoryLimit);
    size.available = std::min<std::uint64_t>(size.available, limits.ProcessMemoryLimit);
  }
  if (flags & JOB_OBJECT_LIMIT_JOB_MEMORY) {
    size.usable = std::min<std::uint64_t>(size.usable, limits.JobMemoryLimit);
    size.available = std::min<std::uint64_t>(size.available, limits.JobMemoryLimit);
  }
}

}  // namespace

MemorySize queryMemorySize() {
  MemorySize size;
  MEMORYSTATUSEX status = {};
  status.dwLength = sizeof status;
  if (!GlobalMemoryStatusEx(&status)) return size;
  size.installed = size.usable = status.ullTotalPhys;
  size.available = std::min<std::uint64_t>(status.ullAvailPhys, status.ullAvailPageFile);
  applyJobLimit(size);
  return size;
}

}  // namespace providers::memory
