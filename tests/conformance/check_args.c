#include <stdlib.h>

#include "groups.h"

#define SLOT(name) CALL(c, CMPIArgsFT, ft, name)

static void refuse(Checks* c, const CMPIArgsFT* ft, const CMPIArgs* bad) {
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(addArg)(bad, "A", (const CMPIValue*)"text", CMPI_chars));
  isNoData(c, SLOT(getArg)(bad, "A", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNoData(c, SLOT(getArg)(bad, "A", NULL));
  isNoData(c, SLOT(getArgAt)(bad, 0, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNoData(c, SLOT(getArgAt)(bad, 0, NULL, NULL));
  isNumber(c, "the count", 0, SLOT(getArgCount)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the count", 0, SLOT(getArgCount)(bad, NULL));
}

static void checkSamples(Checks* c, const CMPIArgs* args) {
  const CMPIArgsFT* ft = args->ft;
  unsigned at;
  for (at = 0; at < kSampleCount; ++at) {
    const Sample* sample = &kSamples[at];
    CMPIValue* value = tightCopy(sample);
    CMPIString* name = NULL;
    with(c, sample->property);
    accepts(c, SLOT(addArg)(args, sample->property, value, sample->type));
    free(value);
    isSample(c, sample, SLOT(getArg)(args, sample->property, fresh(c)));
    accepted(c);
    isSample(c, sample, SLOT(getArgAt)(args, at, &name, fresh(c)));
    accepted(c);
    isText(c, "the name", sample->property, name);
    isNumber(c, "the count", at + 1, SLOT(getArgCount)(args, fresh(c)));
    accepted(c);
  }
  with(c, "");
}

/* Objects are copied into the arguments, and come back as objects. */
static void checkObjects(Checks* c, const CMPIArgs* args) {
  const CMPIArgsFT* ft = args->ft;
  CMPIObjectPath* path = CMNewObjectPath(c->broker, "root/cimv2", "CONF_Other", NULL);
  CMPIArray* array = CMNewArray(c->broker, 1, CMPI_uint16, NULL);
  CMPIInstance* instance;
  CMPIData data;
  CMAddKey(path, "Name", "x", CMPI_chars);
  instance = CMNewInstance(c->broker, path, NULL);
  accepts(c, SLOT(addArg)(args, "Ref", (CMPIValue*)&path, CMPI_ref));
  accepts(c, SLOT(addArg)(args, "Inst", (CMPIValue*)&instance, CMPI_instance));
  accepts(c, SLOT(addArg)(args, "Array", (CMPIValue*)&array, CMPI_uint16A));
  CMSetClassName(path, "CONF_Changed");
  data = SLOT(getArg)(args, "ref", NULL);
  isNumber(c, "the type", CMPI_ref, data.type);
  if (data.type == CMPI_ref) {
    isText(c, "the class", "CONF_Other", CMGetClassName(data.value.ref, NULL));
  }
  data = SLOT(getArg)(args, "INST", NULL);
  isNumber(c, "the type", CMPI_instance, data.type);
  if (data.type == CMPI_instance) {
    isTextData(c, "x", CMGetProperty(data.value.inst, "Name", NULL));
  }
  data = SLOT(getArg)(args, "Array", NULL);
  isNumber(c, "the type", CMPI_uint16A, data.type);
  if (data.type == CMPI_uint16A) {
    isNumber(c, "the size", 1, CMGetArrayCount(data.value.array, NULL));
  }
}

static void checkBadArguments(Checks* c, const CMPIArgs* args) {
  const CMPIArgsFT* ft = args->ft;
  const CMPIObjectPath* foreign = foreignHandle();
  const CMPICount count = SLOT(getArgCount)(args, NULL);
  with(c, "a null name");
  refuses(c, CMPI_RC_ERR_INVALID_PARAMETER,
          SLOT(addArg)(args, NULL, (const CMPIValue*)"x", CMPI_chars));
  isNoData(c, SLOT(getArg)(args, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  isNoData(c, SLOT(getArg)(args, NULL, NULL));
  with(c, "an unknown name");
  isNoData(c, SLOT(getArg)(args, "Nowhere", fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  with(c, "an index past the end");
  isNoData(c, SLOT(getArgAt)(args, count, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  with(c, "a type code of none");
  refuses(c, CMPI_RC_ERR_INVALID_DATA_TYPE, SLOT(addArg)(args, "X", (const CMPIValue*)"x", 0x0777));
  with(c, "a foreign path");
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(addArg)(args, "X", (const CMPIValue*)&foreign, CMPI_ref));
  with(c, "");
  isNumber(c, "the count after refusals", count, SLOT(getArgCount)(args, NULL));
}

void checkArgs(Checks* c) {
  CMPIArgs* args = CMNewArgs(c->broker, NULL);
  CMPIArgs* copy = CMClone(args, NULL);
  const CMPIArgsFT* ft = args->ft;
  checkSamples(c, args);
  checkObjects(c, args);
  checkBadArguments(c, args);
  accepts(c, SLOT(addArg)(args, "bool", (const CMPIValue*)"replaced", CMPI_chars));
  isTextData(c, "replaced", SLOT(getArg)(args, "BOOL", NULL));
  accepts(c, SLOT(addArg)(args, "Null", NULL, CMPI_uint32));
  isNullData(c, CMPI_uint32, SLOT(getArg)(args, "Null", fresh(c)));
  accepted(c);
  isNumber(c, "the count of an earlier clone", 0, SLOT(getArgCount)(copy, NULL));
  SLOT(release)(copy);
  CHECK_LIFE(c, CMPIArgs, args);
  EACH_BAD_HANDLE(c, CMPIArgs, args, refuse);
}
