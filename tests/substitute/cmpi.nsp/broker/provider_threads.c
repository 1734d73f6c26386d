/* A provider that works in threads of its own. */
#include <string.h>

#define CMPI_VERSION 210
#include "cmpi/cmpi.h"

#define WORKERS 8
#define ROUNDS 500

static const CMPIBroker* broker;

struct Job {
  CMPIContext* context;
  CMPIObjectPath* path; /* a clone */
  CMPI_MUTEX_TYPE mutex;
  CMPICount done;
  CMPICount failed;
};

/* What a background job does with the broker; true when all of it went well. */
static int workOnce(const struct Job* job) {
  CMPIStatus st;
  CMPIObjectPath* own = CMClone(job->path, &st);
  CMPIInstance* fan = CMNewInstance(broker, job->path, &st);
  CMPIInstance* found;
  int good = fan != NULL && own != NULL;
  CMSetProperty(fan, "Tag", "x", CMPI_chars);
  good = good && strcmp(CMGetCharPtr(CMGetKey(job->path, "Name", &st).value.string), "left") == 0;
  found = CBGetInstance(broker, job->context, job->path, NULL, &st);
  good = good && found != NULL && CMGetProperty(found, "Speed", &st).value.uint16 == 900;
  CMRelease(own);
  return good;
}

static CMPI_THREAD_RETURN CMPI_THREAD_CDECL work(void* parm) {
  struct Job* job = (struct Job*)parm;
  CMPICount good = 0;
  int round;
  CMPIStatus st = CBAttachThread(broker, job->context);
  for (round = 0; st.rc == CMPI_RC_OK && round < ROUNDS; ++round) {
    if (workOnce(job)) good++;
  }
  broker->xft->lockMutex(job->mutex);
  job->done += good;
  if (good != ROUNDS) job->failed++;
  broker->xft->unlockMutex(job->mutex);
  CBDetachThread(broker, job->context);
  return 0;
}

static CMPIStatus runWorkers(const CMPIContext* ctx, const CMPIResult* result,
                             const CMPIObjectPath* path) {
  struct Job jobs[WORKERS];
  CMPI_THREAD_TYPE threads[WORKERS];
  CMPI_MUTEX_TYPE mutex = broker->xft->newMutex(0);
  CMPIObjectPath* shared = CMClone(path, NULL);
  CMPIUint32 done = 0;
  int i;
  for (i = 0; i < WORKERS; ++i) {
    jobs[i].context = CBPrepareAttachThread(broker, ctx);
    jobs[i].path = shared;
    jobs[i].mutex = mutex;
    jobs[i].done = 0;
    jobs[i].failed = 0;
    threads[i] = broker->xft->newThread(work, &jobs[i], 0);
  }
  for (i = 0; i < WORKERS; ++i) {
    broker->xft->joinThread(threads[i], NULL);
    done += jobs[i].done;
  }
  CMRelease(shared);
  broker->xft->destroyMutex(mutex);
  return CMReturnData(result, &done, CMPI_uint32);
}

/* A job that goes on after the call that started it. */
static struct Job background;
static CMPI_THREAD_TYPE backgroundThread;

static void startBackground(const CMPIContext* ctx, const CMPIObjectPath* path) {
  background.context = CBPrepareAttachThread(broker, ctx);
  background.path = CMClone(path, NULL);
  background.mutex = broker->xft->newMutex(0);
  background.done = 0;
  background.failed = 0;
  backgroundThread = broker->xft->newThread(work, &background, 0);
}

static CMPIStatus joinBackground(const CMPIResult* result) {
  CMPIUint32 done;
  broker->xft->joinThread(backgroundThread, NULL);
  CMRelease(background.path);
  broker->xft->destroyMutex(background.mutex);
  done = background.done;
  return CMReturnData(result, &done, CMPI_uint32);
}

/* Results may be delivered by the calling thread alone. */
static CMPIrc foreignAnswer, foreignEnd, foreignError;

static CMPI_THREAD_RETURN CMPI_THREAD_CDECL deliver(void* parm) {
  const CMPIResult* result = (const CMPIResult*)parm;
  const CMPIBoolean yes = 1;
  CMPIError* error = CMNewCMPIError(broker, "ACME", "A1", "from elsewhere", ErrorSevHigh,
                                    ErrorProbCauseUnknown, CMPI_RC_ERR_ACCESS_DENIED, NULL);
  foreignAnswer = CMReturnData(result, &yes, CMPI_boolean).rc;
  foreignError = CMReturnError(result, error).rc;
  foreignEnd = CMReturnDone(result).rc;
  return 0;
}

static CMPIStatus ThreadedInvokeMethod(CMPIMethodMI* mi, const CMPIContext* ctx,
                                       const CMPIResult* result, const CMPIObjectPath* path,
                                       const char* method, const CMPIArgs* in, CMPIArgs* out) {
  (void)mi;
  (void)in;
  (void)out;
  if (strcmp(method, "Workers") == 0) return runWorkers(ctx, result, path);
  if (strcmp(method, "Start") == 0) {
    startBackground(ctx, path);
    CMReturn(CMPI_RC_OK);
  }
  if (strcmp(method, "Join") == 0) return joinBackground(result);
  if (strcmp(method, "DeliverElsewhere") == 0) {
    CMPIUint32 code;
    CMPI_THREAD_TYPE thread = broker->xft->newThread(deliver, (void*)(size_t)result, 0);
    broker->xft->joinThread(thread, NULL);
    code = (CMPIUint32)(foreignAnswer + 10 * foreignError + 100 * foreignEnd);
    return CMReturnData(result, &code, CMPI_uint32);
  }
  CMReturn(CMPI_RC_ERR_METHOD_NOT_FOUND);
}

static CMPIStatus ThreadedMethodCleanup(CMPIMethodMI* mi, const CMPIContext* ctx,
                                        CMPIBoolean terminating) {
  (void)mi;
  (void)ctx;
  (void)terminating;
  CMReturn(CMPI_RC_OK);
}

CMMethodMIStub(Threaded, Threaded, broker, CMNoHook)
