#include "groups.h"

#define SLOT(name) CALL(c, CMPIInstanceFT, ft, name)

static void refuse(Checks* c, const CMPIInstanceFT* ft, const CMPIInstance* bad) {
  isNoData(c, SLOT(getProperty)(bad, "Name", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNoData(c, SLOT(getProperty)(bad, "Name", NULL));
  isNoData(c, SLOT(getPropertyAt)(bad, 0, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNoData(c, SLOT(getPropertyAt)(bad, 0, NULL, NULL));
  isNumber(c, "the count", 0, SLOT(getPropertyCount)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the count", 0, SLOT(getPropertyCount)(bad, NULL));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(setProperty)(bad, "Name", (const CMPIValue*)"x", CMPI_chars));
  isNothing(c, SLOT(getObjectPath)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(getObjectPath)(bad, NULL));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setPropertyFilter)(bad, NULL, NULL));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setObjectPath)(bad, c->target));
#if CMPI_VERSION >= 200
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(setPropertyWithOrigin)(bad, "Name", (const CMPIValue*)"x", CMPI_chars, NULL));
#endif
}

static CMPIInstance* newThing(Checks* c, const char* className, const char* name) {
  CMPIObjectPath* path = CMNewObjectPath(c->broker, "root/cimv2", className, NULL);
  if (name != NULL) CMAddKey(path, "Name", name, CMPI_chars);
  return CMNewInstance(c->broker, path, NULL);
}

/* Keys become properties, and properties that are keys become part of the path. */
static void checkKeys(Checks* c) {
  CMPIInstance* keyed = newThing(c, "CONF_Thing", "one");
  CMPIInstance* keyless = newThing(c, "CONF_Thing", NULL);
  CMPIObjectPath* other = CMNewObjectPath(c->broker, "root/other", "CONF_Thing", NULL);
  const CMPIInstanceFT* ft = keyed->ft;
  CMPIObjectPath* path;
  isTextData(c, "one", SLOT(getProperty)(keyed, "Name", fresh(c)));
  accepted(c);
  with(c, "a key that was set as a property");
  accepts(c, SLOT(setProperty)(keyless, "Name", (const CMPIValue*)"two", CMPI_chars));
  path = SLOT(getObjectPath)(keyless, fresh(c));
  accepted(c);
  isTextData(c, "two", CMGetKey(path, "Name", NULL));
  isText(c, "the namespace", "root/cimv2", CMGetNameSpace(path, NULL));
  isText(c, "the class", "CONF_Thing", CMGetClassName(path, NULL));
  with(c, "a path of its own");
  CMAddKey(other, "Name", "three", CMPI_chars);
  accepts(c, SLOT(setObjectPath)(keyless, other));
  path = SLOT(getObjectPath)(keyless, NULL);
  isTextData(c, "three", CMGetKey(path, "Name", NULL));
  isText(c, "the namespace", "root/other", CMGetNameSpace(path, NULL));
  with(c, "a bad path");
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setObjectPath)(keyless, NULL));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setObjectPath)(keyless, foreignHandle()));
  with(c, "");
}

static void checkFilter(Checks* c) {
  const char* names[] = {"U16", NULL};
  const char* keys[] = {"Id", NULL};
  const char* none[] = {NULL};
  const CMPIUint16 number = 7;
  CMPIInstance* thing = newThing(c, "CONF_Thing", "one");
  CMPIInstance* unknown = newThing(c, "CONF_Undeclared", NULL);
  const CMPIInstanceFT* ft = thing->ft;
  SLOT(setProperty)(thing, "Text", (const CMPIValue*)"before", CMPI_chars);
  accepts(c, SLOT(setPropertyFilter)(thing, names, NULL));
  with(c, "a property that is filtered out");
  accepts(c, SLOT(setProperty)(thing, "U32", (const CMPIValue*)&number, CMPI_uint16));
  isNoData(c, SLOT(getProperty)(thing, "U32", fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  isNoData(c, SLOT(getProperty)(thing, "Text", NULL));
  with(c, "a property that passes");
  accepts(c, SLOT(setProperty)(thing, "U16", (const CMPIValue*)&number, CMPI_uint16));
  isNumberData(c, CMPI_uint16, 7, SLOT(getProperty)(thing, "u16", NULL));
  isTextData(c, "one", SLOT(getProperty)(thing, "Name", NULL));
  isNumber(c, "the count", 2, SLOT(getPropertyCount)(thing, NULL));
  with(c, "an empty filter");
  accepts(c, SLOT(setPropertyFilter)(thing, none, NULL));
  isNumber(c, "the count", 1, SLOT(getPropertyCount)(thing, NULL));
  with(c, "keys in a filter");
  accepts(c, SLOT(setPropertyFilter)(unknown, none, keys));
  accepts(c, SLOT(setProperty)(unknown, "Id", (const CMPIValue*)&number, CMPI_uint16));
  isNumberData(c, CMPI_uint16, 7, CMGetKey(SLOT(getObjectPath)(unknown, NULL), "Id", NULL));
  with(c, "");
}

static void checkPositions(Checks* c) {
  CMPIInstance* thing = newThing(c, "CONF_Undeclared", "one");
  const CMPIInstanceFT* ft = thing->ft;
  CMPIString* name = NULL;
  isNumber(c, "the count", 1, SLOT(getPropertyCount)(thing, fresh(c)));
  accepted(c);
  isTextData(c, "one", SLOT(getPropertyAt)(thing, 0, &name, fresh(c)));
  accepted(c);
  isText(c, "the name", "Name", name);
  isTextData(c, "one", SLOT(getPropertyAt)(thing, 0, NULL, NULL));
  with(c, "an index past the end");
  isNoData(c, SLOT(getPropertyAt)(thing, 1, &name, fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  with(c, "an unknown name");
  isNoData(c, SLOT(getProperty)(thing, "Nowhere", fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  with(c, "a null name");
  isNoData(c, SLOT(getProperty)(thing, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  refuses(c, CMPI_RC_ERR_INVALID_PARAMETER,
          SLOT(setProperty)(thing, NULL, (const CMPIValue*)"x", CMPI_chars));
#if CMPI_VERSION >= 200
  refuses(
      c, CMPI_RC_ERR_INVALID_PARAMETER,
      SLOT(setPropertyWithOrigin)(thing, NULL, (const CMPIValue*)"x", CMPI_chars, "CONF_Thing"));
  with(c, "an origin, or none");
  accepts(c, SLOT(setPropertyWithOrigin)(thing, "Colour", (const CMPIValue*)"red", CMPI_chars,
                                         "CONF_Thing"));
  accepts(c,
          SLOT(setPropertyWithOrigin)(thing, "Shape", (const CMPIValue*)"flat", CMPI_chars, NULL));
  isTextData(c, "red", SLOT(getProperty)(thing, "Colour", NULL));
#endif
  with(c, "");
}

void checkInstances(Checks* c) {
  CMPIInstance* thing = newThing(c, "CONF_Thing", "one");
  CMPIInstance* copy = CMClone(thing, NULL);
  checkKeys(c);
  checkFilter(c);
  checkPositions(c);
  CMSetProperty(thing, "Text", "changed", CMPI_chars);
  isNullData(c, CMPI_string, CMGetProperty(copy, "Text", NULL));
  CMRelease(copy);
  CHECK_LIFE(c, CMPIInstance, thing);
  EACH_BAD_HANDLE(c, CMPIInstance, thing, refuse);
}
