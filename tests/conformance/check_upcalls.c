#include "groups.h"

/* Instances, methods and indications through the broker. */
#define SLOT(name) CALL(c, CMPIBrokerFT, ft, name)

static CMPIObjectPath* itemPath(Checks* c, const char* name) {
  CMPIObjectPath* path = CMNewObjectPath(c->broker, "root/cimv2", ITEM_CLASS, NULL);
  if (name != NULL) CMAddKey(path, "Name", name, CMPI_chars);
  return path;
}

static void checkReading(Checks* c) {
  const CMPIBrokerFT* ft = c->broker->bft;
  const char* names[] = {"U16", NULL};
  const CMPIEnumeration* items =
      SLOT(enumerateInstances)(c->broker, c->context, itemPath(c, NULL), names, fresh(c));
  const CMPIInstance* item;
  accepted(c);
  if (items != NULL) {
    item = CMGetNext(items, NULL).value.inst;
    isNumberData(c, CMPI_uint16, 1, CMGetProperty(item, "U16", NULL));
    isNoData(c, CMGetProperty(item, "U32", NULL));
  }
  items = SLOT(enumerateInstanceNames)(c->broker, c->context, itemPath(c, NULL), fresh(c));
  accepted(c);
  isNumber(c, "the number of names", 2, CMGetArrayCount(CMToArray(items, NULL), NULL));
  item = SLOT(getInstance)(c->broker, c->context, itemPath(c, "two"), NULL, fresh(c));
  accepted(c);
  if (item != NULL) isNumberData(c, CMPI_uint32, 5, CMGetProperty(item, "U32", NULL));
  with(c, "an instance that is not there");
  isNothing(c, SLOT(getInstance)(c->broker, c->context, itemPath(c, "nowhere"), NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_NOT_FOUND);
  with(c, "a class with no instances");
  items = SLOT(enumerateInstances)(c->broker, c->context,
                                   CMNewObjectPath(c->broker, "root/cimv2", "CONF_Lonely", NULL),
                                   NULL, fresh(c));
  accepted(c);
  isTrue(c, "there is an empty enumeration", items != NULL && CMHasNext(items, NULL) == 0);
  with(c, "");
}

static void checkChanging(Checks* c) {
  const CMPIBrokerFT* ft = c->broker->bft;
  const char* names[] = {"U16", NULL};
  const CMPIUint16 nine = 9;
  CMPIInstance* item = CMNewInstance(c->broker, itemPath(c, "three"), NULL);
  const CMPIObjectPath* made =
      SLOT(createInstance)(c->broker, c->context, itemPath(c, NULL), item, fresh(c));
  accepted(c);
  if (made != NULL) isTextData(c, "three", CMGetKey(made, "Name", NULL));
  CMSetProperty(item, "U16", &nine, CMPI_uint16);
  accepts(c, SLOT(modifyInstance)(c->broker, c->context, itemPath(c, "one"), item, names));
  accepts(c, SLOT(deleteInstance)(c->broker, c->context, itemPath(c, "one")));
  with(c, "what the provider refuses");
  refuses(c, CMPI_RC_ERR_INVALID_PARAMETER,
          SLOT(modifyInstance)(c->broker, c->context, itemPath(c, "one"), item, NULL));
  refuses(c, CMPI_RC_ERR_NOT_FOUND,
          SLOT(deleteInstance)(c->broker, c->context, itemPath(c, "nowhere")));
  with(c, "a bad instance");
  isNothing(c, SLOT(createInstance)(c->broker, c->context, itemPath(c, NULL), NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(modifyInstance)(c->broker, c->context, itemPath(c, "one"), foreignHandle(), names));
  with(c, "");
}

static void checkQuery(Checks* c) {
  const CMPIBrokerFT* ft = c->broker->bft;
  const CMPIEnumeration* found = SLOT(execQuery)(c->broker, c->context, itemPath(c, NULL),
                                                 "SELECT * FROM " ITEM_CLASS, "WQL", fresh(c));
  accepted(c);
  isTrue(c, "there is an answer", found != NULL && CMHasNext(found, NULL) == 1);
  found = SLOT(execQuery)(c->broker, c->context, itemPath(c, NULL),
                          "SELECT * FROM " ITEM_CLASS " WHERE U16 = 2", "WQL", fresh(c));
  accepted(c);
  isNumber(c, "the number of items that fit", 1, CMGetArrayCount(CMToArray(found, NULL), NULL));
  with(c, "a bad query");
  isNothing(c, SLOT(execQuery)(c->broker, c->context, itemPath(c, NULL),
                               "SELECT * FROM " ITEM_CLASS " WHERE", "WQL", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_QUERY);
  with(c, "a null query");
  isNothing(c, SLOT(execQuery)(c->broker, c->context, itemPath(c, NULL), NULL, "WQL", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  with(c, "");
}

static void checkMethod(Checks* c) {
  const CMPIBrokerFT* ft = c->broker->bft;
  const CMPIObjectPath* one = itemPath(c, "one");
  const CMPIUint32 rounds = 2;
  CMPIArgs* in = CMNewArgs(c->broker, NULL);
  CMPIArgs* out = CMNewArgs(c->broker, NULL);
  CMAddArg(in, "Rounds", &rounds, CMPI_uint32);
  isNumberData(c, CMPI_uint32, 4,
               SLOT(invokeMethod)(c->broker, c->context, one, "Turn", in, out, fresh(c)));
  accepted(c);
  isTextData(c, "turned", CMGetArg(out, "Answer", NULL));
  with(c, "no arguments");
  isNumberData(c, CMPI_uint32, 0,
               SLOT(invokeMethod)(c->broker, c->context, one, "turn", NULL, NULL, fresh(c)));
  accepted(c);
  with(c, "an unknown method");
  isNoData(c, SLOT(invokeMethod)(c->broker, c->context, one, "Nowhere", in, out, fresh(c)));
  refused(c, CMPI_RC_ERR_METHOD_NOT_FOUND);
  with(c, "a null method");
  isNoData(c, SLOT(invokeMethod)(c->broker, c->context, one, NULL, in, out, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  with(c, "bad arguments");
  isNoData(c,
           SLOT(invokeMethod)(c->broker, c->context, one, "Turn", foreignHandle(), out, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNoData(c, SLOT(invokeMethod)(c->broker, c->context, one, "Turn", in,
                                 (CMPIArgs*)(void*)itemPath(c, NULL), fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  with(c, "");
}

static void checkIndications(Checks* c) {
  const CMPIBrokerFT* ft = c->broker->bft;
  const CMPIInstance* item = CMNewInstance(c->broker, itemPath(c, "one"), NULL);
  accepts(c, SLOT(deliverIndication)(c->broker, c->context, "root/cimv2", item));
  accepts(c, SLOT(deliverIndication)(c->broker, c->context, NULL, item));
  with(c, "bad arguments");
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(deliverIndication)(c->broker, c->context, "root", NULL));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(deliverIndication)(c->broker, foreignHandle(), "root", item));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(deliverIndication)(NULL, c->context, "root", item));
  with(c, "");
}

void checkUpcalls(Checks* c) {
  checkReading(c);
  checkChanging(c);
  checkQuery(c);
  checkMethod(c);
  checkIndications(c);
}
