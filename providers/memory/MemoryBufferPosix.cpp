#include <sys/mman.h>

#include <new>

#include "providers/memory/MemoryBuffer.h"

namespace providers {

MemoryBuffer::MemoryBuffer(std::size_t bytes) : m_bytes(bytes) {
  void* address = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (address == MAP_FAILED) throw std::bad_alloc();
  m_address = address;
  m_locked = mlock(address, bytes) == 0;
}

MemoryBuffer::~MemoryBuffer() { munmap(m_address, m_bytes); }

}  // namespace providers
