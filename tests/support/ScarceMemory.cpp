#include "tests/support/ScarceMemory.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace support {
namespace {

struct Plan {
  std::size_t toGo = 0;  ///< none fails while it is 0
  bool staysAway = false;
  bool hasFailed = false;
};

thread_local Plan plan;
std::atomic<long> live{0};

bool isDue() noexcept {
  if (plan.toGo == 0) {
    return false;
  }
  if (plan.toGo > 1) {
    --plan.toGo;
    return false;
  }
  plan.hasFailed = true;
  plan.toGo = plan.staysAway ? 1 : 0;
  return true;
}

}  // namespace

ScarceMemory::ScarceMemory(std::size_t number, Failing failing) {
  plan = {number, failing == Failing::fromThenOn, false};
}

ScarceMemory::~ScarceMemory() { plan = {}; }

bool ScarceMemory::hasFailed() const { return plan.hasFailed; }

long liveBlocks() { return live; }

}  // namespace support

void* operator new(std::size_t size) {
  void* const memory = support::isDue() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  ++support::live;
  return memory;
}

void* operator new[](std::size_t size) { return ::operator new(size); }

void operator delete(void* memory) noexcept {
  support::live -= memory == nullptr ? 0 : 1;
  std::free(memory);
}
void operator delete[](void* memory) noexcept { ::operator delete(memory); }
void operator delete(void* memory, std::size_t) noexcept { ::operator delete(memory); }
void operator delete[](void* memory, std::size_t) noexcept { ::operator delete(memory); }
