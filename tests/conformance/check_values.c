#include <stdlib.h>

#include "groups.h"

/* The values of an instance: every type, with the class declared and without, objects and arrays.
 */
#define SLOT(name) CALL(c, CMPIInstanceFT, ft, name)

static CMPIInstance* newThing(Checks* c, const char* className) {
  CMPIObjectPath* path = CMNewObjectPath(c->broker, "root/cimv2", className, NULL);
  CMAddKey(path, "Name", "one", CMPI_chars);
  return CMNewInstance(c->broker, path, NULL);
}

static void checkSamples(Checks* c, const CMPIInstance* thing) {
  const CMPIInstanceFT* ft = thing->ft;
  unsigned at;
  for (at = 0; at < kSampleCount; ++at) {
    const Sample* sample = &kSamples[at];
    CMPIValue* value = tightCopy(sample);
    with(c, sample->property);
    accepts(c, SLOT(setProperty)(thing, sample->property, value, sample->type));
    free(value);
    isSample(c, sample, SLOT(getProperty)(thing, sample->property, fresh(c)));
    accepted(c);
    accepts(c, SLOT(setProperty)(thing, sample->property, NULL, sample->type));
    isNullData(c, sample->type, SLOT(getProperty)(thing, sample->property, fresh(c)));
    accepted(c);
  }
  with(c, "");
}

static void checkTexts(Checks* c, const CMPIInstance* thing) {
  const CMPIInstanceFT* ft = thing->ft;
  CMPIString* string = CMNewString(c->broker, "object", NULL);
  const CMPIString* noString = NULL;
  const char* chars = "pointed at";
  accepts(c, SLOT(setProperty)(thing, "Text", (const CMPIValue*)"text", CMPI_chars));
  isTextData(c, "text", SLOT(getProperty)(thing, "Text", NULL));
  accepts(c, SLOT(setProperty)(thing, "Text", (const CMPIValue*)&string, CMPI_string));
  CMRelease(string);
  isTextData(c, "object", SLOT(getProperty)(thing, "Text", NULL));
  accepts(c, SLOT(setProperty)(thing, "Text", (const CMPIValue*)&chars, CMPI_charsptr));
  isTextData(c, "pointed at", SLOT(getProperty)(thing, "Text", NULL));
  accepts(c, SLOT(setProperty)(thing, "Text", (const CMPIValue*)&noString, CMPI_string));
  isNullData(c, CMPI_string, SLOT(getProperty)(thing, "Text", NULL));
  with(c, "bytes that are no UTF-8");
  accepts(c, SLOT(setProperty)(thing, "Text", (const CMPIValue*)"caf\xE9", CMPI_chars));
  isTextData(c, "caf\xC3\xA9", SLOT(getProperty)(thing, "Text", NULL));
  with(c, "");
}

static void checkObjects(Checks* c, const CMPIInstance* thing) {
  const CMPIInstanceFT* ft = thing->ft;
  CMPIDateTime* time = CMNewDateTimeFromChars(c->broker, "20240229123456.789012+060", NULL);
  CMPIInstance* inner = newThing(c, "CONF_Thing");
  const CMPIObjectPath* path = c->target;
  CMPIData data;
  accepts(c, SLOT(setProperty)(thing, "When", (CMPIValue*)&time, CMPI_dateTime));
  data = SLOT(getProperty)(thing, "When", NULL);
  isNumber(c, "the type", CMPI_dateTime, data.type);
  if (data.type == CMPI_dateTime) {
    isText(c, "the time", "20240229123456.789012+060",
           data.value.dateTime->ft->getStringFormat(data.value.dateTime, NULL));
  }
  accepts(c, SLOT(setProperty)(thing, "Inner", (CMPIValue*)&inner, CMPI_instance));
  data = SLOT(getProperty)(thing, "Inner", NULL);
  isNumber(c, "the type", CMPI_instance, data.type);
  if (data.type == CMPI_instance) {
    isTextData(c, "one", CMGetProperty(data.value.inst, "Name", NULL));
  }
  accepts(c, SLOT(setProperty)(thing, "Peer", (const CMPIValue*)&path, CMPI_ref));
  data = SLOT(getProperty)(thing, "Peer", NULL);
  isNumber(c, "the type", CMPI_ref, data.type);
  if (data.type == CMPI_ref) {
    isText(c, "the path", CMGetCharPtr(CMObjectPathToString(path, NULL)),
           CMObjectPathToString(data.value.ref, NULL));
  }
}

static void checkArrayValues(Checks* c, const CMPIInstance* thing) {
  const CMPIInstanceFT* ft = thing->ft;
  CMPIArray* numbers = CMNewArray(c->broker, 2, CMPI_uint32, NULL);
  CMPIArray* texts = CMNewArray(c->broker, 1, CMPI_chars, NULL);
  const CMPIUint32 number = 5;
  CMPIData data;
  CMSetArrayElementAt(numbers, 1, &number, CMPI_uint32);
  CMSetArrayElementAt(texts, 0, "tag", CMPI_chars);
  accepts(c, SLOT(setProperty)(thing, "Numbers", (CMPIValue*)&numbers, CMPI_uint32A));
  accepts(c, SLOT(setProperty)(thing, "Tags", (CMPIValue*)&texts, CMPI_charsA));
  CMSetArrayElementAt(numbers, 1, NULL, CMPI_null);
  data = SLOT(getProperty)(thing, "Numbers", NULL);
  isNumber(c, "the type", CMPI_uint32A, data.type);
  if (data.type == CMPI_uint32A) {
    isNullData(c, CMPI_uint32, CMGetArrayElementAt(data.value.array, 0, NULL));
    isNumberData(c, CMPI_uint32, 5, CMGetArrayElementAt(data.value.array, 1, NULL));
  }
  data = SLOT(getProperty)(thing, "Tags", NULL);
  isNumber(c, "the type", CMPI_stringA, data.type);
  if (data.type == CMPI_stringA) {
    isTextData(c, "tag", CMGetArrayElementAt(data.value.array, 0, NULL));
  }
}

/* A declared property takes what fits its type, and nothing else. */
static void checkFitting(Checks* c) {
  const CMPIInstance* thing = newThing(c, "CONF_Thing");
  const CMPIInstanceFT* ft = thing->ft;
  const CMPIUint64 small = 300;
  const CMPISint32 negative = -1;
  CMPIData data;
  with(c, "another width, and the value fits");
  accepts(c, SLOT(setProperty)(thing, "U16", (const CMPIValue*)&small, CMPI_uint64));
  isNumberData(c, CMPI_uint16, 300, SLOT(getProperty)(thing, "U16", NULL));
  with(c, "a value that does not fit");
  refuses(c, CMPI_RC_ERR_TYPE_MISMATCH,
          SLOT(setProperty)(thing, "U8", (const CMPIValue*)&small, CMPI_uint64));
  refuses(c, CMPI_RC_ERR_TYPE_MISMATCH,
          SLOT(setProperty)(thing, "U16", (const CMPIValue*)&negative, CMPI_sint32));
  isNumberData(c, CMPI_uint16, 300, SLOT(getProperty)(thing, "U16", NULL));
  refuses(c, CMPI_RC_ERR_TYPE_MISMATCH,
          SLOT(setProperty)(thing, "Bool", (const CMPIValue*)"perhaps", CMPI_chars));
  refuses(c, CMPI_RC_ERR_TYPE_MISMATCH,
          SLOT(setProperty)(thing, "Numbers", (const CMPIValue*)&small, CMPI_uint64));
  with(c, "a text for a date and time");
  accepts(c, SLOT(setProperty)(thing, "When", (const CMPIValue*)"20240101000000.000000+000",
                               CMPI_chars));
  data = SLOT(getProperty)(thing, "When", NULL);
  isNumber(c, "the type", CMPI_dateTime, data.type);
  refuses(c, CMPI_RC_ERR_TYPE_MISMATCH,
          SLOT(setProperty)(thing, "When", (const CMPIValue*)"yesterday", CMPI_chars));
  with(c, "");
}

static void checkBadValues(Checks* c, const CMPIInstance* thing) {
  const CMPIInstanceFT* ft = thing->ft;
  CMPIDateTime* released = CMClone(CMNewDateTime(c->broker, NULL), NULL);
  const void* const bad[] = {foreignHandle(), CMNewArgs(c->broker, NULL), released};
  const CMPIType types[] = {CMPI_string, CMPI_dateTime, CMPI_ref, CMPI_instance, CMPI_uint32A};
  const CMPIType noValues[] = {0x0777, 0x1234, CMPI_args, CMPI_enumeration, CMPI_filter, CMPI_ptr};
  unsigned at;
  with(c, "a bad object");
  CMRelease(released);
  for (at = 0; at < 15; ++at) {
    refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
            SLOT(setProperty)(thing, "Any", (const CMPIValue*)&bad[at / 5], types[at % 5]));
  }
  with(c, "a type code that is not of a value");
  for (at = 0; at < sizeof noValues / sizeof *noValues; ++at) {
    refuses(c, CMPI_RC_ERR_INVALID_DATA_TYPE,
            SLOT(setProperty)(thing, "Any", (const CMPIValue*)&bad[1], noValues[at]));
  }
  with(c, "");
}

void checkInstanceValues(Checks* c) {
  const char* const classes[] = {"CONF_Thing", "CONF_Undeclared"};
  unsigned at;
  for (at = 0; at < 2; ++at) {
    const CMPIInstance* thing = newThing(c, classes[at]);
    checkSamples(c, thing);
    checkTexts(c, thing);
    checkObjects(c, thing);
    checkArrayValues(c, thing);
  }
  checkFitting(c);
  checkBadValues(c, newThing(c, "CONF_Undeclared"));
}
