#include <stdlib.h>
#include <string.h>

#include "groups.h"

/* Threads, and what is once for a process or for a thread. */
#define SLOT(name) CALL(c, CMPIBrokerExtFT, ft, name)

static CMPI_THREAD_RETURN CMPI_THREAD_CDECL returnParm(void* parm) {
  return *(CMPI_THREAD_RETURN*)parm;
}

static CMPI_THREAD_RETURN CMPI_THREAD_CDECL exitWithParm(void* parm) {
  conformanceBroker->xft->exitThread(*(CMPI_THREAD_RETURN*)parm);
  return 0;
}

static CMPI_THREAD_RETURN CMPI_THREAD_CDECL sleepOn(void* parm) {
  (void)parm;
  while (conformanceBroker->xft->threadSleep(1) == 0) {
  }
  return 0;
}

static void checkJoining(Checks* c) {
  const CMPIBrokerExtFT* ft = c->broker->xft;
  CMPI_THREAD_RETURN value = (CMPI_THREAD_RETURN)(size_t)1234;
  CMPI_THREAD_RETURN answer = 0;
  CMPI_THREAD_TYPE thread = SLOT(newThread)(returnParm, &value, 0);
  isTrue(c, "a thread is made", thread != NULL);
  isNumber(c, "the error number", 0, (CMPIUint64)SLOT(joinThread)(thread, &answer));
  isTrue(c, "its value comes back", answer == value);
  with(c, "a thread that is joined already");
  isTrue(c, "an error number", SLOT(joinThread)(thread, &answer) != 0);
  isTrue(c, "an error number", SLOT(cancelThread)(thread) != 0);
  with(c, "");
  answer = 0;
  noteCall(c, "CMPIBrokerExtFT", sizeof *ft, offsetof(CMPIBrokerExtFT, exitThread), "exitThread");
  thread = ft->newThread(exitWithParm, &value, 0);
  isNumber(c, "the error number", 0, (CMPIUint64)ft->joinThread(thread, &answer));
  isTrue(c, "its value comes back", answer == value);
  thread = SLOT(newThread)(sleepOn, NULL, 0);
  isNumber(c, "the error number", 0, (CMPIUint64)SLOT(cancelThread)(thread));
  isNumber(c, "the error number", 0, (CMPIUint64)SLOT(joinThread)(thread, NULL));
  with(c, "no thread");
  isNothing(c, SLOT(newThread)(NULL, NULL, 0));
  isTrue(c, "an error number", SLOT(joinThread)(NULL, &answer) != 0);
  isTrue(c, "an error number", SLOT(joinThread)(foreignHandle(), NULL) != 0);
  isTrue(c, "an error number", SLOT(cancelThread)((void*)c->target) != 0);
  with(c, "");
  /* A thread that the broker has not made goes on. */
  if (c->result != NULL) isTrue(c, "an error number", SLOT(exitThread)(value) != 0);
}

static CMPI_MUTEX_TYPE onceMutex;
static void makeOnceMutex(void) { onceMutex = conformanceBroker->xft->newMutex(0); }

static void checkOnce(Checks* c) {
  static int once;
  const CMPIBrokerExtFT* ft = c->broker->xft;
  CMPI_MUTEX_TYPE first;
  isNumber(c, "the error number", 0, (CMPIUint64)SLOT(threadOnce)(&once, makeOnceMutex));
  first = onceMutex;
  isNumber(c, "the error number", 0, (CMPIUint64)SLOT(threadOnce)(&once, makeOnceMutex));
  isTrue(c, "it ran once", first != NULL && first == onceMutex);
  isTrue(c, "an error number", SLOT(threadOnce)(NULL, makeOnceMutex) != 0);
}

static void checkKeys(Checks* c) {
  const CMPIBrokerExtFT* ft = c->broker->xft;
  /* The key fills four bytes, whatever its type in the provider's header. */
  CMPI_THREAD_KEY_TYPE keys[2] = {0, 0xABCDEF01U};
  isNumber(c, "the error number", 0, (CMPIUint64)SLOT(createThreadKey)(keys, NULL));
  isNumber(c, "what is behind the key", 0xABCDEF01U, keys[1]);
  isNothing(c, SLOT(getThreadSpecific)(keys[0]));
  isNumber(c, "the error number", 0, (CMPIUint64)SLOT(setThreadSpecific)(keys[0], c));
  isTrue(c, "the value comes back", SLOT(getThreadSpecific)(keys[0]) == c);
  isNumber(c, "the error number", 0, (CMPIUint64)SLOT(destroyThreadKey)(keys[0]));
  with(c, "no key");
  isTrue(c, "an error number", SLOT(createThreadKey)(NULL, NULL) != 0);
  isTrue(c, "an error number", SLOT(setThreadSpecific)(0xFFFFFFF0U, c) != 0);
  isTrue(c, "an error number", SLOT(destroyThreadKey)(0xFFFFFFF0U) != 0);
  isNothing(c, SLOT(getThreadSpecific)(0xFFFFFFF0U));
  with(c, "");
}

static void checkFileName(Checks* c) {
  const CMPIBrokerExtFT* ft = c->broker->xft;
  char* name = SLOT(resolveFileName)("acme");
#if defined(_WIN32)
  isChars(c, "the file name", "acme.dll", name);
#else
  isChars(c, "the file name", "libacme.so", name);
#endif
  free(name);
  isNothing(c, SLOT(resolveFileName)(NULL));
}

void checkThreads(Checks* c) {
  const CMPIBrokerExtFT* ft = c->broker->xft;
  checkJoining(c);
  checkOnce(c);
  checkKeys(c);
  checkFileName(c);
  isNumber(c, "the error number", 0, (CMPIUint64)SLOT(threadSleep)(0));
}
