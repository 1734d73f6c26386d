#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <thread>
#include <utility>

#include "host/Interrupts.h"

namespace host {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr int kCount = 3;

struct sigaction g_former[kCount];
int g_pipe[2] = {-1, -1};
std::thread g_thread;

/// A byte for each signal: the handler may do no more.
void note(int) {
  const int former = errno;
  const char byte = 's';
  if (write(g_pipe[1], &byte, 1) < 0) {
    // The pipe is full of signals that were not heard yet.
  }
  errno = former;
}

void listen(const std::function<void()>& onInterrupt) {
  char byte = 0;
  for (;;) {
    const ssize_t count = read(g_pipe[0], &byte, 1);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0 || byte == 'e') return;
    onInterrupt();
  }
}

}  // namespace

Interrupts::Interrupts(std::function<void()> onInterrupt) {
  if (pipe2(g_pipe, O_CLOEXEC) != 0) return;
  fcntl(g_pipe[1], F_SETFL, O_NONBLOCK);
  g_thread = std::thread([call = std::move(onInterrupt)] { listen(call); });
  struct sigaction action = {};
  action.sa_handler = note;
  action.sa_flags = SA_RESTART;
  for (int i = 0; i < kCount; ++i) {
    sigaction(kSignals[i], nullptr, &g_former[i]);
    if (g_former[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &action, nullptr);
  }
}

Interrupts::~Interrupts() {
  if (!g_thread.joinable()) return;
  for (int i = 0; i < kCount; ++i) sigaction(kSignals[i], &g_former[i], nullptr);
  const char byte = 'e';
  while (write(g_pipe[1], &byte, 1) < 0) std::this_thread::yield();
  g_thread.join();
  close(g_pipe[0]);
  close(g_pipe[1]);
}

void outliveReaders() {
  struct sigaction action = {};
  action.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &action, nullptr);
}

}  // namespace host
