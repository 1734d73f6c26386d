#include <windows.h>

#include <new>

#include "providers/memory/MemoryBuffer.h"

namespace providers {

MemoryBuffer::MemoryBuffer(std::size_t bytes) : m_bytes(bytes) {
  m_address = VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  if (!m_address) throw std::bad_alloc();
  m_locked = VirtualLock(m_address, bytes) != 0;
}

MemoryBuffer::~MemoryBuffer() { VirtualFree(m_address, 0, MEM_RELEASE); }

}  // namespace providers
