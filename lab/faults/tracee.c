#include "tracee.h"

#include <elf.h>
#include <errno.h>
#include <fcntl.h>
#include <inttypes.h>
#include <sched.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

static const char kSystemCallCode[2] = {0x0F, 0x05};

/* Until the thread stops; -1 where it has ended. */
static int stopped(pid_t thread) {
  int status = 0;
  while (waitpid(thread, &status, __WALL) < 0)
    if (errno != EINTR) return -1;
  return WIFSTOPPED(status) ? status : -1;
}

int tracee_stop(pid_t thread) {
  struct user_regs_struct general;
  if (ptrace(PTRACE_SEIZE, thread, NULL, (void*)(PTRACE_O_TRACEFORK | PTRACE_O_TRACECLONE)))
    return -1;
  if (ptrace(PTRACE_INTERRUPT, thread, NULL, NULL) || stopped(thread) < 0) return -1;
  if (ptrace(PTRACE_GETREGS, thread, NULL, &general) || (long long)general.orig_rax >= 0) {
    tracee_go_on(thread);
    return -1;
  }
  return 0;
}

void tracee_go_on(pid_t thread) { ptrace(PTRACE_DETACH, thread, NULL, NULL); }

int tracee_read(pid_t thread, struct Registers* registers) {
  struct iovec part = {registers->state, sizeof registers->state};
  if (ptrace(PTRACE_GETREGS, thread, NULL, &registers->general)) return -1;
  if (ptrace(PTRACE_GETREGSET, thread, (void*)NT_X86_XSTATE, &part)) return -1;
  registers->stateBytes = part.iov_len;
  return 0;
}

int tracee_write(pid_t thread, const struct Registers* registers) {
  struct iovec part = {(void*)registers->state, registers->stateBytes};
  if (ptrace(PTRACE_SETREGS, thread, NULL, &registers->general)) return -1;
  return ptrace(PTRACE_SETREGSET, thread, (void*)NT_X86_XSTATE, &part) ? -1 : 0;
}

static ssize_t read_memory(pid_t process, uint64_t address, void* into, size_t bytes) {
  struct iovec here = {into, bytes}, there = {(void*)address, bytes};
  return process_vm_readv(process, &here, 1, &there, 1, 0);
}

/* Where in the process a system call's instruction stands: the kernel's own page has one. */
static uint64_t system_call_code(pid_t thread) {
  char path[64], line[512], code[8192];
  uint64_t from = 0, to = 0, found = 0;
  snprintf(path, sizeof path, "/proc/%d/maps", (int)thread);
  FILE* maps = fopen(path, "r");
  while (maps && fgets(line, sizeof line, maps))
    if (strstr(line, "[vdso]")) sscanf(line, "%" SCNx64 "-%" SCNx64, &from, &to);
  if (maps) fclose(maps);
  const ssize_t got =
      from ? read_memory(thread, from, code, to - from < sizeof code ? to - from : sizeof code) : 0;
  for (ssize_t i = 0; i + 1 < got && !found; ++i)
    if (memcmp(code + i, kSystemCallCode, 2) == 0) found = from + (uint64_t)i;
  return found;
}

/* Has the thread make the copy, and gives its number once both have stopped. */
static pid_t copy_made(pid_t thread) {
  unsigned long copy = 0;
  for (int stops = 0; stops < 8; ++stops) {
    if (ptrace(PTRACE_SINGLESTEP, thread, NULL, NULL)) return -1;
    const int status = stopped(thread);
    if (status < 0) return -1;
    if (status >> 16 == PTRACE_EVENT_CLONE || status >> 16 == PTRACE_EVENT_FORK)
      ptrace(PTRACE_GETEVENTMSG, thread, NULL, &copy);
    else if (copy)
      break;
  }
  return copy && stopped((pid_t)copy) >= 0 ? (pid_t)copy : -1;
}

/* Each step is a change from one process to the other and back: that must not wait its turn behind
   those that compute all the time. Who may not have that goes on without it. */
static void hurry(pid_t process) {
  const struct sched_param first = {1};
  cpu_set_t all;
  memset(&all, 0xFF, sizeof all);
  sched_setaffinity(process, sizeof all, &all);
  sched_setscheduler(process, SCHED_RR, &first);
}

pid_t tracee_copy(pid_t thread, const struct Registers* registers) {
  struct user_regs_struct call = registers->general;
  call.rip = system_call_code(thread);
  call.rax = SYS_clone; /* without a signal at its end, which nobody there expects */
  call.orig_rax = (unsigned long long)-1;
  call.rdi = call.rsi = call.rdx = call.r10 = call.r8 = 0;
  if (!call.rip || ptrace(PTRACE_SETREGS, thread, NULL, &call)) return -1;
  const pid_t copy = copy_made(thread);
  if (tracee_write(thread, registers)) return -1;
  if (copy < 0) return -1;
  hurry(copy);
  if (ptrace(PTRACE_SETOPTIONS, copy, NULL, (void*)(PTRACE_O_EXITKILL | PTRACE_O_TRACECLONE)) ||
      tracee_write(copy, registers)) {
    tracee_end(copy);
    return -1;
  }
  return copy;
}

enum Stop tracee_step(pid_t copy, unsigned long steps) {
  hurry(getpid());
  struct user_regs_struct general;
  char code[2];
  for (unsigned long i = 0; i < steps; ++i) {
    if (ptrace(PTRACE_GETREGS, copy, NULL, &general)) return kGone;
    if (read_memory(copy, general.rip, code, 2) == 2 && memcmp(code, kSystemCallCode, 2) == 0)
      return kSystemCall;
    if (ptrace(PTRACE_SINGLESTEP, copy, NULL, NULL)) return kGone;
    const int status = stopped(copy);
    if (status < 0) return kGone;
    if (WSTOPSIG(status) != SIGTRAP) return kSignal;
  }
  return kSteps;
}

void tracee_end(pid_t copy) {
  int status = 0;
  kill(copy, SIGKILL);
  while (waitpid(copy, &status, __WALL) == copy && !WIFEXITED(status) && !WIFSIGNALED(status))
    continue;
}
