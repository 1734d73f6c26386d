/* The vocabulary of the conformance checks: calling a slot so that it is known to be called, and
   saying what it has to answer. */
#ifndef CONFORMANCE_CHECKS_H
#define CONFORMANCE_CHECKS_H

#include <stddef.h>

#include "cmpi/cmpi.h"

enum { kFailuresKept = 40, kFailureSize = 240, kTablesAtMost = 32 };

/* Which slots of one function table have been called: one bit for each 8 bytes. */
typedef struct Coverage {
  const char* table;
  size_t size;
  CMPIUint64 called;
} Coverage;

/* What one run of a group of checks works with, and what came of it. For one thread. */
typedef struct Checks {
  const CMPIBroker* broker;
  const CMPIContext* context;
  const CMPIObjectPath* target; /* the instance that was asked to run the checks */
  const CMPIResult* result;     /* NULL on a thread that the provider has started */

  const char* table; /* what was called last, and with what of interest */
  const char* slot;
  const char* given;
  CMPIStatus st;

  unsigned done;
  unsigned failed;
  char failures[kFailuresKept][kFailureSize];
  Coverage tables[kTablesAtMost];
  unsigned tableCount;
} Checks;

/* The function in a slot of the table that `ft` points to, to be called at once. */
#define CALL(c, Table, ft, name) \
  (noteCall((c), #Table, sizeof(Table), offsetof(Table, name), #name), (ft)->name)
void noteCall(Checks* c, const char* table, size_t size, size_t offset, const char* slot);

/* Says in the failures that follow what the calls were given. */
void with(Checks* c, const char* given);

/* The status for the next call, filled with what no call may leave in it. */
CMPIStatus* fresh(Checks* c);

/* The last call has set the status to success. */
void accepted(Checks* c);
/* The last call has failed with that code, and with a reason. */
void refused(Checks* c, CMPIrc code);
/* The same of a status that was answered. */
void accepts(Checks* c, CMPIStatus st);
void refuses(Checks* c, CMPIrc code, CMPIStatus st);

void isTrue(Checks* c, const char* what, int holds);
void isNumber(Checks* c, const char* what, CMPIUint64 expected, CMPIUint64 actual);
/* NULL for no object at all. */
void isText(Checks* c, const char* what, const char* expected, const CMPIString* actual);
void isChars(Checks* c, const char* what, const char* expected, const char* actual);
/* Nothing came with an error: a null pointer; data that is marked as none. */
void isNothing(Checks* c, const void* answer);
void isNoData(Checks* c, CMPIData data);
/* A good string value, a good number, a null value of that type. */
void isTextData(Checks* c, const char* expected, CMPIData data);
void isNumberData(Checks* c, CMPIType type, CMPIUint64 expected, CMPIData data);
void isNullData(Checks* c, CMPIType type, CMPIData data);

/* A value of each type that needs no object, with the name of the property of it in the schema. */
typedef struct Sample {
  CMPIType type;
  const char* property;
  size_t width;
  CMPIValue value;
} Sample;
extern const Sample kSamples[];
extern const unsigned kSampleCount;

/* The sample's bytes where not one more may be read; given back by `free`. */
CMPIValue* tightCopy(const Sample* sample);
void isSample(Checks* c, const Sample* sample, CMPIData data);

/* Addresses that are no object of the broker's, or none of the kind of `good`. */
void* foreignHandle(void);
void* handleOfOtherKind(Checks* c, const void* good);

/* Runs `refuse(c, ft, bad)` and the two functions that every object has with each handle that is no
   live object of that type. So many objects are released before the released one is tried that its
   handle is not given to another object meanwhile. */
enum { kReleased = 64 };
#define EACH_BAD_HANDLE(c, Type, good, refuse)                                                 \
  do {                                                                                         \
    Type* c_gone[kReleased];                                                                   \
    void* c_bad[4];                                                                            \
    const char* c_names[] = {"a null handle", "a foreign handle", "another kind's handle",     \
                             "a released handle"};                                             \
    int c_at;                                                                                  \
    for (c_at = 0; c_at < kReleased; ++c_at) c_gone[c_at] = (good)->ft->clone(good, NULL);     \
    for (c_at = 0; c_at < kReleased; ++c_at) (good)->ft->release(c_gone[c_at]);                \
    c_bad[0] = NULL;                                                                           \
    c_bad[1] = foreignHandle();                                                                \
    c_bad[2] = handleOfOtherKind((c), (good));                                                 \
    c_bad[3] = c_gone[kReleased - 1];                                                          \
    for (c_at = 0; c_at < 4; ++c_at) {                                                         \
      Type* c_one = c_bad[c_at];                                                               \
      with((c), c_names[c_at]);                                                                \
      isNothing((c), CALL(c, Type##FT, (good)->ft, clone)(c_one, fresh(c)));                   \
      refused((c), CMPI_RC_ERR_INVALID_HANDLE);                                                \
      refuses((c), CMPI_RC_ERR_INVALID_HANDLE, CALL(c, Type##FT, (good)->ft, release)(c_one)); \
      refuse((c), (good)->ft, c_one);                                                          \
    }                                                                                          \
    with((c), "");                                                                             \
  } while (0)

/* What holds for every kind of object: its table is of an edition that has the provider's slots, a
   clone is another object, and can be released once. */
#define CHECK_LIFE(c, Type, good)                                                                \
  do {                                                                                           \
    Type* c_clone = CALL(c, Type##FT, (good)->ft, clone)((good), fresh(c));                      \
    accepted(c);                                                                                 \
    isTrue((c), "the table is of this edition or a later one",                                   \
           (good)->ft->ftVersion >= CMPICurrentVersion);                                         \
    isTrue((c), "the clone is an object of its own",                                             \
           c_clone != NULL && c_clone != (good) && c_clone->hdl != NULL && (good)->hdl != NULL); \
    accepts((c), CALL(c, Type##FT, (good)->ft, release)(c_clone));                               \
    refuses((c), CMPI_RC_ERR_INVALID_HANDLE, CALL(c, Type##FT, (good)->ft, release)(c_clone));   \
    c_clone = CALL(c, Type##FT, (good)->ft, clone)((good), NULL);                                \
    isTrue((c), "it is cloned without a status", c_clone != NULL);                               \
    accepts((c), CALL(c, Type##FT, (good)->ft, release)(c_clone));                               \
    isNothing((c), CALL(c, Type##FT, (good)->ft, clone)(NULL, NULL));                            \
  } while (0)

#endif
