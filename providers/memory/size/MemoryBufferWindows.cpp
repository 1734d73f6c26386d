#include <windows.h>

#include <new>

#include "providers/memory/size/MemoryBuffer.h"

namespace providers::memory {

namespace {

std::string lockFailure(DWORD error) {
  switch (error) {
    case ERROR_PRIVILEGE_NOT_HELD:
      return "the right to increase a working set is missing";
    case ERROR_WORKING_SET_QUOTA:
    case ERROR_NOT_ENOUGH_QUOTA:
      return "the working set may not be that large";
    case ERROR_NO_SYSTEM_RESOURCES:
    case ERROR_NOT_ENOUGH_MEMORY:
      return "the system has too little memory left for that";
    default:
      return "Windows error " + std::to_string(error);
  }
}

struct WorkingSet {
  SIZE_T least = 0;
  SIZE_T most = 0;
};

/// A process may lock about as much as its working set is allowed to be; 0, or the error.
DWORD allowLocking(const WorkingSet& before, std::size_t bytes) {
  const bool isAllowed =
      SetProcessWorkingSetSize(GetCurrentProcess(), before.least + bytes, before.most + bytes) != 0;
  return isAllowed ? 0 : GetLastError();
}

}  // namespace

MemoryBuffer::MemoryBuffer(std::size_t bytes) : m_bytes(bytes) {
  m_address = VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  if (!m_address) throw std::bad_alloc();
  WorkingSet before;
  if (!GetProcessWorkingSetSize(GetCurrentProcess(), &before.least, &before.most)) {
    m_whyNotLocked = lockFailure(GetLastError());
  } else if (const DWORD error = allowLocking(before, bytes)) {
    m_whyNotLocked = lockFailure(error);
  } else {
    // Else it would be larger by the whole for each run of the process, until there is no more.
    m_restore = [before] {
      SetProcessWorkingSetSize(GetCurrentProcess(), before.least, before.most);
    };
  }
}

void MemoryBuffer::keepInPlace(LineRange lines) {
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_whyNotLocked.empty()) return;
  }
  if (VirtualLock(static_cast<char*>(m_address) + lines.first * kLineBytes,
                  lines.count * kLineBytes))
    return;
  const DWORD error = GetLastError();
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_whyNotLocked.empty()) m_whyNotLocked = lockFailure(error);
}

MemoryBuffer::~MemoryBuffer() {
  if (m_withheld.empty())
    VirtualFree(m_address, 0, MEM_RELEASE);
  else
    releaseOthers([](void* part, std::size_t bytes) { VirtualFree(part, bytes, MEM_DECOMMIT); });
  if (m_restore) m_restore();
}

}  // namespace providers::memory
