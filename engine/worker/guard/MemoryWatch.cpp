#include "engine/worker/guard/MemoryWatch.h"

#include <atomic>
#include <new>

namespace engine::guard {
namespace {

std::atomic<bool> g_hasRunOut{false};

[[noreturn]] void noteFailure() {
  g_hasRunOut = true;
  throw std::bad_alloc();
}

}  // namespace

void watchMemory() noexcept { std::set_new_handler(noteFailure); }

bool hasMemoryRunOut() noexcept { return g_hasRunOut; }

}  // namespace engine::guard
