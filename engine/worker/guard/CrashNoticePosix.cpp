#include <dlfcn.h>
#include <execinfo.h>
#include <sched.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstddef>

#include "engine/worker/guard/CrashNotice.h"
#include "engine/worker/guard/LastWord.h"

namespace engine::guard {
namespace {

constexpr int kSignals[] = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGSYS, SIGTRAP};
constexpr int kMostFrames = 64;
/// A handler that gets stuck, in a lock of the loader's say, is ended by the alarm.
constexpr unsigned kMostSeconds = 2;
constexpr std::size_t kStackSize = 256 * 1024;

constexpr int kFlags = static_cast<int>(SA_ONSTACK | SA_RESETHAND | SA_NODEFER);

std::atomic_flag g_isTold = ATOMIC_FLAG_INIT;
/// What is being put together, until somebody sends it.
std::atomic<LastWord*> g_word{nullptr};

void addLibraries(LastWord& word) noexcept {
  void* frames[kMostFrames];
  const int count = backtrace(frames, kMostFrames);
  // The first two are this function and the handler.
  for (int i = 2; i < count; ++i) {
    Dl_info info = {};
    if (dladdr(frames[i], &info) != 0) word.addLibrary(info.dli_fname);
  }
}

void handle(int number, void (*handler)(int)) noexcept {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = kFlags;
  sigaction(number, &action, nullptr);
}

void sendWord() noexcept {
  if (LastWord* const word = g_word.exchange(nullptr)) word->send();
}

/// The stack may be what is broken: whoever reads it for its libraries then falls himself.
void tellWithoutTheRest(int number) {
  sendWord();
  raise(number);
}

void tell(int number) {
  if (!g_isTold.test_and_set()) {
    signal(SIGALRM, SIG_DFL);
    alarm(kMostSeconds);
    LastWord word(number, currentProvider(), currentOperation(), sched_getcpu());
    g_word = &word;
    handle(SIGSEGV, tellWithoutTheRest);
    handle(SIGBUS, tellWithoutTheRest);
    addLibraries(word);
    sendWord();
  }
  // A handler is gone when it was entered (SA_RESETHAND), so that this ends the process by and by.
  raise(number);
}

/// The first call of `backtrace` loads a library, which a process that dies must not.
void prepareBacktrace() {
  void* frame[1];
  backtrace(frame, 1);
}

/// The stack of this thread may be what is broken.
void useAnotherStack() {
  void* const room = mmap(nullptr, kStackSize, PROT_READ | PROT_WRITE,
                          MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
  if (room == MAP_FAILED) return;
  stack_t stack = {};
  stack.ss_sp = room;
  stack.ss_size = kStackSize;
  sigaltstack(&stack, nullptr);
}

}  // namespace

void tellOfCrashes() noexcept {
  prepareBacktrace();
  useAnotherStack();
  for (const int number : kSignals) handle(number, tell);
}

}  // namespace engine::guard
