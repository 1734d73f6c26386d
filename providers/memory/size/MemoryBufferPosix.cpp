#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <system_error>

#include "providers/memory/size/MemoryBuffer.h"

namespace providers::memory {

namespace {

std::string lockFailure(int error) {
  rlimit limit = {};
  if ((error == ENOMEM || error == EPERM || error == EAGAIN) &&
      getrlimit(RLIMIT_MEMLOCK, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY) {
    constexpr rlim_t kKibi = 1024;
    return "the limit of locked memory is " + std::to_string(limit.rlim_cur / kKibi) + " KiB";
  }
  return std::generic_category().message(error);
}

/// Each page is locked when it is touched; 0, or the error.
int lockWhenTouched(void* address, std::size_t bytes) {
#ifdef MLOCK_ONFAULT
  if (mlock2(address, bytes, MLOCK_ONFAULT) == 0) return 0;
  if (errno != ENOSYS) return errno;
#endif
  return mlock(address, bytes) == 0 ? 0 : errno;
}

}  // namespace

MemoryBuffer::MemoryBuffer(std::size_t bytes) : m_bytes(bytes) {
  void* address = mmap(nullptr, bytes, PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (address == MAP_FAILED) throw std::bad_alloc();
  m_address = address;
#ifdef MADV_HUGEPAGE
  madvise(address, bytes, MADV_HUGEPAGE);  // advice: whole runs of addresses, and faster
#endif
#ifdef MADV_DONTFORK
  madvise(address, bytes, MADV_DONTFORK);
#endif
  if (const int error = lockWhenTouched(address, bytes)) m_whyNotLocked = lockFailure(error);
}

void MemoryBuffer::keepInPlace(LineRange) {}

MemoryBuffer::~MemoryBuffer() {
  releaseOthers([](void* part, std::size_t bytes) { munmap(part, bytes); });
}

}  // namespace providers::memory
