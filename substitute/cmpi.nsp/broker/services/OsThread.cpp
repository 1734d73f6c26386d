#include "substitute/cmpi.nsp/broker/services/OsThread.h"

#include <memory>
#include <new>

#if defined(_WIN32)
#include <process.h>
#include <windows.h>
#else
#include <pthread.h>
#endif

namespace cmpinsp::broker {
namespace {

struct Start {
  void (*run)(void*);
  void* argument;
};

#if defined(_WIN32)

unsigned __stdcall begin(void* given) {
  const std::unique_ptr<Start> start(static_cast<Start*>(given));
  try {
    start->run(start->argument);
  } catch (const ThreadEnd&) {
    // The thread has reached its end early.
  }
  return 0;
}

bool startNative(Start* start) noexcept {
  const auto thread = _beginthreadex(nullptr, 0, begin, start, 0, nullptr);
  if (thread == 0) return false;
  CloseHandle(reinterpret_cast<HANDLE>(thread));
  return true;
}

#else

void* begin(void* given) {
  const std::unique_ptr<Start> start(static_cast<Start*>(given));
  start->run(start->argument);
  return nullptr;
}

bool startNative(Start* start) noexcept {
  pthread_t thread;
  if (pthread_create(&thread, nullptr, begin, start) != 0) return false;
  pthread_detach(thread);
  return true;
}

#endif

}  // namespace

bool startOsThread(void (*run)(void*), void* argument) noexcept {
  std::unique_ptr<Start> start(new (std::nothrow) Start{run, argument});
  if (!start) return false;
  if (!startNative(start.get())) return false;
  start.release();
  return true;
}

void endOsThread() {
#if defined(_WIN32)
  throw ThreadEnd();
#else
  pthread_exit(nullptr);
#endif
}

}  // namespace cmpinsp::broker
