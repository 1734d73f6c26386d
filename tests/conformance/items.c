#include "items.h"

#include <string.h>

#include "groups.h"

static const char* const kNames[] = {"one", "two"};

const char* textOf(const CMPIString* text) {
  return text == NULL ? "" : text->ft->getCharPtr(text, NULL);
}

static const char* nameIn(const CMPIObjectPath* path) {
  const CMPIData key = CMGetKey(path, "Name", NULL);
  return key.type == CMPI_string && !CMIsNullValue(key) ? textOf(key.value.string) : "";
}

int itemOf(const CMPIObjectPath* path) {
  int at;
  for (at = 0; at < 2; ++at) {
    if (strcmp(nameIn(path), kNames[at]) == 0) return at;
  }
  return -1;
}

CMPIObjectPath* pathOf(int item) {
  CMPIObjectPath* path = CMNewObjectPath(conformanceBroker, "root/cimv2", ITEM_CLASS, NULL);
  CMAddKey(path, "Name", kNames[item], CMPI_chars);
  return path;
}

CMPIInstance* instanceOf(int item) {
  CMPIInstance* instance = CMNewInstance(conformanceBroker, pathOf(item), NULL);
  const CMPIUint16 number = (CMPIUint16)(item + 1);
  const CMPIUint32 five = 5;
  CMSetProperty(instance, "U16", &number, CMPI_uint16);
  CMSetProperty(instance, "U32", &five, CMPI_uint32);
  return instance;
}

CMPIStatus itemsDone(const CMPIResult* result) {
  CMReturnDone(result);
  CMReturn(CMPI_RC_OK);
}
