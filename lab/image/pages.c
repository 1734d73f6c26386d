/* pages stop NAME BYTES: waits until a process of that name holds that much memory in one piece,
   stops it at once, and writes its number, then the ranges of that memory's page frames, one a
   line: FIRST COUNT.

   Runs in a lab machine beside the product and sees from the kernel's side where its memory lies,
   so that nobody has to believe what the product says of it. */
#include <ctype.h>
#include <dirent.h>
#include <inttypes.h>
#include <signal.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

enum { kPageBytes = 4096, kBatch = 512 };
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

/* How many pages of the range are in memory; each of them is given to `visit`, if there is one. */
static uint64_t visit_range(int pagemap, uint64_t from, uint64_t to, void (*visit)(uint64_t)) {
  uint64_t entries[kBatch], present = 0;
  for (uint64_t page = from / kPageBytes; page < to / kPageBytes;) {
    uint64_t want = to / kPageBytes - page;
    if (want > kBatch) want = kBatch;
    const ssize_t got =
        pread(pagemap, entries, want * sizeof *entries, (off_t)(page * sizeof *entries));
    if (got <= 0) break;
    for (size_t i = 0; i < (size_t)got / sizeof *entries; ++i) {
      if (!(entries[i] & kPresent)) continue;
      ++present;
      if (visit) visit(entries[i] & kFrame);
    }
    page += (uint64_t)got / sizeof *entries;
  }
  return present;
}

static FILE* open_of(const char* process, const char* what) {
  char path[300];
  snprintf(path, sizeof path, "/proc/%s/%s", process, what);
  return fopen(path, "r");
}

static int name_is(const char* process, const char* wanted) {
  char name[64] = "";
  FILE* file = open_of(process, "comm");
  if (!file) return 0;
  if (!fgets(name, sizeof name, file)) name[0] = 0;
  fclose(file);
  name[strcspn(name, "\n")] = 0;
  return strcmp(name, wanted) == 0;
}

/* Stops the process and tells of it, if one of its mappings without a file holds that much. */
static int stop_if_it_holds(const char* process, uint64_t bytes) {
  char line[512];
  int done = 0;
  FILE* maps = open_of(process, "maps");
  FILE* pagemap = open_of(process, "pagemap");
  while (!done && maps && pagemap && fgets(line, sizeof line, maps)) {
    uint64_t from = 0, to = 0, file = 1;
    if (sscanf(line, "%" SCNx64 "-%" SCNx64 " %*s %*s %*s %" SCNu64, &from, &to, &file) != 3)
      continue;
    if (file != 0 || to - from < bytes) continue;
    if (visit_range(fileno(pagemap), from, to, NULL) < bytes / kPageBytes) continue;
    kill(atoi(process), SIGSTOP);
    printf("%s\n", process);
    visit_range(fileno(pagemap), from, to, add);
    flush();
    done = 1;
  }
  if (maps) fclose(maps);
  if (pagemap) fclose(pagemap);
  return done;
}

static int look_at_all(const char* name, uint64_t bytes) {
  int done = 0;
  DIR* all = opendir("/proc");
  if (!all) return 0;
  for (const struct dirent* one = readdir(all); one && !done; one = readdir(all))
    done = isdigit((unsigned char)one->d_name[0]) && name_is(one->d_name, name) &&
           stop_if_it_holds(one->d_name, bytes);
  closedir(all);
  return done;
}

int main(int count, char** words) {
  const struct timespec pause = {0, 1000000};
  if (count != 4 || strcmp(words[1], "stop") != 0) {
    fputs("usage: pages stop NAME BYTES\n", stderr);
    return 2;
  }
  while (!look_at_all(words[2], strtoull(words[3], NULL, 10))) nanosleep(&pause, NULL);
  return 0;
}
