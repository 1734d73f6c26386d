#include <windows.h>

#include <new>

#include "providers/memory/size/MemoryBuffer.h"

namespace providers::memory {

namespace {

/// A process may lock about as much as its working set is allowed to be.
bool allowLocking(std::size_t bytes) {
  SIZE_T least = 0;
  SIZE_T most = 0;
  const HANDLE process = GetCurrentProcess();
  return GetProcessWorkingSetSize(process, &least, &most) != 0 &&
         SetProcessWorkingSetSize(process, least + bytes, most + bytes) != 0;
}

}  // namespace

MemoryBuffer::MemoryBuffer(std::size_t bytes) : m_bytes(bytes) {
  m_address = VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  if (!m_address) throw std::bad_alloc();
  if (!allowLocking(bytes) || VirtualLock(m_address, bytes) == 0)
    m_whyNotLocked = "Windows error " + std::to_string(GetLastError());
}

MemoryBuffer::~MemoryBuffer() { VirtualFree(m_address, 0, MEM_RELEASE); }

}  // namespace providers::memory
