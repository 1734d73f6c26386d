/* Providers of every edition, whose tables end with the last slot of their edition, at the end of
   the readable memory: whoever reads on is killed. */
#include <stddef.h>
#include <string.h>

#define CMPI_VERSION 210
#include "cmpi/cmpi.h"
#include "guarded_pages.h"

static int cleanups;
static int indicationCalls;

CMPI_EXTERN_C int cleanupsOfEditions(void);
int cleanupsOfEditions(void) { return cleanups; }
CMPI_EXTERN_C int indicationCallsOfEditions(void);
int indicationCallsOfEditions(void) { return indicationCalls; }

static const CMPIStatus ok = {CMPI_RC_OK, NULL};

static CMPIStatus cleanUp(void) {
  cleanups++;
  return ok;
}

#define CLEANUP(kind)                                                         \
  static CMPIStatus cleanUp##kind(CMPI##kind##MI* mi, const CMPIContext* ctx, \
                                  CMPIBoolean terminating) {                  \
    (void)mi, (void)ctx, (void)terminating;                                   \
    return cleanUp();                                                         \
  }
CLEANUP(Instance)
CLEANUP(Association)
CLEANUP(Method)
CLEANUP(Property)
CLEANUP(Indication)

static CMPIStatus enumerateNames(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                 const CMPIResult* result, const CMPIObjectPath* path) {
  (void)mi, (void)ctx, (void)path;
  return CMReturnDone(result);
}

static CMPIStatus enumerate(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                            const CMPIObjectPath* path, const char** props) {
  (void)mi, (void)ctx, (void)path, (void)props;
  return CMReturnDone(result);
}

static CMPIStatus create(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                         const CMPIObjectPath* path, const CMPIInstance* inst) {
  (void)mi, (void)ctx, (void)result, (void)path, (void)inst;
  return ok;
}

static CMPIStatus modify(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                         const CMPIObjectPath* path, const CMPIInstance* inst, const char** props) {
  (void)mi, (void)ctx, (void)result, (void)path, (void)inst, (void)props;
  return ok;
}

static CMPIStatus query(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                        const CMPIObjectPath* path, const char* text, const char* language) {
  (void)mi, (void)ctx, (void)result, (void)path, (void)text, (void)language;
  return ok;
}

static CMPIStatus associate(CMPIAssociationMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                            const CMPIObjectPath* path, const char* assocClass,
                            const char* resultClass, const char* role, const char* resultRole,
                            const char** props) {
  (void)mi, (void)ctx, (void)result, (void)path, (void)assocClass, (void)resultClass, (void)role,
      (void)resultRole, (void)props;
  return ok;
}

static CMPIStatus associateNames(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                 const CMPIResult* result, const CMPIObjectPath* path,
                                 const char* assocClass, const char* resultClass, const char* role,
                                 const char* resultRole) {
  return associate(mi, ctx, result, path, assocClass, resultClass, role, resultRole, NULL);
}

static CMPIStatus refer(CMPIAssociationMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                        const CMPIObjectPath* path, const char* resultClass, const char* role,
                        const char** props) {
  return associate(mi, ctx, result, path, NULL, resultClass, role, NULL, props);
}

static CMPIStatus referNames(CMPIAssociationMI* mi, const CMPIContext* ctx,
                             const CMPIResult* result, const CMPIObjectPath* path,
                             const char* resultClass, const char* role) {
  return associate(mi, ctx, result, path, NULL, resultClass, role, NULL, NULL);
}

static CMPIStatus invoke(CMPIMethodMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                         const CMPIObjectPath* path, const char* method, const CMPIArgs* in,
                         CMPIArgs* out) {
  (void)mi, (void)ctx, (void)result, (void)path, (void)method, (void)in, (void)out;
  return ok;
}

static CMPIStatus setProperty(CMPIPropertyMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                              const CMPIObjectPath* path, const char* name, const CMPIData data) {
  (void)mi, (void)ctx, (void)result, (void)path, (void)name, (void)data;
  return ok;
}

static CMPIStatus getProperty(CMPIPropertyMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                              const CMPIObjectPath* path, const char* name) {
  const CMPIUint16 speed = 1;
  (void)mi, (void)ctx, (void)path, (void)name;
  return CMReturnData(result, &speed, CMPI_uint16);
}

static CMPIStatus setWithOrigin(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                const CMPIResult* result, CMPIObjectPath* path, const char* name,
                                const CMPIData data, const char* origin) {
  (void)mi, (void)ctx, (void)result, (void)path, (void)name, (void)data;
  return origin == NULL ? ok : (CMPIStatus){CMPI_RC_ERR_FAILED, NULL};
}

static CMPIStatus switchIndications(CMPIIndicationMI* mi, const CMPIContext* ctx) {
  (void)mi, (void)ctx;
  indicationCalls++;
  return ok;
}

static CMPIInstanceMIFT instanceTable = {
    0,         0,      "instances", cleanUpInstance, enumerateNames, enumerate,
    enumerate, create, modify,      enumerateNames,  query,          NULL};
static CMPIAssociationMIFT associationTable = {
    0,    0,   "associations", cleanUpAssociation, associate, associateNames, refer, referNames,
    NULL, NULL};
static CMPIMethodMIFT methodTable = {0, 0, "methods", cleanUpMethod, invoke};
static CMPIPropertyMIFT propertyTable = {0,           0,           "properties", cleanUpProperty,
                                         setProperty, getProperty, setWithOrigin};
static CMPIIndicationMIFT indicationTable = {.miName = "indications",
                                             .cleanup = cleanUpIndication,
                                             .enableIndications = switchIndications,
                                             .disableIndications = switchIndications};

/* The factory of a table of which `size` bytes are there. */
#define FACTORY(name, kind, table, edition, size)                                                 \
  CMPI_EXTERN_C CMPI##kind##MI* name##_Create_##kind##MI(const CMPIBroker* b,                     \
                                                         const CMPIContext* ctx, CMPIStatus* st); \
  CMPI##kind##MI* name##_Create_##kind##MI(const CMPIBroker* b, const CMPIContext* ctx,           \
                                           CMPIStatus* st) {                                      \
    static CMPI##kind##MI mi;                                                                     \
    (void)b, (void)ctx, (void)st;                                                                 \
    table.ftVersion = edition;                                                                    \
    table.miVersion = edition;                                                                    \
    mi.ft = copyToEndOfPage(&table, size);                                                        \
    return &mi;                                                                                   \
  }

#define PROVIDER(name, edition, instance, association, property, indication) \
  FACTORY(name, Instance, instanceTable, edition, instance)                  \
  FACTORY(name, Association, associationTable, edition, association)         \
  FACTORY(name, Method, methodTable, edition, 32)                            \
  FACTORY(name, Property, propertyTable, edition, property)                  \
  FACTORY(name, Indication, indicationTable, edition, indication)

/* The sizes are those that each edition prints; one header of 2.0 has the shorter property table.
 */
PROVIDER(Edition080, 80, 80, 56, 40, 56)
PROVIDER(Edition090, 90, 80, 56, 40, 72)
PROVIDER(Edition100, 100, 80, 56, 40, 72)
PROVIDER(Edition200, 200, 80, 56, 40, 72)
PROVIDER(Edition210, 210, 88, 72, 48, 96)

FACTORY(IndicationOnly, Indication, indicationTable, 200, 72)

/* A property interface that sets with the origin alone, and says that it is of an edition that has
   that function, or of one that need not. */
static CMPIPropertyMIFT originTable = {210,  210,  "origins",    cleanUpProperty,
                                       NULL, NULL, setWithOrigin};
FACTORY(Origin210, Property, originTable, 210, 48)
FACTORY(Origin200, Property, originTable, 200, 48)
