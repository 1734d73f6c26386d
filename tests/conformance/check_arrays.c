#include <stdlib.h>
#include <string.h>

#include "groups.h"

#define SLOT(name) CALL(c, CMPIArrayFT, ft, name)

static void refuse(Checks* c, const CMPIArrayFT* ft, const CMPIArray* bad) {
  const CMPIUint32 number = 1;
  isNumber(c, "the size", 0, SLOT(getSize)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the size", 0, SLOT(getSize)(bad, NULL));
  isNumber(c, "the type", CMPI_null, SLOT(getSimpleType)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the type", CMPI_null, SLOT(getSimpleType)(bad, NULL));
  isNoData(c, SLOT(getElementAt)(bad, 0, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNoData(c, SLOT(getElementAt)(bad, 0, NULL));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(setElementAt)(bad, 0, (const CMPIValue*)&number, CMPI_uint32));
}

/* An array of each simple type: null at first, then what was put there. */
static void checkTypes(Checks* c) {
  unsigned at;
  for (at = 0; at < kSampleCount; ++at) {
    const Sample* sample = &kSamples[at];
    CMPIValue* value = tightCopy(sample);
    const CMPIArray* array = CMNewArray(c->broker, 2, sample->type, NULL);
    const CMPIArrayFT* ft = array->ft;
    with(c, sample->property);
    isNumber(c, "the type", sample->type, SLOT(getSimpleType)(array, fresh(c)));
    accepted(c);
    isNumber(c, "the size", 2, SLOT(getSize)(array, fresh(c)));
    accepted(c);
    isNullData(c, sample->type, SLOT(getElementAt)(array, 1, fresh(c)));
    accepted(c);
    accepts(c, SLOT(setElementAt)(array, 1, value, sample->type));
    isSample(c, sample, SLOT(getElementAt)(array, 1, fresh(c)));
    accepted(c);
    free(value);
  }
  with(c, "");
}

static void checkStringElements(Checks* c, CMPIArray* array) {
  const CMPIArrayFT* ft = array->ft;
  CMPIString* text = CMNewString(c->broker, "object", NULL);
  CMPIArray* copy;
  accepts(c, SLOT(setElementAt)(array, 0, (const CMPIValue*)"chars", CMPI_chars));
  accepts(c, SLOT(setElementAt)(array, 1, (CMPIValue*)&text, CMPI_string));
  isTextData(c, "chars", SLOT(getElementAt)(array, 0, NULL));
  isTextData(c, "object", SLOT(getElementAt)(array, 1, NULL));
  copy = SLOT(clone)(array, NULL);
  accepts(c, SLOT(setElementAt)(array, 0, NULL, CMPI_null));
  accepts(c, SLOT(setElementAt)(array, 1, NULL, CMPI_chars));
  isNullData(c, CMPI_string, SLOT(getElementAt)(array, 0, NULL));
  isNullData(c, CMPI_string, SLOT(getElementAt)(array, 1, NULL));
  isTextData(c, "object", SLOT(getElementAt)(copy, 1, NULL));
  isNumber(c, "CMPI_chars as an element type", CMPI_string, SLOT(getSimpleType)(array, NULL));
  SLOT(release)(copy);
}

static void checkBadElements(Checks* c, const CMPIArray* array) {
  const CMPIArrayFT* ft = array->ft;
  const CMPIUint32 number = 1;
  const CMPIString* foreign = foreignHandle();
  with(c, "an index past the end");
  isNoData(c, SLOT(getElementAt)(array, 2, fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  isNoData(c, SLOT(getElementAt)(array, 0xFFFFFFFFU, NULL));
  refuses(c, CMPI_RC_ERR_NO_SUCH_PROPERTY,
          SLOT(setElementAt)(array, 2, (const CMPIValue*)"x", CMPI_chars));
  with(c, "a value of another type");
  refuses(c, CMPI_RC_ERR_TYPE_MISMATCH,
          SLOT(setElementAt)(array, 0, (const CMPIValue*)&number, CMPI_uint32));
  refuses(c, CMPI_RC_ERR_TYPE_MISMATCH,
          SLOT(setElementAt)(array, 0, (CMPIValue*)&array, CMPI_stringA));
  with(c, "a type code of none");
  refuses(c, CMPI_RC_ERR_INVALID_DATA_TYPE,
          SLOT(setElementAt)(array, 0, (const CMPIValue*)&number, 0x0777));
  with(c, "a foreign string");
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(setElementAt)(array, 0, (const CMPIValue*)&foreign, CMPI_string));
  with(c, "");
}

void checkArrays(Checks* c) {
  CMPIArray* array = CMNewArray(c->broker, 2, CMPI_chars, NULL);
  const CMPIArray* empty = CMNewArray(c->broker, 0, CMPI_uint8, NULL);
  const CMPIArrayFT* ft = array->ft;
  checkTypes(c);
  checkStringElements(c, array);
  checkBadElements(c, array);
  isNumber(c, "the size of an empty array", 0, SLOT(getSize)(empty, fresh(c)));
  accepted(c);
  isNoData(c, SLOT(getElementAt)(empty, 0, fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  CHECK_LIFE(c, CMPIArray, array);
  EACH_BAD_HANDLE(c, CMPIArray, array, refuse);
}
