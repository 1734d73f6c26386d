/* The runs of the clock test: each is a job while it goes on, and leaves records. */
#ifndef CLOCK_RUN_H
#define CLOCK_RUN_H

#include "cmpi/cmpi.h"

/* JobState and CompletionState, as the value maps of the CIM schema number them. */
enum { kJobNew = 2, kJobRunning = 4, kJobShuttingDown = 6, kJobCompleted = 7, kJobTerminated = 8 };
enum { kVerdictOk = 2, kVerdictIncomplete = 4, kVerdictFailed = 5, kVerdictAborted = 6 };

enum { kMaxRuns = 16 };

/* The results of a run: each with its unit and its limit. */
static const char kResultFormat[] =
    "|uint64 SmallestStep|string SmallestStepUnits|uint64 SmallestStepMinimum"
    "|uint64 LargestStep|string LargestStepUnits|uint64 LargestStepMaximum"
    "|uint32 Errors|uint32 ErrorsMaximum";

typedef struct Run {
  char id[48]; /* the job's InstanceID; of fixed width, so that none is part of another */
  CMPIUint16 jobState;
  CMPIUint16 percent;
  CMPIUint16 verdict; /* 0 until the run has ended */
  CMPIUint32 errors;
  CMPIUint64 started; /* microseconds since 1970 */
  CMPIUint64 ended;   /* 0 until the run has ended */
  char summary[160];
  char results[160]; /* as kResultFormat declares them */
  int stopRequested;
  CMPI_THREAD_TYPE thread;
  CMPIContext* context; /* with it the thread attaches to the broker */
} Run;

/* Made once, before anything else here is called. */
void initRuns(const CMPIBroker* broker);

/* Starts a run on a thread of its own and copies its job's id to `id`. Answers 0, or a return code
   of RunDiagnostic: 4 (failed), 6 (busy: the clock is under test). */
CMPIUint32 startRun(const CMPIContext* context, char* id, size_t size);

/* Asks a run to end. Answers 0 where it is going on; it ends a little later. */
int stopRun(const char* id);

/* Copies the runs that are known, the oldest first, to `runs` (kMaxRuns); answers how many. */
int copyRuns(Run* runs);

/* Ends every run, waits for its thread, and forgets all. */
void endRuns(void);

#endif
