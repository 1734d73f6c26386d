#include "groups.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static const struct {
  const char* name;
  Group run;
} kGroups[] = {{"Args", checkArgs},
               {"Arrays", checkArrays},
               {"Associations", checkAssociations},
               {"Attaching", checkAttaching},
               {"BadUpcalls", checkBadUpcalls},
               {"Contexts", checkContexts},
               {"DateTimes", checkDateTimes},
               {"Enumerations", checkEnumerations},
               {"Errors", checkErrors},
               {"Factories", checkFactories},
               {"Instances", checkInstances},
               {"InstanceValues", checkInstanceValues},
               {"Lifetimes", checkLifetimes},
               {"Memory", checkMemory},
               {"Messages", checkMessages},
               {"Mutexes", checkMutexes},
               {"ObjectPaths", checkObjectPaths},
               {"PropertyLists", checkPropertyLists},
               {"Qualifiers", checkQualifiers},
               {"Queries", checkQueries},
               {"SingleProperties", checkSingleProperties},
               {"Results", checkResults},
               {"Strings", checkStrings},
               {"Threads", checkThreads},
               {"Upcalls", checkUpcalls}};
enum { kGroupCount = sizeof kGroups / sizeof *kGroups };

Group groupNamed(const char* name) {
  unsigned at;
  if (strcmp(name, "Everything") == 0) return checkEverything;
  for (at = 0; at < kGroupCount; ++at) {
    if (strcmp(name, kGroups[at].name) == 0) return kGroups[at].run;
  }
  return NULL;
}

void checkEverything(Checks* c) {
  unsigned at;
  for (at = 0; at < kGroupCount; ++at) kGroups[at].run(c);
}

/* The checks of one thread. */
typedef struct Runner {
  Checks checks;
  CMPIContext* context;
  CMPIObjectPath* target;
  CMPI_THREAD_TYPE thread;
} Runner;

static CMPI_THREAD_RETURN CMPI_THREAD_CDECL runAll(void* parm) {
  Runner* runner = parm;
  Checks* c = &runner->checks;
  accepts(c, CALL(c, CMPIBrokerFT, c->broker->bft, attachThread)(c->broker, runner->context));
  if (c->failed != 0) return 0;
  checkEverything(c);
  CBDetachThread(c->broker, runner->context);
  return 0;
}

static void start(Checks* c, Runner* runner) {
  Checks* own = &runner->checks;
  runner->context = CBPrepareAttachThread(c->broker, c->context);
  runner->target = CMClone(c->target, NULL);
  own->broker = c->broker;
  own->context = runner->context;
  own->target = runner->target;
  own->table = own->slot = own->given = "";
  runner->thread = c->broker->xft->newThread(runAll, runner, 0);
}

static void finish(Checks* c, Runner* runner) {
  const Checks* own = &runner->checks;
  unsigned at;
  c->broker->xft->joinThread(runner->thread, NULL);
  CMRelease(runner->target);
  c->done += own->done;
  for (at = 0; at < own->failed; ++at) {
    memcpy(c->failures[c->failed++ % kFailuresKept], own->failures[at % kFailuresKept],
           kFailureSize);
  }
}

void checkOnThreads(Checks* c, unsigned threads) {
  Runner* runners = calloc(threads, sizeof *runners);
  unsigned at;
  if (runners == NULL) abort();
  for (at = 0; at < threads; ++at) start(c, &runners[at]);
  for (at = 0; at < threads; ++at) finish(c, &runners[at]);
  free(runners);
}
