/* pages free: the ranges of page frames that nobody uses, one a line: FIRST COUNT.
   pages ram: the ranges that are memory at all.
   pages held NAME: the ranges of the frames that processes of that name hold.
   pages watch NAME FRAME...: looks ten times a second, and writes each frame once, as soon as a
   process of that name holds it; goes on until it has written all of them, or is killed.

   Runs in a lab machine beside the product and sees from the kernel's side where its memory lies,
   so that nobody has to believe what the product says of it. */
#include <ctype.h>
#include <dirent.h>
#include <fcntl.h>
#include <inttypes.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

enum { kPageBytes = 4096, kBatch = 512, kBuddy = 10, kNoPage = 20 };
static const uint64_t kPresent = UINT64_C(1) << 63, kFrame = (UINT64_C(1) << 55) - 1;

static uint64_t g_first, g_count;

static void flush(void) {
  if (g_count) printf("%" PRIu64 " %" PRIu64 "\n", g_first, g_count);
  g_count = 0;
}

static void add(uint64_t frame) {
  if (g_count && frame == g_first + g_count) {
    ++g_count;
    return;
  }
  flush();
  g_first = frame;
  g_count = 1;
}

/* The frames whose flags have, or do not have, the bit. */
static int list_by_flag(unsigned bit, int set) {
  uint64_t flags[kBatch], frame = 0;
  const int file = open("/proc/kpageflags", O_RDONLY);
  if (file < 0) return 1;
  for (;;) {
    const ssize_t got = pread(file, flags, sizeof flags, (off_t)(frame * sizeof *flags));
    if (got <= 0) break;
    for (size_t i = 0; i < (size_t)got / sizeof *flags; ++i, ++frame)
      if ((int)(flags[i] >> bit & 1) == set) add(frame);
  }
  close(file);
  flush();
  return 0;
}

typedef void (*Visit)(uint64_t frame, void* state);

static void visit_range(int pagemap, uint64_t from, uint64_t to, Visit visit, void* state) {
  uint64_t entries[kBatch];
  for (uint64_t page = from / kPageBytes; page < to / kPageBytes;) {
    uint64_t want = to / kPageBytes - page;
    if (want > kBatch) want = kBatch;
    const ssize_t got =
        pread(pagemap, entries, want * sizeof *entries, (off_t)(page * sizeof *entries));
    if (got <= 0) return;
    for (size_t i = 0; i < (size_t)got / sizeof *entries; ++i)
      if (entries[i] & kPresent) visit(entries[i] & kFrame, state);
    page += (uint64_t)got / sizeof *entries;
  }
}

static FILE* open_of(const char* process, const char* what) {
  char path[300];
  snprintf(path, sizeof path, "/proc/%s/%s", process, what);
  return fopen(path, "r");
}

static void visit_process(const char* process, Visit visit, void* state) {
  char line[512];
  FILE* maps = open_of(process, "maps");
  FILE* pagemap = open_of(process, "pagemap");
  while (maps && pagemap && fgets(line, sizeof line, maps)) {
    uint64_t from = 0, to = 0;
    if (sscanf(line, "%" SCNx64 "-%" SCNx64, &from, &to) == 2 && !strstr(line, "[vsyscall]"))
      visit_range(fileno(pagemap), from, to, visit, state);
  }
  if (maps) fclose(maps);
  if (pagemap) fclose(pagemap);
}

static int name_of(const char* process, char* name, size_t size) {
  FILE* file = open_of(process, "comm");
  if (!file) return 0;
  const int found = fgets(name, (int)size, file) != NULL;
  fclose(file);
  name[strcspn(name, "\n")] = 0;
  return found;
}

static void add_frame(uint64_t frame, void* state) {
  (void)state;
  add(frame);
}

static int each_process(const char* wanted, Visit visit, void* state) {
  DIR* all = opendir("/proc");
  if (!all) return 1;
  for (const struct dirent* one = readdir(all); one; one = readdir(all)) {
    char name[64];
    if (isdigit((unsigned char)one->d_name[0]) && name_of(one->d_name, name, sizeof name) &&
        strcmp(name, wanted) == 0)
      visit_process(one->d_name, visit, state);
  }
  closedir(all);
  return 0;
}

static int list_held(const char* name) {
  const int status = each_process(name, add_frame, NULL);
  flush();
  return status;
}

struct Watched {
  uint64_t frames[64];
  size_t count;
  uint64_t held, before;
  int alike;
};

static void look(uint64_t frame, void* state) {
  struct Watched* watched = state;
  ++watched->held;
  for (size_t i = 0; i < watched->count; ++i) {
    if (watched->frames[i] != frame) continue;
    printf("%" PRIu64 "\n", frame);
    fflush(stdout);
    watched->frames[i] = watched->frames[--watched->count];
  }
}

/* A test takes its memory at once, and holds it. */
static void tell_settled(struct Watched* watched) {
  const uint64_t much = UINT64_C(16) * 1024 * 1024 / kPageBytes;
  const int looks = 3;
  watched->alike =
      watched->held > much && watched->held == watched->before ? watched->alike + 1 : 0;
  if (watched->alike == looks) puts("settled");
  fflush(stdout);
  watched->before = watched->held;
  watched->held = 0;
}

static int watch(const char* name, char** frames, int count) {
  const struct timespec pause = {0, 100000000};
  struct Watched watched = {0};
  for (int i = 0; i < count && i < 64; ++i)
    watched.frames[watched.count++] = strtoull(frames[i], NULL, 10);
  while (watched.count) {
    if (each_process(name, look, &watched)) return 1;
    tell_settled(&watched);
    nanosleep(&pause, NULL);
  }
  return 0;
}

int main(int count, char** words) {
  if (count == 2 && strcmp(words[1], "free") == 0) return list_by_flag(kBuddy, 1);
  if (count == 2 && strcmp(words[1], "ram") == 0) return list_by_flag(kNoPage, 0);
  if (count == 3 && strcmp(words[1], "held") == 0) return list_held(words[2]);
  if (count > 3 && strcmp(words[1], "watch") == 0) return watch(words[2], words + 3, count - 3);
  fputs("usage: pages free | ram | held NAME | watch NAME FRAME...\n", stderr);
  return 2;
}
