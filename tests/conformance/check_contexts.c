#include <stdlib.h>

#include "groups.h"

#define SLOT(name) CALL(c, CMPIContextFT, ft, name)

static void refuse(Checks* c, const CMPIContextFT* ft, const CMPIContext* bad) {
  isNoData(c, SLOT(getEntry)(bad, CMPIInitNameSpace, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNoData(c, SLOT(getEntry)(bad, CMPIInitNameSpace, NULL));
  isNoData(c, SLOT(getEntryAt)(bad, 0, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNoData(c, SLOT(getEntryAt)(bad, 0, NULL, NULL));
  isNumber(c, "the count", 0, SLOT(getEntryCount)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the count", 0, SLOT(getEntryCount)(bad, NULL));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(addEntry)(bad, "A", (const CMPIValue*)"text", CMPI_chars));
}

/* What every call brings along. */
static void checkStandardEntries(Checks* c) {
  const char* const texts[] = {CMPIInitNameSpace, CMPIPrincipal, CMPIRole, CMPIAcceptLanguage,
                               CMPIContentLanguage};
  const CMPIContextFT* ft = c->context->ft;
  CMPIData data;
  unsigned at;
  for (at = 0; at < sizeof texts / sizeof *texts; ++at) {
    with(c, texts[at]);
    data = SLOT(getEntry)(c->context, texts[at], fresh(c));
    accepted(c);
    isNumber(c, "the type", CMPI_string, data.type);
    isTrue(c, "it is no null", !CMIsNullValue(data) && data.value.string != NULL);
  }
  with(c, "");
  isTextData(c, "root/cimv2", SLOT(getEntry)(c->context, CMPIInitNameSpace, NULL));
  data = SLOT(getEntry)(c->context, CMPIInvocationFlags, fresh(c));
  accepted(c);
  isNumberData(c, CMPI_uint32, 0, data);
}

static void checkOwnEntries(Checks* c, const CMPIContext* context) {
  const CMPIContextFT* ft = context->ft;
  const CMPICount before = SLOT(getEntryCount)(context, NULL);
  const CMPIValuePtr pointer = {c, 42};
  CMPIString* name = NULL;
  CMPIData data;
  unsigned at;
  for (at = 0; at < kSampleCount; ++at) {
    CMPIValue* value = tightCopy(&kSamples[at]);
    with(c, kSamples[at].property);
    accepts(c, SLOT(addEntry)(context, kSamples[at].property, value, kSamples[at].type));
    free(value);
    isSample(c, &kSamples[at], SLOT(getEntryAt)(context, before + at, &name, fresh(c)));
    accepted(c);
    isText(c, "the name", kSamples[at].property, name);
  }
  with(c, "a pointer");
  accepts(c, SLOT(addEntry)(context, "Pointer", (const CMPIValue*)&pointer, CMPI_ptr));
  data = SLOT(getEntry)(context, "Pointer", fresh(c));
  accepted(c);
  isNumber(c, "the type", CMPI_ptr, data.type);
  isTrue(c, "the pointer comes back", data.value.dataPtr.ptr == c);
  isNumber(c, "the length", 42, data.value.dataPtr.length);
  with(c, "a text twice");
  accepts(c, SLOT(addEntry)(context, "Text", (const CMPIValue*)"a", CMPI_chars));
  accepts(c, SLOT(addEntry)(context, "Text", (const CMPIValue*)"b", CMPI_chars));
  isTextData(c, "b", SLOT(getEntry)(context, "Text", NULL));
  isNumber(c, "the count", before + kSampleCount + 2, SLOT(getEntryCount)(context, fresh(c)));
  accepted(c);
  with(c, "");
}

static void checkBadArguments(Checks* c, const CMPIContext* context) {
  const CMPIContextFT* ft = context->ft;
  const CMPIString* foreign = foreignHandle();
  with(c, "a null name");
  isNoData(c, SLOT(getEntry)(context, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  isNoData(c, SLOT(getEntry)(context, NULL, NULL));
  refuses(c, CMPI_RC_ERR_INVALID_PARAMETER,
          SLOT(addEntry)(context, NULL, (const CMPIValue*)"x", CMPI_chars));
  with(c, "an unknown name");
  isNoData(c, SLOT(getEntry)(context, "Nowhere", fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  with(c, "an index past the end");
  isNoData(c, SLOT(getEntryAt)(context, 1000, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  with(c, "a type code of none");
  refuses(c, CMPI_RC_ERR_INVALID_DATA_TYPE,
          SLOT(addEntry)(context, "X", (const CMPIValue*)"x", 0x0777));
  with(c, "a foreign string");
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(addEntry)(context, "X", (const CMPIValue*)&foreign, CMPI_string));
  with(c, "");
}

void checkContexts(Checks* c) {
  CMPIContext* context = CMClone(c->context, NULL);
  CMPIContext* copy;
  const CMPIContextFT* ft = context->ft;
  checkStandardEntries(c);
  checkOwnEntries(c, context);
  checkBadArguments(c, context);
  copy = SLOT(clone)(context, NULL);
  accepts(c, SLOT(release)(context));
  isTextData(c, "b", SLOT(getEntry)(copy, "Text", NULL));
  CHECK_LIFE(c, CMPIContext, copy);
  EACH_BAD_HANDLE(c, CMPIContext, copy, refuse);
  SLOT(release)(copy);
}
