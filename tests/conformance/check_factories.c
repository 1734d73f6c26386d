#include <string.h>

#include "groups.h"

/* Making objects, and questions about any object. */
#define SLOT(name) CALL(c, CMPIBrokerEncFT, ft, name)

/* Every factory with a broker that is none. */
static void refuseBroker(Checks* c, const CMPIBrokerEncFT* ft, const CMPIBroker* bad) {
  const CMPIObjectPath* path = c->target;
  isNothing(c, SLOT(newInstance)(bad, path, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(newObjectPath)(bad, "root", "X", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(newArgs)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(newString)(bad, "x", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(newArray)(bad, 1, CMPI_uint8, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(newDateTime)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(newDateTimeFromBinary)(bad, 0, 0, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(newDateTimeFromChars)(bad, "20240101000000.000000+000", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the answer", 0, SLOT(classPathIsA)(bad, path, "CONF_Thing", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(toString)(bad, path, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(getType)(bad, path, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the answer", 0, SLOT(isOfType)(bad, path, "CMPIObjectPath", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(newString)(bad, "x", NULL));
}

/* Questions about an object that is none. */
static void refuseObject(Checks* c, const CMPIBrokerEncFT* ft, const void* bad) {
  isNothing(c, SLOT(newInstance)(c->broker, bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the answer", 0, SLOT(classPathIsA)(c->broker, bad, "CONF_Thing", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(toString)(c->broker, bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(getType)(c->broker, bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the answer", 0, SLOT(isOfType)(c->broker, bad, "CMPIString", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
}

static void checkMaking(Checks* c) {
  const CMPIBrokerEncFT* ft = c->broker->eft;
  const CMPIObjectPath* classless = SLOT(newObjectPath)(c->broker, NULL, NULL, fresh(c));
  accepted(c);
  isNothing(c, SLOT(newInstance)(c->broker, classless, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_CLASS);
  isTrue(c, "an instance is made", SLOT(newInstance)(c->broker, c->target, fresh(c)) != NULL);
  accepted(c);
  isTrue(c, "arguments are made", SLOT(newArgs)(c->broker, fresh(c)) != NULL);
  accepted(c);
  isText(c, "the string", "x", SLOT(newString)(c->broker, "x", fresh(c)));
  accepted(c);
  isText(c, "the string of no text", "", SLOT(newString)(c->broker, NULL, fresh(c)));
  accepted(c);
  isText(c, "a string that was no UTF-8", "\xC3\xBC", SLOT(newString)(c->broker, "\xFC", NULL));
  isTrue(c, "the time is made", SLOT(newDateTime)(c->broker, fresh(c)) != NULL);
  accepted(c);
  isTrue(c, "the array is made", SLOT(newArray)(c->broker, 0, CMPI_string, fresh(c)) != NULL);
  accepted(c);
  with(c, "an array of no type");
  isTrue(c, "the array is made", SLOT(newArray)(c->broker, 1, CMPI_null, fresh(c)) != NULL);
  accepted(c);
  with(c, "an array of arrays, or of what is no value");
  isNothing(c, SLOT(newArray)(c->broker, 1, CMPI_uint8A, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_DATA_TYPE);
  isNothing(c, SLOT(newArray)(c->broker, 1, CMPI_ptr, NULL));
  with(c, "an enormous array");
  isNothing(c, SLOT(newArray)(c->broker, 0xFFFFFFFFU, CMPI_uint8, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  with(c, "");
}

static CMPIBoolean isA(Checks* c, const char* className, const char* ancestor) {
  const CMPIBrokerEncFT* ft = c->broker->eft;
  const CMPIObjectPath* path = CMNewObjectPath(c->broker, "root/cimv2", className, NULL);
  return SLOT(classPathIsA)(c->broker, path, ancestor, fresh(c));
}

static void checkClassQuestions(Checks* c) {
  isNumber(c, "a class and itself", 1, isA(c, "CONF_Thing", "conf_THING"));
  accepted(c);
  isNumber(c, "a class and its ancestor", 1, isA(c, ITEM_CLASS, "CONF_Base"));
  accepted(c);
  isNumber(c, "a class and its descendant", 0, isA(c, "CONF_Base", "CONF_Thing"));
  accepted(c);
  with(c, "a class that nobody declared");
  isNumber(c, "the answer", 0, isA(c, "CONF_Undeclared", "CONF_Thing"));
  refused(c, CMPI_RC_ERR_INVALID_CLASS);
  isNumber(c, "the answer", 0, isA(c, "CONF_Thing", "CONF_Undeclared"));
  refused(c, CMPI_RC_ERR_INVALID_CLASS);
  with(c, "a null class");
  isNumber(c, "the answer", 0, isA(c, "CONF_Thing", NULL));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  with(c, "");
}

static void checkTypes(Checks* c) {
  const CMPIBrokerEncFT* ft = c->broker->eft;
  const struct {
    const char* type;
    const void* object;
  } objects[] = {{"CMPIString", CMNewString(c->broker, "x", NULL)},
                 {"CMPIArgs", CMNewArgs(c->broker, NULL)},
                 {"CMPIArray", CMNewArray(c->broker, 1, CMPI_uint8, NULL)},
                 {"CMPIDateTime", CMNewDateTime(c->broker, NULL)},
                 {"CMPIInstance", CMNewInstance(c->broker, c->target, NULL)},
                 {"CMPIObjectPath", c->target},
                 {"CMPIContext", c->context}};
  unsigned at;
  for (at = 0; at < sizeof objects / sizeof *objects; ++at) {
    with(c, objects[at].type);
    isText(c, "the type", objects[at].type, SLOT(getType)(c->broker, objects[at].object, fresh(c)));
    accepted(c);
    isNumber(c, "its own type", 1,
             SLOT(isOfType)(c->broker, objects[at].object, objects[at].type, fresh(c)));
    accepted(c);
    isNumber(c, "another type", 0,
             SLOT(isOfType)(c->broker, objects[at].object, "CMPIResult", fresh(c)));
    accepted(c);
    isTrue(c, "there is a text", SLOT(toString)(c->broker, objects[at].object, fresh(c)) != NULL);
    accepted(c);
  }
  with(c, "a null type");
  isNumber(c, "the answer", 0, SLOT(isOfType)(c->broker, c->target, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  with(c, "");
}

void checkFactories(Checks* c) {
  const CMPIBrokerEncFT* ft = c->broker->eft;
  isTrue(c, "the tables are of this edition or a later one",
         ft->ftVersion >= CMPICurrentVersion &&
             c->broker->bft->brokerVersion >= CMPICurrentVersion &&
             c->broker->xft->ftVersion >= CMPICurrentVersion);
  isTrue(c, "the broker has a name", *c->broker->bft->brokerName != '\0');
  checkMaking(c);
  checkClassQuestions(c);
  checkTypes(c);
  with(c, "a bad broker");
  refuseBroker(c, ft, NULL);
  refuseBroker(c, ft, foreignHandle());
  refuseBroker(c, ft, (const CMPIBroker*)(const void*)c->target);
  with(c, "a bad object");
  refuseObject(c, ft, NULL);
  refuseObject(c, ft, foreignHandle());
  refuseObject(c, ft, (const char*)(const void*)c->target + 8);
  with(c, "");
}
