#include "host/MemoryWatch.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

#include "host/ExitStatus.h"

namespace host {
namespace {

std::atomic<bool> g_hasRunOut{false};
std::terminate_handler g_otherwise = nullptr;

[[noreturn]] void noteFailure() {
  g_hasRunOut = true;
  throw std::bad_alloc();
}

/// Not even the exception's own memory may have been there, or it met code that lets none out.
[[noreturn]] void endForWantOfMemory() {
  if (!g_hasRunOut && g_otherwise != nullptr) g_otherwise();
  if (!g_hasRunOut) std::abort();
  std::fputs("diags: out of memory\n", stderr);
  std::_Exit(static_cast<int>(ExitStatus::kCouldNotRun));
}

}  // namespace

void watchMemory() noexcept {
  g_hasRunOut = false;
  std::set_new_handler(noteFailure);
  const std::terminate_handler before = std::set_terminate(endForWantOfMemory);
  if (before != endForWantOfMemory) g_otherwise = before;
}

bool hasMemoryRunOut() noexcept { return g_hasRunOut; }

}  // namespace host
