#include <atomic>
#include <csignal>

#include "engine/process/ChildSignal.h"

namespace engine {
namespace {

using Handler = void (*)(int);
using InformedHandler = void (*)(int, siginfo_t*, void*);

std::mutex turns;
// What a signal handler reads.
std::atomic<Handler> libuvsHandler{nullptr};
std::atomic<Handler> formerHandler{nullptr};
std::atomic<InformedHandler> formerInformedHandler{nullptr};
// What only a turn reads.
struct sigaction former = {};
bool isShared = false;

void share(int number, siginfo_t* information, void* context) {
  if (const Handler libuvs = libuvsHandler) libuvs(number);
  if (const InformedHandler informed = formerInformedHandler) {
    informed(number, information, context);
  } else if (const Handler plain = formerHandler) {
    plain(number);
  }
}

bool isInformed(const struct sigaction& action) { return (action.sa_flags & SA_SIGINFO) != 0; }

bool isOurs(const struct sigaction& action) {
  return isInformed(action) && action.sa_sigaction == share;
}

bool isDefault(const struct sigaction& action) {
  return !isInformed(action) && action.sa_handler == SIG_DFL;
}

struct sigaction present() {
  struct sigaction action = {};
  sigaction(SIGCHLD, nullptr, &action);
  return action;
}

void remember(const struct sigaction& action) {
  former = action;
  const bool isFunction =
      isInformed(action) || (action.sa_handler != SIG_DFL && action.sa_handler != SIG_IGN);
  formerInformedHandler = isInformed(action) ? action.sa_sigaction : nullptr;
  formerHandler = isFunction && !isInformed(action) ? action.sa_handler : nullptr;
}

/// What came while libuv was alone with it is made up for: one signal may stand for many anyway.
void tellFormer() {
  if (formerHandler.load() != nullptr || formerInformedHandler.load() != nullptr) raise(SIGCHLD);
}

void putOursInPlace() {
  struct sigaction ours = {};
  ours.sa_sigaction = share;
  // As libuv has it: children that stop are nobody's affair, and it is not interrupted.
  ours.sa_flags = SA_SIGINFO | SA_RESTART | (former.sa_flags & SA_ONSTACK);
  sigfillset(&ours.sa_mask);
  sigaction(SIGCHLD, &ours, nullptr);
  isShared = true;
}

}  // namespace

ChildSignalTurn::ChildSignalTurn() : m_lock(turns) {
  const struct sigaction now = present();
  if (isOurs(now)) return;
  // Somebody else's: from before, or put in place of ours meanwhile.
  remember(now);
  if (isShared) putOursInPlace();
}

ChildSignalTurn::~ChildSignalTurn() {
  const struct sigaction now = present();
  if (isOurs(now)) return;
  if (isShared && isDefault(now)) {
    // libuv has given it up.
    isShared = false;
    libuvsHandler = nullptr;
    sigaction(SIGCHLD, &former, nullptr);
    tellFormer();
  } else if (!isInformed(now) && (isInformed(former) || now.sa_handler != former.sa_handler)) {
    libuvsHandler = now.sa_handler;
    putOursInPlace();
    tellFormer();
  }
}

}  // namespace engine
