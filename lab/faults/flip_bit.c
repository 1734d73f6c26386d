/* flip_bit THREAD general|vector CHANCE STEPS: makes a thread compute wrong, once.

   Stops the thread, turns one bit of one of its registers round, and lets it go on: CHANCE, a
   number of 64 bits, decides which. Answers with a line: REGISTER BIT ADDRESS EFFECT, and one with
   the first words of the thread's stack. EFFECT tells what the flip could change: two copies of the
   thread, one with the flip and one without, carry out the next STEPS instructions, up to a system
   call, and are then compared:

     none     nothing differs any more: no result can depend on it
     unread   nothing but the bit itself does, in a register that was left alone all the time
     changed  something does: whether a result does, is open
     fatal    the copy with the flip ended by a signal
     unsure   two copies without the flip differ as well

   Status 3: the thread was not computing, or has gone; nothing was done. */
#include <fcntl.h>
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/uio.h>
#include <unistd.h>

#include "tracee.h"

enum {
  kPage = 4096,
  kSseAt = 160,
  kVectorBytes = 16,
  kVectors = 16,
  kInUseAt = 512,
  kAvxAt = 576,
  kRedZone = 128,
  kStackWords = 256
};

static const char* const kNames[] = {"r15", "r14", "r13", "r12", "rbp", "rbx", "r11", "r10",
                                     "r9",  "r8",  "rax", "rcx", "rdx", "rsi", "rdi", "rsp"};
static const size_t kPlaces[] = {
    offsetof(struct user_regs_struct, r15), offsetof(struct user_regs_struct, r14),
    offsetof(struct user_regs_struct, r13), offsetof(struct user_regs_struct, r12),
    offsetof(struct user_regs_struct, rbp), offsetof(struct user_regs_struct, rbx),
    offsetof(struct user_regs_struct, r11), offsetof(struct user_regs_struct, r10),
    offsetof(struct user_regs_struct, r9),  offsetof(struct user_regs_struct, r8),
    offsetof(struct user_regs_struct, rax), offsetof(struct user_regs_struct, rcx),
    offsetof(struct user_regs_struct, rdx), offsetof(struct user_regs_struct, rsi),
    offsetof(struct user_regs_struct, rdi), offsetof(struct user_regs_struct, rsp)};

struct Flip {
  char name[16];
  unsigned bit;
  uint8_t* byte;
};

static struct Registers g_before, g_one, g_other;

static struct Flip choose_general(struct Registers* registers, uint64_t chance) {
  struct Flip flip;
  const size_t number = chance % 16;
  flip.bit = (unsigned)(chance / 16 % 64);
  snprintf(flip.name, sizeof flip.name, "%s", kNames[number]);
  flip.byte = (uint8_t*)&registers->general + kPlaces[number] + flip.bit / 8;
  return flip;
}

/* The upper halves only where the processor says that they hold something. */
static struct Flip choose_vector(struct Registers* registers, uint64_t chance) {
  struct Flip flip;
  const int wide = registers->stateBytes > kAvxAt && registers->state[kInUseAt] & 4;
  const size_t number = chance % kVectors;
  flip.bit = (unsigned)(chance / kVectors % (wide ? 256 : 128));
  snprintf(flip.name, sizeof flip.name, "%s%zu", wide ? "ymm" : "xmm", number);
  const size_t at = flip.bit < 128 ? kSseAt + number * kVectorBytes + flip.bit / 8
                                   : kAvxAt + number * kVectorBytes + (flip.bit - 128) / 8;
  flip.byte = registers->state + at;
  registers->state[kInUseAt] |= 2; /* or the kernel would take the registers for zero */
  return flip;
}

static int pages_differ(pid_t one, pid_t other, uint64_t from, uint64_t to, uint64_t unused) {
  static char left[16 * kPage], right[16 * kPage];
  for (uint64_t at = from; at < to; at += sizeof left) {
    const size_t bytes = to - at < sizeof left ? to - at : sizeof left;
    struct iovec a = {left, bytes}, b = {right, bytes}, there = {(void*)at, bytes};
    const ssize_t got = process_vm_readv(one, &a, 1, &there, 1, 0);
    if (process_vm_readv(other, &b, 1, &there, 1, 0) != got) return 1;
    for (ssize_t i = 0; i < got; ++i)
      if (left[i] != right[i] && at + (uint64_t)i >= unused) return 1;
  }
  return 0;
}

/* Whether the memory of the copies differs, but for what lies below the stack that is in use. */
static int memory_differs(pid_t one, pid_t other, uint64_t stack) {
  char path[64], line[512], mode[8];
  int differs = 0;
  snprintf(path, sizeof path, "/proc/%d/maps", (int)one);
  FILE* maps = fopen(path, "r");
  while (maps && !differs && fgets(line, sizeof line, maps)) {
    uint64_t from = 0, to = 0;
    if (sscanf(line, "%" SCNx64 "-%" SCNx64 " %7s", &from, &to, mode) != 3 || mode[1] != 'w' ||
        mode[3] != 'p')
      continue;
    const int holdsStack = from <= stack && stack < to;
    differs = pages_differ(one, other, from, to, holdsStack ? stack - kRedZone : 0);
  }
  if (maps) fclose(maps);
  return differs;
}

static int states_differ(pid_t one, pid_t other) {
  return memcmp(&g_one.general, &g_other.general, sizeof g_one.general) != 0 ||
         memcmp(g_one.state + kSseAt, g_other.state + kSseAt, kVectors * kVectorBytes) != 0 ||
         memcmp(g_one.state + kAvxAt, g_other.state + kAvxAt, kVectors * kVectorBytes) != 0 ||
         memory_differs(one, other, g_one.general.rsp);
}

/* Whether the register still holds what it held before, in one copy with the flip; if so, takes
 * that back. */
static int untouched(const struct Flip* flip, uint8_t before) {
  const uint8_t* base = (const uint8_t*)&g_before;
  uint8_t* there = (uint8_t*)&g_other + (flip->byte - base);
  const uint8_t here = ((const uint8_t*)&g_one)[flip->byte - base];
  if (here != before || *there != *flip->byte) return 0;
  *there = here;
  return 1;
}

/* `before`: the byte without the flip. */
static const char* compared(const pid_t copies[3], const struct Flip* flip, uint8_t before) {
  if (tracee_read(copies[0], &g_one) || tracee_read(copies[1], &g_other)) return "unsure";
  if (!states_differ(copies[0], copies[1])) return "none";
  return untouched(flip, before) && !states_differ(copies[0], copies[1]) ? "unread" : "changed";
}

/* The first copy goes on without the flip, the second with it; the third, without it, is for
 * control. */
static const char* effect(const pid_t copies[3], const struct Flip* flip, uint8_t before,
                          unsigned long steps) {
  const enum Stop whole = tracee_step(copies[0], steps);
  const enum Stop flipped = tracee_step(copies[1], steps);
  if (whole == kSignal || whole == kGone || flipped == kGone) return "unsure";
  if (flipped == kSignal) return "fatal";
  const char* said = whole == flipped ? compared(copies, flip, before) : "changed";
  if (strcmp(said, "changed") != 0) return said;
  if (tracee_step(copies[2], steps) != whole || tracee_read(copies[0], &g_one) ||
      tracee_read(copies[2], &g_other))
    return "unsure";
  return states_differ(copies[0], copies[2]) ? "unsure" : said;
}

static uint64_t g_stack[kStackWords];

static size_t read_stack(pid_t thread, uint64_t from) {
  struct iovec here = {g_stack, sizeof g_stack}, there = {(void*)from, sizeof g_stack};
  const ssize_t got = process_vm_readv(thread, &here, 1, &there, 1, 0);
  return got < 0 ? 0 : (size_t)got / sizeof *g_stack;
}

/* Two are copies of the third: other threads of the process go on and would change what a second
   copy of this one finds. */
static void make_copies(pid_t thread, pid_t copies[3]) {
  copies[2] = tracee_copy(thread, &g_before);
  for (int i = 0; i < 2; ++i) copies[i] = copies[2] < 0 ? -1 : tracee_copy(copies[2], &g_before);
}

static int flip_in(pid_t thread, int general, uint64_t chance, unsigned long steps) {
  pid_t copies[3];
  if (tracee_stop(thread)) return 3;
  if (tracee_read(thread, &g_before)) return 3;
  const size_t words = read_stack(thread, g_before.general.rsp);
  make_copies(thread, copies);
  const struct Flip flip =
      general ? choose_general(&g_before, chance) : choose_vector(&g_before, chance);
  const uint8_t before = *flip.byte;
  *flip.byte ^= (uint8_t)(1U << flip.bit % 8);
  const uint64_t address = g_before.general.rip;
  int status = tracee_write(thread, &g_before);
  tracee_go_on(thread); /* what follows is looked at beside it */
  for (int i = 0; i < 3; ++i) status |= copies[i] < 0;
  if (!status) status = tracee_write(copies[1], &g_before);
  printf("%s %u %" PRIx64 " %s\n", flip.name, flip.bit, address,
         status ? "unsure" : effect(copies, &flip, before, steps));
  for (size_t i = 0; i < words; ++i) printf("%" PRIx64 " ", g_stack[i]);
  puts("");
  for (int i = 0; i < 3; ++i)
    if (copies[i] > 0) tracee_end(copies[i]);
  return 0;
}

int main(int count, char** words) {
  if (count != 5 || (strcmp(words[2], "general") != 0 && strcmp(words[2], "vector") != 0)) {
    fputs("usage: flip_bit THREAD general|vector CHANCE STEPS\n", stderr);
    return 2;
  }
  return flip_in(atoi(words[1]), words[2][0] == 'g', strtoull(words[3], NULL, 10),
                 strtoul(words[4], NULL, 10));
}
