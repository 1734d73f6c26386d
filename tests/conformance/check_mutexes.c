#include <time.h>

#include "groups.h"

/* Mutexes and conditions. */
#define SLOT(name) CALL(c, CMPIBrokerExtFT, ft, name)

static void checkMutex(Checks* c) {
  const CMPIBrokerExtFT* ft = c->broker->xft;
  CMPI_MUTEX_TYPE mutex = SLOT(newMutex)(0);
  isTrue(c, "a mutex is made", mutex != NULL);
  SLOT(lockMutex)(mutex);
  with(c, "locked twice by one thread");
  SLOT(lockMutex)(mutex);
  SLOT(unlockMutex)(mutex);
  SLOT(unlockMutex)(mutex);
  with(c, "no mutex");
  SLOT(lockMutex)(NULL);
  SLOT(unlockMutex)(foreignHandle());
  SLOT(destroyMutex)(NULL);
#if CMPI_VERSION >= 210
  isTrue(c, "an error number", SLOT(lockMutex2)(NULL) != 0);
  isTrue(c, "an error number", SLOT(unlockMutex2)(foreignHandle()) != 0);
  isTrue(c, "an error number", SLOT(destroyMutex2)((void*)c->target) != 0);
  isTrue(c, "an error number", SLOT(destroyCondition2)(NULL) != 0);
  with(c, "");
  isNumber(c, "the error number", 0, (CMPIUint64)SLOT(lockMutex2)(mutex));
  isNumber(c, "the error number", 0, (CMPIUint64)SLOT(unlockMutex2)(mutex));
  isNumber(c, "the error number", 0, (CMPIUint64)SLOT(destroyMutex2)(mutex));
#else
  SLOT(destroyMutex)(mutex);
#endif
  with(c, "");
}

/* A condition between this thread and another. */
typedef struct Meeting {
  const CMPIBrokerExtFT* ft;
  CMPI_MUTEX_TYPE mutex;
  CMPI_COND_TYPE changed;
  int isReady;
} Meeting;

static CMPI_THREAD_RETURN CMPI_THREAD_CDECL becomeReady(void* parm) {
  Meeting* meeting = parm;
  meeting->ft->lockMutex(meeting->mutex);
  meeting->isReady = 1;
  meeting->ft->signalCondition(meeting->changed);
  meeting->ft->unlockMutex(meeting->mutex);
  return 0;
}

static void checkWaiting(Checks* c, CMPI_COND_TYPE condition, CMPI_MUTEX_TYPE mutex) {
  const CMPIBrokerExtFT* ft = c->broker->xft;
  Meeting meeting = {NULL, NULL, NULL, 0};
  CMPI_THREAD_TYPE thread;
  struct timespec past = {0, 0};
  meeting.ft = ft;
  meeting.mutex = mutex;
  meeting.changed = condition;
  past.tv_sec = time(NULL) - 1;
  SLOT(lockMutex)(mutex);
  thread = ft->newThread(becomeReady, &meeting, 0);
  while (!meeting.isReady) {
    isNumber(c, "the error number", 0, (CMPIUint64)SLOT(condWait)(condition, mutex));
  }
  with(c, "a deadline that is over");
  isTrue(c, "an error number", SLOT(timedCondWait)(condition, mutex, &past) != 0);
  SLOT(unlockMutex)(mutex);
  ft->joinThread(thread, NULL);
  with(c, "");
}

static void checkCondition(Checks* c) {
  const CMPIBrokerExtFT* ft = c->broker->xft;
  CMPI_MUTEX_TYPE mutex = SLOT(newMutex)(0);
  CMPI_COND_TYPE condition = SLOT(newCondition)(0);
  struct timespec soon = {0, 0};
  isTrue(c, "a condition is made", condition != NULL);
  isNumber(c, "the error number", 0, (CMPIUint64)SLOT(signalCondition)(condition));
  checkWaiting(c, condition, mutex);
  with(c, "no condition, no mutex, no deadline");
  isTrue(c, "an error number", SLOT(signalCondition)(NULL) != 0);
  isTrue(c, "an error number", SLOT(condWait)(NULL, mutex) != 0);
  isTrue(c, "an error number", SLOT(condWait)(condition, foreignHandle()) != 0);
  isTrue(c, "an error number", SLOT(timedCondWait)(foreignHandle(), mutex, &soon) != 0);
  isTrue(c, "an error number", SLOT(timedCondWait)(condition, mutex, NULL) != 0);
  SLOT(destroyCondition)(NULL);
  with(c, "");
  SLOT(destroyCondition)(condition);
  SLOT(destroyMutex)(mutex);
}

void checkMutexes(Checks* c) {
  checkMutex(c);
  checkCondition(c);
}
