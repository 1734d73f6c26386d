/* The groups of checks, mostly one for each function table. */
#ifndef CONFORMANCE_GROUPS_H
#define CONFORMANCE_GROUPS_H

#include "checks.h"

void checkArgs(Checks* c);
void checkArrays(Checks* c);
void checkAssociations(Checks* c);
void checkAttaching(Checks* c);
void checkBadUpcalls(Checks* c);
void checkContexts(Checks* c);
void checkDateTimes(Checks* c);
void checkEnumerations(Checks* c);
void checkErrors(Checks* c);
void checkFactories(Checks* c);
void checkInstances(Checks* c);
void checkInstanceValues(Checks* c);
void checkLifetimes(Checks* c);
void checkMemory(Checks* c);
void checkMessages(Checks* c);
void checkMutexes(Checks* c);
void checkObjectPaths(Checks* c);
void checkPropertyLists(Checks* c);
void checkQualifiers(Checks* c);
void checkQueries(Checks* c);
void checkResults(Checks* c);
void checkSingleProperties(Checks* c);
void checkStrings(Checks* c);
void checkThreads(Checks* c);
void checkUpcalls(Checks* c);

/* The broker that the provider was made with. */
extern const CMPIBroker* conformanceBroker;

/* The provider's own classes have their edition in the name. */
#define CONFORMANCE_TEXT_(number) #number
#define CONFORMANCE_TEXT(number) CONFORMANCE_TEXT_(number)
#define ITEM_CLASS "CONF_Item" CONFORMANCE_TEXT(CMPI_VERSION)
#define LINK_CLASS "CONF_Link" CONFORMANCE_TEXT(CMPI_VERSION)

/* What the group of the results does in a call of its own, whose result `c` holds. */
void deliver(Checks* c, int isGood);

typedef void (*Group)(Checks*);
/* NULL where no group has that name. */
Group groupNamed(const char* name);
/* Runs every group in turn. */
void checkEverything(Checks* c);

/* Runs every group on that many threads of the provider's own at once; their failures are
   added to those of `c`. */
void checkOnThreads(Checks* c, unsigned threads);

#endif
