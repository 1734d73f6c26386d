#include "groups.h"

#define SLOT(name) CALL(c, CMPIEnumerationFT, ft, name)

static void refuse(Checks* c, const CMPIEnumerationFT* ft, const CMPIEnumeration* bad) {
  isNoData(c, SLOT(getNext)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the answer", 0, SLOT(hasNext)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(toArray)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNoData(c, SLOT(getNext)(bad, NULL));
  isNumber(c, "the answer", 0, SLOT(hasNext)(bad, NULL));
  isNothing(c, SLOT(toArray)(bad, NULL));
}

/* Walks the two items; those of an earlier step stay as they are. */
static void checkWalk(Checks* c, const CMPIEnumeration* items, CMPIType type) {
  const CMPIEnumerationFT* ft = items->ft;
  const CMPIData first = SLOT(getNext)(items, fresh(c));
  CMPIData second;
  accepted(c);
  isNumber(c, "whether there is a second one", 1, SLOT(hasNext)(items, fresh(c)));
  accepted(c);
  second = SLOT(getNext)(items, fresh(c));
  accepted(c);
  isNumber(c, "the type", type, first.type);
  isNumber(c, "the type", type, second.type);
  if (first.type == CMPI_instance) {
    isTextData(c, "one", CMGetProperty(first.value.inst, "Name", NULL));
  } else {
    isTextData(c, "one", CMGetKey(first.value.ref, "Name", NULL));
  }
  with(c, "the end");
  isNumber(c, "whether there is a third one", 0, SLOT(hasNext)(items, fresh(c)));
  accepted(c);
  isNoData(c, SLOT(getNext)(items, fresh(c)));
  refused(c, CMPI_RC_NO_MORE_ELEMENTS);
  isNoData(c, SLOT(getNext)(items, NULL));
  with(c, "");
}

static void checkArray(Checks* c, const CMPIEnumeration* items, CMPIType type) {
  const CMPIEnumerationFT* ft = items->ft;
  const CMPIArray* array = SLOT(toArray)(items, fresh(c));
  accepted(c);
  isNumber(c, "the size", 2, CMGetArrayCount(array, NULL));
  isNumber(c, "the type", type, CMGetArrayType(array, NULL));
  isNumber(c, "the type", type, CMGetArrayElementAt(array, 1, NULL).type);
}

void checkEnumerations(Checks* c) {
  const CMPIObjectPath* path = CMNewObjectPath(c->broker, "root/cimv2", ITEM_CLASS, NULL);
  CMPIEnumeration* items = CBEnumInstances(c->broker, c->context, path, NULL, NULL);
  CMPIEnumeration* names = CBEnumInstanceNames(c->broker, c->context, path, NULL);
  CMPIEnumeration* copy;
  with(c, "");
  isTrue(c, "the enumerations are made", items != NULL && names != NULL);
  if (items == NULL || names == NULL) return;
  copy = CMClone(items, NULL);
  checkArray(c, items, CMPI_instance);
  checkArray(c, names, CMPI_ref);
  checkWalk(c, items, CMPI_instance);
  checkWalk(c, names, CMPI_ref);
  with(c, "a clone, which has a place of its own");
  checkWalk(c, copy, CMPI_instance);
  CMRelease(copy);
  CHECK_LIFE(c, CMPIEnumeration, items);
  EACH_BAD_HANDLE(c, CMPIEnumeration, items, refuse);
}
