/* A stopped thread of another process: its registers, a copy of it, one instruction after the
 * other. */
#ifndef LAB_FAULTS_TRACEE_H
#define LAB_FAULTS_TRACEE_H

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>
#include <sys/user.h>

enum { kMostState = 16384 };

struct Registers {
  struct user_regs_struct general;
  uint8_t state[kMostState]; /* what XSAVE writes */
  size_t stateBytes;
};

/* Stops the thread where it computes. 0, or -1 where it is gone or in the kernel: it goes on then.
 */
int tracee_stop(pid_t thread);
void tracee_go_on(pid_t thread);

int tracee_read(pid_t thread, struct Registers* registers);
int tracee_write(pid_t thread, const struct Registers* registers);

/* A process that is the stopped thread's copy, stopped as well, and ends with this one; or -1. The
   thread has its registers back. */
pid_t tracee_copy(pid_t thread, const struct Registers* registers);

enum Stop { kSteps, kSystemCall, kSignal, kGone };

/* Carries out so many instructions, but no system call: a copy must not speak with the world. */
enum Stop tracee_step(pid_t copy, unsigned long steps);
void tracee_end(pid_t copy);

#endif
