/* The link between the two items, which the checks follow through the broker. */
#include <string.h>

#include "groups.h"
#include "items.h"

/* What to hand out of the link of an item. */
enum Wanted { kOther, kOtherName, kLink, kLinkName };

static CMPIInstance* makeLink(void) {
  CMPIObjectPath* path = CMNewObjectPath(conformanceBroker, "root/cimv2", LINK_CLASS, NULL);
  CMPIObjectPath* left = pathOf(0);
  CMPIObjectPath* right = pathOf(1);
  CMAddKey(path, "Left", &left, CMPI_ref);
  CMAddKey(path, "Right", &right, CMPI_ref);
  return CMNewInstance(conformanceBroker, path, NULL);
}

static CMPIStatus walk(const CMPIResult* result, const CMPIObjectPath* path,
                       const char* wantedClass, const char* role, enum Wanted wanted) {
  const int item = itemOf(path);
  const int isOfClass = wantedClass == NULL || wanted == kLink || wanted == kLinkName ||
                        CMClassPathIsA(conformanceBroker, pathOf(0), wantedClass, NULL) == 1;
  if (item < 0 || !isOfClass) return itemsDone(result);
  if (role != NULL && strcmp(role, item == 0 ? "Left" : "Right") != 0) return itemsDone(result);
  if (wanted == kOther) CMReturnInstance(result, instanceOf(1 - item));
  if (wanted == kOtherName) CMReturnObjectPath(result, pathOf(1 - item));
  if (wanted == kLink) CMReturnInstance(result, makeLink());
  if (wanted == kLinkName) CMReturnObjectPath(result, CMGetObjectPath(makeLink(), NULL));
  return itemsDone(result);
}

static CMPIStatus ItemAssociationCleanup(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                         CMPIBoolean terminating) {
  (void)mi, (void)ctx, (void)terminating;
  CMReturn(CMPI_RC_OK);
}

static CMPIStatus ItemAssociators(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                  const CMPIResult* result, const CMPIObjectPath* path,
                                  const char* assocClass, const char* resultClass, const char* role,
                                  const char* resultRole, const char** props) {
  (void)mi, (void)ctx, (void)assocClass, (void)resultRole, (void)props;
  return walk(result, path, resultClass, role, kOther);
}

static CMPIStatus ItemAssociatorNames(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                      const CMPIResult* result, const CMPIObjectPath* path,
                                      const char* assocClass, const char* resultClass,
                                      const char* role, const char* resultRole) {
  (void)mi, (void)ctx, (void)assocClass, (void)resultRole;
  return walk(result, path, resultClass, role, kOtherName);
}

static CMPIStatus ItemReferences(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                 const CMPIResult* result, const CMPIObjectPath* path,
                                 const char* resultClass, const char* role, const char** props) {
  (void)mi, (void)ctx, (void)props;
  return walk(result, path, resultClass, role, kLink);
}

static CMPIStatus ItemReferenceNames(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                     const CMPIResult* result, const CMPIObjectPath* path,
                                     const char* resultClass, const char* role) {
  (void)mi, (void)ctx;
  return walk(result, path, resultClass, role, kLinkName);
}

#if CMPI_VERSION >= 210
static CMPIStatus ItemAssociatorsFiltered(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                          const CMPIResult* result, const CMPIObjectPath* path,
                                          const char* assocClass, const char* resultClass,
                                          const char* role, const char* resultRole,
                                          const char** props, const char* lang, const char* query,
                                          CMPIBoolean goOn) {
  (void)lang, (void)query, (void)goOn;
  return ItemAssociators(mi, ctx, result, path, assocClass, resultClass, role, resultRole, props);
}

static CMPIStatus ItemReferencesFiltered(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                         const CMPIResult* result, const CMPIObjectPath* path,
                                         const char* resultClass, const char* role,
                                         const char** props, const char* lang, const char* query,
                                         CMPIBoolean goOn) {
  (void)lang, (void)query, (void)goOn;
  return ItemReferences(mi, ctx, result, path, resultClass, role, props);
}
#endif

#define STUBS_OF(name) CMAssociationMIStub(Item, name, conformanceBroker, CMNoHook)
STUBS_OF(CONFORMANCE_PROVIDER)
