#include "engine/worker/guard/MemoryWatch.h"

#include <atomic>
#include <new>

#include "engine/worker/guard/LastWord.h"

namespace engine::guard {
namespace {

std::atomic<bool> g_hasRunOut{false};
std::atomic<const char*> g_provider{""};
std::atomic<const char*> g_operation{""};

[[noreturn]] void noteFailure() {
  if (!g_hasRunOut.exchange(true)) {
    g_provider = currentProvider();
    g_operation = currentOperation();
  }
  throw std::bad_alloc();
}

}  // namespace

void watchMemory() noexcept { std::set_new_handler(noteFailure); }

bool hasMemoryRunOut() noexcept { return g_hasRunOut; }

const char* providerWithoutMemory() noexcept { return g_provider; }
const char* operationWithoutMemory() noexcept { return g_operation; }

}  // namespace engine::guard
