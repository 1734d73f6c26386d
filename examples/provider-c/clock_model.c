/* gethostname() is POSIX rather than C. */
#define _POSIX_C_SOURCE 200809L

#include "clock_model.h"

#include <stdio.h>
#include <string.h>
#if defined(_WIN32)
#include <windows.h>
#else
#include <unistd.h>
#endif

#include "clock_run.h"

const char* const kClockClass = "ACME_Clock";
const char* const kTestClass = "ACME_ClockTest";
const char* const kJobClass = "ACME_ClockTestJob";

static const char* const kNamespace = "root/cimv2";
static const char* const kSystemClass = "CIM_ComputerSystem";
static const char* const kElementName = "System Clock";
static const char* const kTestName = "ACME: System Clock Test"; /* no comma and no bar */

static void systemName(char* name, size_t size) {
#if defined(_WIN32)
  wchar_t wide[MAX_COMPUTERNAME_LENGTH + 1];
  DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
  /* Texts are UTF-8. */
  if (!GetComputerNameW(wide, &length) ||
      WideCharToMultiByte(CP_UTF8, 0, wide, -1, name, (int)size, NULL, NULL) == 0)
    snprintf(name, size, "localhost");
#else
  if (gethostname(name, size) != 0) snprintf(name, size, "localhost");
  name[size - 1] = '\0';
#endif
}

/* Values. A number is passed by the address of a variable of its own width, a text as it is. */

static void setText(CMPIInstance* instance, const char* name, const char* text) {
  CMSetProperty(instance, name, text, CMPI_chars);
}
static void setUint16(CMPIInstance* instance, const char* name, CMPIUint16 number) {
  CMSetProperty(instance, name, &number, CMPI_uint16);
}
static void setUint16s(const CMPIBroker* broker, CMPIInstance* instance, const char* name,
                       CMPIUint16 number) {
  CMPIArray* array = CMNewArray(broker, 1, CMPI_uint16, NULL);
  CMSetArrayElementAt(array, 0, &number, CMPI_uint16);
  CMSetProperty(instance, name, &array, CMPI_uint16A);
}
static void setTime(const CMPIBroker* broker, CMPIInstance* instance, const char* name,
                    CMPIUint64 microseconds, CMPIBoolean isInterval) {
  CMPIDateTime* time = CMNewDateTimeFromBinary(broker, microseconds, isInterval, NULL);
  CMSetProperty(instance, name, &time, CMPI_dateTime);
}

/* Paths, and instances that have the keys of their path. */

static CMPIObjectPath* pathOf(const CMPIBroker* broker, const char* className, const char* key,
                              const char* value) {
  CMPIObjectPath* const path = CMNewObjectPath(broker, kNamespace, className, NULL);
  CMAddKey(path, key, value, CMPI_chars);
  return path;
}
static CMPIObjectPath* pathOnSystem(const CMPIBroker* broker, const char* className,
                                    const char* key, const char* value) {
  char name[256];
  CMPIObjectPath* const path = pathOf(broker, className, key, value);
  systemName(name, sizeof name);
  CMAddKey(path, "SystemCreationClassName", kSystemClass, CMPI_chars);
  CMAddKey(path, "SystemName", name, CMPI_chars);
  CMAddKey(path, "CreationClassName", className, CMPI_chars);
  return path;
}
static CMPIInstance* instanceAt(const CMPIBroker* broker, const CMPIObjectPath* path) {
  CMPIInstance* const instance = CMNewInstance(broker, path, NULL);
  const CMPICount keys = CMGetKeyCount(path, NULL);
  CMPICount i;
  for (i = 0; i < keys; ++i) {
    CMPIString* name = NULL;
    const CMPIData key = CMGetKeyAt(path, i, &name, NULL);
    CMSetProperty(instance, CMGetCharPtr(name), &key.value, key.type);
  }
  return instance;
}
static CMPIInstance* association(const CMPIBroker* broker, const char* className, const char* role1,
                                 CMPIObjectPath* end1, const char* role2, CMPIObjectPath* end2) {
  CMPIObjectPath* const path = CMNewObjectPath(broker, kNamespace, className, NULL);
  CMAddKey(path, role1, &end1, CMPI_ref);
  CMAddKey(path, role2, &end2, CMPI_ref);
  return instanceAt(broker, path);
}

static CMPIObjectPath* clockPath(const CMPIBroker* broker) {
  return pathOnSystem(broker, kClockClass, "DeviceID", "clock0");
}
static CMPIObjectPath* testPath(const CMPIBroker* broker) {
  return pathOnSystem(broker, kTestClass, "Name", kTestName);
}
CMPIObjectPath* jobPath(const CMPIBroker* broker, const char* id) {
  return pathOf(broker, kJobClass, "InstanceID", id);
}
/* Record 0 of a run has the results, record 1 the verdict. */
static CMPIObjectPath* recordPath(const CMPIBroker* broker, const Run* run, int number) {
  char id[64];
  snprintf(id, sizeof id, "%s:%d", run->id, number);
  return pathOf(broker, number == 0 ? "ACME_ClockTestRecord" : "ACME_ClockTestCompletionRecord",
                "InstanceID", id);
}

/* The instances. */

static CMPIInstance* makeClock(const CMPIBroker* broker, const Run* run) {
  CMPIInstance* const clock = instanceAt(broker, clockPath(broker));
  (void)run;
  setText(clock, "ElementName", kElementName);
  setUint16s(broker, clock, "OperationalStatus", 2);
  return clock;
}
static CMPIInstance* makeTest(const CMPIBroker* broker, const Run* run) {
  CMPIInstance* const test = instanceAt(broker, testPath(broker));
  (void)run;
  setText(test, "ElementName", kElementName);
  setText(test, "Description", "Reads the clock and looks whether it moves on evenly.");
  setUint16s(broker, test, "TestTypes", 2);
  return test;
}
static CMPIInstance* makeAvailable(const CMPIBroker* broker, const Run* run) {
  CMPIInstance* const link = association(broker, "ACME_ClockTestForElement", "ServiceProvided",
                                         testPath(broker), "UserOfService", clockPath(broker));
  const CMPIUint32 seconds = 2;
  (void)run;
  setUint16(link, "EstimatedDurationOfService", 3); /* the unit: seconds */
  CMSetProperty(link, "EstimatedDurationQualifier", &seconds, CMPI_uint32);
  return link;
}
static CMPIInstance* makeJob(const CMPIBroker* broker, const Run* run) {
  CMPIInstance* const job = instanceAt(broker, jobPath(broker, run->id));
  setText(job, "Name", kTestName);
  setUint16(job, "JobState", run->jobState);
  setUint16(job, "PercentComplete", run->percent);
  setUint16s(broker, job, "OperationalStatus", run->ended == 0 ? 2 : 17);
  setTime(broker, job, "StartTime", run->started, CMPI_false);
  setTime(broker, job, "TimeBeforeRemoval", 5 * 60 * (CMPIUint64)1000000, CMPI_true);
  return job;
}
static CMPIInstance* makeRecord(const CMPIBroker* broker, const Run* run, int number,
                                const char* format, const char* data) {
  CMPIInstance* const record = instanceAt(broker, recordPath(broker, run, number));
  setText(record, "ServiceName", kTestName);           /* the test's Name, unchanged */
  setText(record, "ManagedElementName", kElementName); /* the clock's ElementName, unchanged */
  setUint16(record, "RecordType", 2);
  setText(record, "RecordFormat", format); /* empty: for people to read */
  setText(record, "RecordData", data);
  setTime(broker, record, "CreationTimeStamp", run->ended, CMPI_false);
  return record;
}
static CMPIInstance* makeResults(const CMPIBroker* broker, const Run* run) {
  return makeRecord(broker, run, 0, kResultFormat, run->results);
}
static CMPIInstance* makeCompletion(const CMPIBroker* broker, const Run* run) {
  CMPIInstance* const record = makeRecord(broker, run, 1, "", run->summary);
  setUint16(record, "CompletionState", run->verdict);
  return record;
}
static CMPIInstance* makeAppliesTo0(const CMPIBroker* broker, const Run* run) {
  return association(broker, "ACME_ClockTestRecordAppliesToElement", "Antecedent",
                     recordPath(broker, run, 0), "Dependent", clockPath(broker));
}
static CMPIInstance* makeAppliesTo1(const CMPIBroker* broker, const Run* run) {
  return association(broker, "ACME_ClockTestRecordAppliesToElement", "Antecedent",
                     recordPath(broker, run, 1), "Dependent", clockPath(broker));
}
static CMPIInstance* makeOwningJob(const CMPIBroker* broker, const Run* run) {
  return association(broker, "ACME_ClockTestOwningJobElement", "OwningElement", testPath(broker),
                     "OwnedElement", jobPath(broker, run->id));
}
static CMPIInstance* makeAffectedJob(const CMPIBroker* broker, const Run* run) {
  return association(broker, "ACME_ClockTestAffectedJobElement", "AffectedElement",
                     clockPath(broker), "AffectingElement", jobPath(broker, run->id));
}

/* A class has one instance, or one for each run, or one for each run that has ended. */
enum Times { kOnce, kEachRun, kEachEndedRun };
static const struct Table {
  const char* className;
  enum Times times;
  CMPIInstance* (*make)(const CMPIBroker* broker, const Run* run);
} kTables[] = {
    {"ACME_Clock", kOnce, makeClock},
    {"ACME_ClockTest", kOnce, makeTest},
    {"ACME_ClockTestForElement", kOnce, makeAvailable},
    {"ACME_ClockTestJob", kEachRun, makeJob},
    {"ACME_ClockTestOwningJobElement", kEachRun, makeOwningJob},
    {"ACME_ClockTestAffectedJobElement", kEachRun, makeAffectedJob},
    {"ACME_ClockTestRecord", kEachEndedRun, makeResults},
    {"ACME_ClockTestCompletionRecord", kEachEndedRun, makeCompletion},
    {"ACME_ClockTestRecordAppliesToElement", kEachEndedRun, makeAppliesTo0},
    {"ACME_ClockTestRecordAppliesToElement", kEachEndedRun, makeAppliesTo1},
};

/* Names of classes and keys are the same in upper and lower case. */
static int sameName(const char* a, const char* b) {
  for (; *a != '\0' && *b != '\0'; ++a, ++b) {
    const int x = *a >= 'A' && *a <= 'Z' ? *a - 'A' + 'a' : *a;
    const int y = *b >= 'A' && *b <= 'Z' ? *b - 'A' + 'a' : *b;
    if (x != y) return 0;
  }
  return *a == *b;
}

int eachInstance(const CMPIBroker* broker, const char* className, InstanceSink sink, void* user) {
  Run runs[kMaxRuns];
  const int count = copyRuns(runs);
  int known = 0, i;
  size_t t;
  for (t = 0; t < sizeof kTables / sizeof kTables[0]; ++t) {
    const struct Table* const table = &kTables[t];
    if (!sameName(table->className, className)) continue;
    known = 1;
    if (table->times == kOnce && sink(table->make(broker, NULL), user)) return 1;
    for (i = 0; table->times != kOnce && i < count; ++i) {
      if (table->times == kEachEndedRun && runs[i].ended == 0) continue;
      if (sink(table->make(broker, &runs[i]), user)) return 1;
    }
  }
  return known;
}

int samePath(const CMPIObjectPath* a, const CMPIObjectPath* b) {
  const CMPICount keys = CMGetKeyCount(a, NULL);
  CMPICount i;
  if (!sameName(CMGetCharPtr(CMGetClassName(a, NULL)), CMGetCharPtr(CMGetClassName(b, NULL))) ||
      keys != CMGetKeyCount(b, NULL))
    return 0;
  for (i = 0; i < keys; ++i) {
    CMPIString* name = NULL;
    CMPIStatus status = {CMPI_RC_OK, NULL};
    const CMPIData x = CMGetKeyAt(a, i, &name, NULL);
    const CMPIData y = CMGetKey(b, CMGetCharPtr(name), &status);
    if (status.rc != CMPI_RC_OK || x.type != y.type) return 0;
    if (x.type == CMPI_ref && !samePath(x.value.ref, y.value.ref)) return 0;
    if (x.type == CMPI_string &&
        strcmp(CMGetCharPtr(x.value.string), CMGetCharPtr(y.value.string)) != 0)
      return 0;
  }
  return 1;
}
