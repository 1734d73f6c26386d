#include "clock_run.h"

#include <stdio.h>
#include <string.h>

/* A reading every 10 ms, 100 times. A sleep never ends early, so the clock has to have moved on. */
enum { kReadings = 100, kSleepMs = 10, kLeastStep = 5000, kLargestStep = 60000000 };

static const CMPIBroker* broker;
static CMPI_MUTEX_TYPE mutex; /* guards what follows, and every Run in it */
static Run table[kMaxRuns];
static int count;

static void lock(void) { broker->xft->lockMutex(mutex); }
static void unlock(void) { broker->xft->unlockMutex(mutex); }

void initRuns(const CMPIBroker* theBroker) {
  broker = theBroker;
  if (mutex == NULL) mutex = broker->xft->newMutex(0);
}

/* A worker thread has no call whose end would free its objects: it releases each itself. */
static CMPIUint64 readClock(void) {
  CMPIUint64 now = 0;
  CMPIDateTime* const time = CMNewDateTime(broker, NULL);
  if (time == NULL) return 0;
  now = CMGetBinaryFormat(time, NULL);
  CMRelease(time);
  return now;
}

static int going(const Run* run) { return run->verdict == 0; }

/* Shows the progress; answers whether the run is to go on. 100 % is kept for the end. */
static int showProgress(Run* run, int done) {
  int goOn;
  lock();
  run->percent = (CMPIUint16)(99 * done / kReadings);
  goOn = !run->stopRequested;
  unlock();
  return goOn;
}

/* Records and end state appear together: who sees the job at its end finds the records. */
static void finish(Run* run, CMPIUint16 verdict, CMPIUint64 smallest, CMPIUint64 largest,
                   int readings, CMPIUint32 errors) {
  const CMPIUint64 now = readClock();
  lock();
  snprintf(run->summary, sizeof run->summary, "Read the clock %d times, %u errors", readings,
           errors);
  /* Whole microseconds: what %f writes depends on the locale. */
  snprintf(run->results, sizeof run->results, "|%llu|us|%d|%llu|us|%d|%u|0", smallest, kLeastStep,
           largest, kLargestStep, errors);
  run->errors = errors;
  run->verdict = verdict;
  run->ended = now;
  run->percent = 100;
  run->jobState = verdict == kVerdictAborted ? kJobTerminated : kJobCompleted;
  unlock();
}

static void testClock(Run* run) {
  CMPIUint64 smallest = ~(CMPIUint64)0, largest = 0, previous = readClock();
  CMPIUint32 errors = 0;
  int done = 0;
  CMPIUint16 verdict = kVerdictOk;
  while (done < kReadings && showProgress(run, done)) {
    CMPIUint64 now, step;
    broker->xft->threadSleep(kSleepMs);
    now = readClock();
    step = now > previous ? now - previous : 0;
    if (step < kLeastStep || step > kLargestStep) ++errors;
    if (step < smallest) smallest = step;
    if (step > largest) largest = step;
    previous = now;
    ++done;
  }
  if (done < kReadings) verdict = kVerdictAborted;
  if (errors > 0) verdict = kVerdictFailed;
  finish(run, verdict, done > 0 ? smallest : 0, largest, done, errors);
}

static CMPI_THREAD_RETURN CMPI_THREAD_CDECL work(void* parameter) {
  Run* const run = parameter;
  CBAttachThread(broker, run->context);
  testClock(run);
  CBDetachThread(broker, run->context);
  return (CMPI_THREAD_RETURN)0;
}

static void join(Run* run) {
  if (run->thread != NULL) broker->xft->joinThread(run->thread, NULL);
  run->thread = NULL;
}

static void joinAll(void) {
  int i;
  for (i = 0; i < count; ++i) join(&table[i]);
}

/* Room for one more: the oldest run goes, with its job and its records. All have ended. */
static Run* newRun(void) {
  static CMPIUint32 number;
  Run* run;
  if (count == kMaxRuns) {
    joinAll();
    memmove(&table[0], &table[1], sizeof table[0] * (kMaxRuns - 1));
    --count;
  }
  run = &table[count++];
  memset(run, 0, sizeof *run);
  run->started = readClock();
  snprintf(run->id, sizeof run->id, "ACME:clock-%016llx-%08x", run->started, number++);
  run->jobState = kJobRunning;
  return run;
}

CMPIUint32 startRun(const CMPIContext* context, char* id, size_t size) {
  const CMPIUint32 kFailed = 4, kBusy = 6;
  CMPIUint32 answer = 0;
  Run* run;
  lock();
  if (count > 0 && going(&table[count - 1])) {
    unlock();
    /* Whoever asked may not look at the number. */
    CMLogMessage(broker, CMPI_SEV_WARNING, "ACME", "the clock is under test already", NULL);
    return kBusy;
  }
  run = newRun();
  run->context = CBPrepareAttachThread(broker, context);
  run->thread = broker->xft->newThread(work, run, 0);
  if (run->thread == NULL) {
    --count;
    answer = kFailed;
  }
  snprintf(id, size, "%s", run->id);
  unlock();
  return answer;
}

int stopRun(const char* id) {
  int answer = -1, i;
  lock();
  for (i = 0; i < count; ++i) {
    if (strcmp(table[i].id, id) != 0 || !going(&table[i])) continue;
    table[i].stopRequested = 1;
    table[i].jobState = kJobShuttingDown;
    answer = 0;
  }
  unlock();
  return answer;
}

int copyRuns(Run* runs) {
  int copied;
  lock();
  memcpy(runs, table, sizeof table);
  copied = count;
  unlock();
  return copied;
}

void endRuns(void) {
  int i;
  if (mutex == NULL) return;
  lock();
  for (i = 0; i < count; ++i) table[i].stopRequested = 1;
  unlock();
  joinAll(); /* without the lock, which the threads need to end */
  count = 0;
  broker->xft->destroyMutex(mutex);
  mutex = NULL;
}
