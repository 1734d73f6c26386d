#include "checks.h"

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

const Sample kSamples[] = {{CMPI_boolean, "Bool", 1, {.boolean = 1}},
                           {CMPI_char16, "Char16", 2, {.char16 = 0x20AC}},
                           {CMPI_uint8, "U8", 1, {.uint8 = 200}},
                           {CMPI_sint8, "S8", 1, {.sint8 = -100}},
                           {CMPI_uint16, "U16", 2, {.uint16 = 60000}},
                           {CMPI_sint16, "S16", 2, {.sint16 = -30000}},
                           {CMPI_uint32, "U32", 4, {.uint32 = 4000000000U}},
                           {CMPI_sint32, "S32", 4, {.sint32 = -2000000000}},
                           {CMPI_uint64, "U64", 8, {.uint64 = 0xFEDCBA9876543210U}},
                           {CMPI_sint64, "S64", 8, {.sint64 = -0x7EDCBA9876543210}},
                           {CMPI_real32, "R32", 4, {.real32 = 1.5F}},
                           {CMPI_real64, "R64", 8, {.real64 = -0.1}}};
const unsigned kSampleCount = sizeof kSamples / sizeof *kSamples;

void noteCall(Checks* c, const char* table, size_t size, size_t offset, const char* slot) {
  unsigned at = 0;
  c->table = table;
  c->slot = slot;
  while (at < c->tableCount && strcmp(c->tables[at].table, table) != 0) ++at;
  if (at == kTablesAtMost) return;
  if (at == c->tableCount) {
    c->tables[c->tableCount].table = table;
    c->tables[c->tableCount++].size = size;
  }
  c->tables[at].called |= (CMPIUint64)1 << offset / sizeof(void*);
}

void with(Checks* c, const char* given) { c->given = given; }

/* One check is done; what is said of it counts where it failed. */
static void check(Checks* c, int holds, const char* format, ...) {
  char* text = c->failures[c->failed % kFailuresKept];
  size_t length;
  va_list list;
  ++c->done;
  if (holds) return;
  ++c->failed;
  snprintf(text, kFailureSize, "%s.%s%s%s: ", c->table, c->slot, *c->given ? ", " : "", c->given);
  length = strlen(text);
  va_start(list, format);
  vsnprintf(text + length, kFailureSize - length, format, list);
  va_end(list);
}

CMPIStatus* fresh(Checks* c) {
  static CMPIString stale;
  c->st.rc = CMPI_RC_ERROR;
  c->st.msg = &stale;
  return &c->st;
}

static const char* textOf(const CMPIString* text) {
  return text == NULL ? "(none)" : text->ft->getCharPtr(text, NULL);
}

void accepted(Checks* c) {
  const int code = (int)c->st.rc;
  check(c, code == CMPI_RC_OK, "expected success, got status %d: %s", code,
        code == CMPI_RC_OK ? "" : textOf(c->st.msg));
  check(c, code != CMPI_RC_OK || c->st.msg == NULL, "success with a message");
}

void refused(Checks* c, CMPIrc code) {
  const int actual = (int)c->st.rc;
  check(c, actual == (int)code, "expected status %d, got %d", (int)code, actual);
  if (actual == CMPI_RC_OK) return;
  check(c, c->st.msg != NULL && *textOf(c->st.msg) != '\0', "status %d without a reason", actual);
}

void accepts(Checks* c, CMPIStatus st) {
  c->st = st;
  accepted(c);
}

void refuses(Checks* c, CMPIrc code, CMPIStatus st) {
  c->st = st;
  refused(c, code);
}

void isTrue(Checks* c, const char* what, int holds) {
  check(c, holds, "it does not hold: %s", what);
}

void isNumber(Checks* c, const char* what, CMPIUint64 expected, CMPIUint64 actual) {
  check(c, expected == actual, "%s: expected %llu, got %llu", what, expected, actual);
}

void isChars(Checks* c, const char* what, const char* expected, const char* actual) {
  const int same =
      expected == NULL || actual == NULL ? expected == actual : strcmp(expected, actual) == 0;
  check(c, same, "%s: expected \"%s\", got \"%s\"", what, expected ? expected : "(none)",
        actual ? actual : "(none)");
}

void isText(Checks* c, const char* what, const char* expected, const CMPIString* actual) {
  isChars(c, what, expected, actual == NULL ? NULL : textOf(actual));
  if (actual != NULL) check(c, actual->hdl == textOf(actual), "hdl is not the text's address");
}

void isNothing(Checks* c, const void* answer) {
  check(c, answer == NULL, "an object with an error");
}

void isNoData(Checks* c, CMPIData data) {
  check(c, (data.state & CMPI_badValue) != 0, "state %#x with an error", data.state);
}

static void isGoodData(Checks* c, CMPIType type, CMPIData data) {
  const unsigned flaws = CMPI_nullValue | CMPI_badValue | CMPI_notFound;
  check(c, (data.state & flaws) == 0, "expected a good value, got state %#x", data.state);
  check(c, data.type == type, "expected type %#x, got %#x", type, data.type);
}

void isTextData(Checks* c, const char* expected, CMPIData data) {
  isGoodData(c, CMPI_string, data);
  if (data.type == CMPI_string) isText(c, "the value", expected, data.value.string);
}

void isNumberData(Checks* c, CMPIType type, CMPIUint64 expected, CMPIData data) {
  isGoodData(c, type, data);
  isNumber(c, "the value", expected, data.value.uint64);
}

void isNullData(Checks* c, CMPIType type, CMPIData data) {
  check(c, (data.state & CMPI_nullValue) != 0, "expected null, got state %#x", data.state);
  check(c, (data.state & CMPI_badValue) == 0, "expected null, got state %#x", data.state);
  check(c, data.type == type, "expected type %#x, got %#x", type, data.type);
}

CMPIValue* tightCopy(const Sample* sample) {
  void* copy = malloc(sample->width);
  if (copy == NULL) abort();
  return memcpy(copy, &sample->value, sample->width);
}

void isSample(Checks* c, const Sample* sample, CMPIData data) {
  isGoodData(c, sample->type, data);
  check(c, memcmp(&data.value, &sample->value, sample->width) == 0,
        "the value of type %#x changed on its way", sample->type);
}

void* foreignHandle(void) {
  static void* object[8];
  return object;
}

void* handleOfOtherKind(Checks* c, const void* good) {
  const CMPIObjectPath* object = good;
  if ((void*)object->ft == (void*)c->target->ft) return CMNewArgs(c->broker, NULL);
  return CMNewObjectPath(c->broker, "root/cimv2", "CONF_Other", NULL);
}
