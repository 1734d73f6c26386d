#include <windows.h>

#include <mutex>
#include <utility>

#include "host/Interrupts.h"

namespace host {
namespace {

std::mutex g_mutex;
std::function<void()> g_call;

/// The system calls it on a thread of its own.
BOOL WINAPI note(DWORD) {
  const std::lock_guard<std::mutex> lock(g_mutex);
  if (g_call) g_call();
  return TRUE;
}

}  // namespace

Interrupts::Interrupts(std::function<void()> onInterrupt) {
  {
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_call = std::move(onInterrupt);
  }
  SetConsoleCtrlHandler(note, TRUE);
}

Interrupts::~Interrupts() {
  SetConsoleCtrlHandler(note, FALSE);
  const std::lock_guard<std::mutex> lock(g_mutex);
  g_call = nullptr;
}

// No signal tells of it there.
void outliveReaders() {}

}  // namespace host
