#include "host/MemoryWatch.h"

#include <atomic>
#include <new>

namespace host {
namespace {

std::atomic<bool> g_hasRunOut{false};

[[noreturn]] void noteFailure() {
  g_hasRunOut = true;
  throw std::bad_alloc();
}

}  // namespace

void watchMemory() noexcept { std::set_new_handler(noteFailure); }

bool hasMemoryRunOut() noexcept { return g_hasRunOut; }

}  // namespace host
