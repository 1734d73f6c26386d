#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "engine/events/EventLine.h"
#include "engine/protocol/Messages.h"
#include "tests/engine/supervisor/Sickness.h"

namespace sickness {
namespace {

constexpr int kMostDescriptors = 1024;

void hideBehindSignals() {
  sigset_t all;
  sigfillset(&all);
  sigprocmask(SIG_BLOCK, &all, nullptr);
  sleepForever();
}

void ignoreTermination() {
  signal(SIGTERM, SIG_IGN);
  sleepForever();
}

/// So that the machine survives what comes.
void limitAddresses() {
  const rlimit limit = {RLIM_INFINITY, RLIM_INFINITY};
  rlimit own = limit;
  own.rlim_cur = 512U << 20;
  setrlimit(RLIMIT_AS, &own);
}

void eat() {
  limitAddresses();
  for (;;) std::memset(new char[1 << 20], 1, 1 << 20);
}

void closeOutput() {
  close(STDOUT_FILENO);
  close(STDERR_FILENO);
}

void closeAll() {
  for (int i = 0; i < kMostDescriptors; ++i) close(i);
}

void leaveChild() {
  if (fork() == 0) sleepForever();
}

void leaveChildInItsOwnSession() {
  if (fork() != 0) return;
  setsid();
  if (fork() != 0) _exit(0);
  sleepForever();
}

void leaveChildInItsOwnSessionAndStay() {
  leaveChildInItsOwnSession();
  sleepForever();
}

/// More of them than are ended in one go, each the child of the one before.
void leaveManyChildren() {
  for (int i = 0; i < 40; ++i) {
    if (fork() != 0) continue;
    for (int k = 0; k < 15 && fork() == 0; ++k) {
    }
    sleepForever();
  }
}

/// What it does is its own affair, and not the provider's.
void leaveFaultyChild() {
  if (fork() != 0) return sleepMilliseconds(200);
  std::abort();
}

void writeEverywhere(const std::string& text) {
  for (int i = 0; i < kMostDescriptors; ++i) {
    if (fcntl(i, F_GETFD) < 0) continue;
    if (write(i, text.data(), text.size()) < 0) continue;
  }
}

void writeGarbage() { writeEverywhere("\xFF\x01{{{\"done\"\n[[[[[\n\n\x80{\"entered\":3}\n"); }

/// Messages as the worker would send them: that the run begins once more, with another test.
void forgeStart() {
  engine::RunStarted run;
  run.host = "forged";
  engine::TestStarted test;
  test.name = "forged";
  writeEverywhere("\n" + lineOf(engine::Reply(engine::Happened{engine::Source::kEngine, run})) +
                  "\n" + lineOf(engine::Reply(engine::Happened{engine::Source::kEngine, test})) +
                  "\n");
}

/// That all is done, without an answer.
void forgeDone() { writeEverywhere("\n" + lineOf(engine::Reply(engine::Done())) + "\n"); }

/// That another one crashed, which nobody has ever heard of.
void forgeBlame() {
  engine::Crashed crash;
  crash.code = SIGSEGV;
  crash.provider = "Invented" + std::to_string(getpid());
  crash.operation = "enumerate";
  writeEverywhere("\n" + lineOf(engine::Reply(crash)) + "\n");
  _exit(1);
}

/// As a register whose bit was flipped: there is no stack where the next value is put.
void loseTheStack() {
  asm volatile(
      "mov $64, %%rsp\n\t"
      "mov $64, %%rbp\n\t"
      "push %%rax" ::
          : "memory");
}

void killKeeper() {
  kill(getppid(), SIGKILL);
  sleepForever();
}

void killKeeperBeforeAChild() {
  leaveChildInItsOwnSession();
  sleepMilliseconds(50);
  killKeeper();
}

const Kind kKinds[] = {
    {"blocked", hideBehindSignals},
    {"stubborn", ignoreTermination},
    {"eat", eat},
    {"mute", closeOutput},
    {"deaf", closeAll},
    {"child", leaveChild},
    {"daemon", leaveChildInItsOwnSession},
    {"keptdaemon", leaveChildInItsOwnSessionAndStay},
    {"children", leaveManyChildren},
    {"faultychild", leaveFaultyChild},
    {"garbage", writeGarbage},
    {"forgestart", forgeStart},
    {"forgedone", forgeDone},
    {"endless", limitAddresses},
    {"forgeblame", forgeBlame},
    {"lost", loseTheStack},
    {"kill", [] { raise(SIGKILL); }},
    {"stop", [] { raise(SIGSTOP); }},
    {"orphan", killKeeper},
    {"orphans", killKeeperBeforeAChild},
    {nullptr, nullptr},
};

}  // namespace

const Kind* const kOfThisSystem = kKinds;

}  // namespace sickness
