/* What a client of the CIM model sees of the clock test: its instances, class by class. */
#ifndef CLOCK_MODEL_H
#define CLOCK_MODEL_H

#include "cmpi/cmpi.h"

/* Called for each instance; a number other than 0 ends the enumeration. */
typedef int (*InstanceSink)(CMPIInstance* instance, void* user);

/* Hands every instance of exactly this class to `sink`. Answers 0 where the class is none of ours.
 */
int eachInstance(const CMPIBroker* broker, const char* className, InstanceSink sink, void* user);

/* The path of the job with this id. */
CMPIObjectPath* jobPath(const CMPIBroker* broker, const char* id);

/* Whether two paths name the same instance: same class, same keys. */
int samePath(const CMPIObjectPath* a, const CMPIObjectPath* b);

extern const char* const kClockClass;
extern const char* const kTestClass;
extern const char* const kJobClass;

#endif
