#include <csignal>
#include <ctime>

#include "engine/process/PipeSignal.h"

namespace engine {

struct NoPipeSignal::Former {
  sigset_t mask;
  bool wasPending;
};

namespace {

sigset_t pipeSignal() {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGPIPE);
  return set;
}

bool isPending() {
  sigset_t pending;
  sigpending(&pending);
  return sigismember(&pending, SIGPIPE) != 0;
}

}  // namespace

NoPipeSignal::NoPipeSignal() : m_former(std::make_unique<Former>()) {
  const sigset_t set = pipeSignal();
  m_former->wasPending = isPending();
  pthread_sigmask(SIG_BLOCK, &set, &m_former->mask);
}

/// The signal that came meanwhile is taken away before it may come through again.
NoPipeSignal::~NoPipeSignal() {
  const sigset_t set = pipeSignal();
  const timespec atOnce = {0, 0};
  if (!m_former->wasPending && isPending()) sigtimedwait(&set, nullptr, &atOnce);
  pthread_sigmask(SIG_SETMASK, &m_former->mask, nullptr);
}

}  // namespace engine
