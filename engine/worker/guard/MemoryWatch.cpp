#include "engine/worker/guard/MemoryWatch.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

#include "engine/worker/guard/LastWord.h"
#include "engine/worker/guard/ProcessSize.h"

namespace engine::guard {
namespace {

/// Framework, runner and all providers take a tenth of it.
constexpr std::size_t kAmple = std::size_t{256} << 20;

std::atomic<unsigned> g_failures{0};
std::atomic<bool> g_wasAmple{false};
std::atomic<const char*> g_provider{""};
std::atomic<const char*> g_operation{""};

/// Whoever asks for more than any machine has, and does without, has taken none from anybody.
bool isBlockLeft() noexcept {
  constexpr std::size_t kBlock = std::size_t{16} << 20;
  void* const block = std::malloc(kBlock);
  std::free(block);
  return block != nullptr;
}

std::atomic<MemoryLeft> g_isLeft{isBlockLeft};

[[noreturn]] void noteFailure() {
  if (!g_isLeft.load()() && g_failures++ == 0) {
    g_wasAmple = processSize() >= kAmple;
    g_provider = currentProvider();
    g_operation = currentOperation();
  }
  throw std::bad_alloc();
}

}  // namespace

void watchMemory(MemoryLeft isLeft) noexcept {
  g_isLeft = isLeft != nullptr ? isLeft : isBlockLeft;
  std::set_new_handler(noteFailure);
}

bool hasMemoryRunOut() noexcept { return g_failures > 0; }
unsigned failuresForWantOfMemory() noexcept { return g_failures; }

bool wasMemoryAmple() noexcept { return g_wasAmple; }

const char* providerWithoutMemory() noexcept { return g_provider; }
const char* operationWithoutMemory() noexcept { return g_operation; }

}  // namespace engine::guard
