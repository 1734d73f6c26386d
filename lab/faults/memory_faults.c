/* memory_faults DESCRIPTOR BYTES: makes memory faulty that others use.

   DESCRIPTOR is the memory of a running machine; an offset in it is a physical address there. Each
   line of standard input is a fault, numbers in decimal:

     stuck ADDRESS BIT VALUE
       the bit is always VALUE

     coupled ADDRESS BIT VALUE ADDRESS2 BIT2 STATE
       it is VALUE as long as the other bit is STATE

     decaying ADDRESS BIT VALUE MICROSECONDS
       it turns to VALUE when it was not for that long

     shorted ADDRESS ADDRESS2 WORDS
       words of 8 bytes that are the same cells

     flipped ADDRESS BIT
       it turns round once

   An empty line begins: "ready" is the answer, and from then on the faults are held. The next line,
   or the end of the input, ends them; the answer is a line for each: how often it changed what was
   in memory. */
#include <inttypes.h>
#include <pthread.h>
#include <stdatomic.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <time.h>

enum { kMostFaults = 64, kMostWords = 512, kWordBytes = 8 };
enum {
  kLooks = 16,
  kHaste = -15,
  kRestAfter = 500000000 /* nanoseconds: longer than a sweep takes */
};

struct Bit {
  _Atomic uint8_t* byte;
  uint8_t mask;
};

struct Fault {
  void (*hold)(struct Fault*);
  struct Bit bit, aggressor;
  int value, state;
  int64_t nanoseconds, since;
  int hurries;
  _Atomic uint64_t *left, *right;
  size_t words;
  uint64_t shadow[kMostWords];
  uint64_t acted;
};

static struct Fault g_faults[kMostFaults];
static size_t g_count;
static char* g_memory;
static uint64_t g_bytes;
static atomic_int g_over;

static int64_t now(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return (int64_t)time.tv_sec * 1000000000 + time.tv_nsec;
}

static int read_bit(struct Bit bit) {
  return (atomic_load_explicit(bit.byte, memory_order_relaxed) & bit.mask) != 0;
}

/* One operation for the bit alone: the machine may write its neighbours at the same time. */
static void force(struct Fault* fault) {
  if (read_bit(fault->bit) == fault->value) return;
  if (fault->value)
    atomic_fetch_or(fault->bit.byte, fault->bit.mask);
  else
    atomic_fetch_and(fault->bit.byte, (uint8_t)~fault->bit.mask);
  ++fault->acted;
}

static void hold_coupled(struct Fault* fault) {
  if (read_bit(fault->aggressor) == fault->state) force(fault);
}

static void hold_decaying(struct Fault* fault) {
  if (read_bit(fault->bit) == fault->value) {
    fault->since = 0;
  } else if (!fault->since) {
    fault->since = now();
  } else if (now() - fault->since > fault->nanoseconds) {
    force(fault);
    fault->since = 0;
  }
}

/* Whatever is written to either place is in both of them. */
static void hold_shorted(struct Fault* fault) {
  for (size_t i = 0; i < fault->words; ++i) {
    const uint64_t left = atomic_load_explicit(fault->left + i, memory_order_relaxed);
    const uint64_t right = atomic_load_explicit(fault->right + i, memory_order_relaxed);
    if (left == right) {
      fault->shadow[i] = left;
    } else if (left != fault->shadow[i]) {
      atomic_store(fault->right + i, left);
      fault->shadow[i] = left;
      ++fault->acted;
    } else {
      atomic_store(fault->left + i, right);
      fault->shadow[i] = right;
      ++fault->acted;
    }
  }
}

static void flip_once(struct Fault* fault) {
  if (fault->acted) return;
  atomic_fetch_xor(fault->bit.byte, fault->bit.mask);
  ++fault->acted;
}

/* All that a fault hangs on, as one number: when it changes, the machine has written there. */
static uint64_t state_of(const struct Fault* fault) {
  uint64_t state = fault->acted << 16;
  if (fault->bit.byte) state += atomic_load_explicit(fault->bit.byte, memory_order_relaxed);
  if (fault->aggressor.byte)
    state += (uint64_t)atomic_load_explicit(fault->aggressor.byte, memory_order_relaxed) << 8;
  return state;
}

static uint64_t hold_each(void) {
  uint64_t state = 0;
  for (size_t i = 0; i < g_count; ++i) {
    g_faults[i].hold(&g_faults[i]);
    state = state * 31 + state_of(&g_faults[i]);
  }
  return state;
}

/* Looks without a pause as long as the machine uses what other places hang on, else some thousand
   times a second: a machine that rests costs nothing. */
static void* hold_all(void* unused) {
  const struct timespec pause = {0, 200000};
  uint64_t before = hold_each();
  int64_t used = now();
  int hurries = 0;
  for (size_t i = 0; i < g_count; ++i) hurries |= g_faults[i].hurries;
  while (!atomic_load_explicit(&g_over, memory_order_relaxed)) {
    uint64_t state = before;
    for (int i = 0; i < kLooks && state == before; ++i) state = hold_each();
    if (state != before) used = now();
    if (!hurries || now() - used > kRestAfter) nanosleep(&pause, NULL);
    before = state;
  }
  return unused;
}

static void refuse(const char* line) {
  fprintf(stderr, "memory_faults: this is no fault, or not in the memory: %s", line);
  exit(2);
}

static char* place(const char* line, uint64_t address, uint64_t bytes) {
  if (address > g_bytes || bytes > g_bytes - address) refuse(line);
  return g_memory + address;
}

static struct Bit bit_at(const char* line, uint64_t address, unsigned number) {
  if (number > 7) refuse(line);
  const struct Bit bit = {(_Atomic uint8_t*)place(line, address, 1), (uint8_t)(1U << number)};
  return bit;
}

static void begin_shorted(const char* line, struct Fault* fault, const uint64_t* words) {
  if (words[2] > kMostWords || words[0] % kWordBytes || words[1] % kWordBytes) refuse(line);
  fault->words = words[2];
  fault->left = (_Atomic uint64_t*)(void*)place(line, words[0], words[2] * kWordBytes);
  fault->right = (_Atomic uint64_t*)(void*)place(line, words[1], words[2] * kWordBytes);
  for (size_t i = 0; i < fault->words; ++i) fault->shadow[i] = atomic_load(fault->left + i);
  fault->hold = hold_shorted;
  fault->hurries = 1;
}

static void add(const char* line) {
  char kind[16];
  uint64_t word[6] = {0};
  if (g_count == kMostFaults) refuse(line);
  struct Fault* fault = &g_faults[g_count++];
  const int got =
      sscanf(line, "%15s %" SCNu64 " %" SCNu64 " %" SCNu64 " %" SCNu64 " %" SCNu64 " %" SCNu64,
             kind, &word[0], &word[1], &word[2], &word[3], &word[4], &word[5]) -
      1;
  if (got == 3 && strcmp(kind, "shorted") == 0) {
    begin_shorted(line, fault, word);
    return;
  }
  if (got < 2) refuse(line);
  fault->bit = bit_at(line, word[0], (unsigned)word[1]);
  fault->value = word[2] != 0;
  if (got == 3 && strcmp(kind, "stuck") == 0) {
    fault->hold = force;
  } else if (got == 6 && strcmp(kind, "coupled") == 0) {
    fault->aggressor = bit_at(line, word[3], (unsigned)word[4]);
    fault->state = word[5] != 0;
    fault->hold = hold_coupled;
    fault->hurries = 1;
  } else if (got == 4 && strcmp(kind, "decaying") == 0) {
    fault->nanoseconds = (int64_t)word[3] * 1000;
    fault->hold = hold_decaying;
  } else if (got == 2 && strcmp(kind, "flipped") == 0) {
    fault->hold = flip_once;
  } else {
    refuse(line);
  }
}

int main(int count, char** words) {
  char line[256];
  if (count != 3) {
    fputs("usage: memory_faults DESCRIPTOR BYTES\n", stderr);
    return 2;
  }
  g_bytes = strtoull(words[2], NULL, 10);
  g_memory = mmap(NULL, g_bytes, PROT_READ | PROT_WRITE, MAP_SHARED, atoi(words[1]), 0);
  if (g_memory == MAP_FAILED) {
    perror("memory_faults: the memory cannot be mapped");
    return 2;
  }
  while (fgets(line, sizeof line, stdin) && line[0] != '\n') add(line);
  prctl(PR_SET_TIMERSLACK, 1000);
  /* Cells do not wait for a processor; where that is not allowed, faults are late at times. */
  (void)setpriority(PRIO_PROCESS, 0, kHaste);
  pthread_t holder;
  if (pthread_create(&holder, NULL, hold_all, NULL)) return 2;
  puts("ready");
  fflush(stdout);
  if (!fgets(line, sizeof line, stdin)) line[0] = 0;
  atomic_store(&g_over, 1);
  pthread_join(holder, NULL);
  for (size_t i = 0; i < g_count; ++i) printf("%" PRIu64 "\n", g_faults[i].acted);
  return 0;
}
