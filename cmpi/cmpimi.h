/* What a provider offers: the management interfaces (MI) and their function tables.
   The order of the members is the binary interface: members were only ever appended. */
#ifndef CMPIMI_H
#define CMPIMI_H

#include "cmpi/cmpidt.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What a provider offers for instances. */
struct _CMPIInstanceMI {
  void* hdl;
  CMPIInstanceMIFT* ft;
};

struct _CMPIInstanceMIFT {
  CMPIVersion ftVersion;
  int miVersion;
  const char* miName;
  CMPIStatus (*cleanup)(CMPIInstanceMI* mi, const CMPIContext* ctx, CMPIBoolean terminating);
  CMPIStatus (*enumerateInstanceNames)(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                       const CMPIResult* result, const CMPIObjectPath* classPath);
  CMPIStatus (*enumerateInstances)(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                   const CMPIResult* result, const CMPIObjectPath* classPath,
                                   const char** props);
  CMPIStatus (*getInstance)(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                            const CMPIObjectPath* instPath, const char** props);
  CMPIStatus (*createInstance)(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                               const CMPIObjectPath* classPath, const CMPIInstance* inst);
  /* Replaces the listed properties; all where props is NULL. */
  CMPIStatus (*modifyInstance)(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                               const CMPIObjectPath* instPath, const CMPIInstance* inst,
                               const char** props);
  CMPIStatus (*deleteInstance)(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                               const CMPIObjectPath* path);
  CMPIStatus (*execQuery)(CMPIInstanceMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                          const CMPIObjectPath* classPath, const char* query, const char* lang);
#if CMPI_VERSION >= 210
  CMPIStatus (*enumerateInstancesFiltered)(CMPIInstanceMI* mi, const CMPIContext* ctx,
                                           const CMPIResult* result,
                                           const CMPIObjectPath* classPath, const char** props,
                                           const char* fLang, const char* fQuery, CMPIStatus* st);
#endif
};

/* What a provider offers for associations. */
struct _CMPIAssociationMI {
  void* hdl;
  CMPIAssociationMIFT* ft;
};

struct _CMPIAssociationMIFT {
  CMPIVersion ftVersion;
  int miVersion;
  const char* miName;
  CMPIStatus (*cleanup)(CMPIAssociationMI* mi, const CMPIContext* ctx, CMPIBoolean terminating);
  CMPIStatus (*associators)(CMPIAssociationMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                            const CMPIObjectPath* instPath, const char* assocClass,
                            const char* resultClass, const char* role, const char* resultRole,
                            const char** props);
  CMPIStatus (*associatorNames)(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                const CMPIResult* result, const CMPIObjectPath* instPath,
                                const char* assocClass, const char* resultClass, const char* role,
                                const char* resultRole);
  CMPIStatus (*references)(CMPIAssociationMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                           const CMPIObjectPath* instPath, const char* resultClass,
                           const char* role, const char** props);
  CMPIStatus (*referenceNames)(CMPIAssociationMI* mi, const CMPIContext* ctx,
                               const CMPIResult* result, const CMPIObjectPath* instPath,
                               const char* resultClass, const char* role);
#if CMPI_VERSION >= 210
  CMPIStatus (*associatorsFiltered)(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                    const CMPIResult* result, const CMPIObjectPath* instPath,
                                    const char* assocClass, const char* resultClass,
                                    const char* role, const char* resultRole, const char** props,
                                    const char* fLang, const char* fQuery,
                                    CMPIBoolean continueOnError);
  CMPIStatus (*referencesFiltered)(CMPIAssociationMI* mi, const CMPIContext* ctx,
                                   const CMPIResult* result, const CMPIObjectPath* instPath,
                                   const char* resultClass, const char* role, const char** props,
                                   const char* fLang, const char* fQuery,
                                   CMPIBoolean continueOnError);
#endif
};

/* What a provider offers for methods. */
struct _CMPIMethodMI {
  void* hdl;
  CMPIMethodMIFT* ft;
};

struct _CMPIMethodMIFT {
  CMPIVersion ftVersion;
  int miVersion;
  const char* miName;
  CMPIStatus (*cleanup)(CMPIMethodMI* mi, const CMPIContext* ctx, CMPIBoolean terminating);
  CMPIStatus (*invokeMethod)(CMPIMethodMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                             const CMPIObjectPath* target, const char* method, const CMPIArgs* in,
                             CMPIArgs* out);
};

/* What a provider offers for single properties. Deprecated since edition 2.1. */
struct _CMPIPropertyMI {
  void* hdl;
  CMPIPropertyMIFT* ft;
};

struct _CMPIPropertyMIFT {
  CMPIVersion ftVersion;
  int miVersion;
  const char* miName;
  CMPIStatus (*cleanup)(CMPIPropertyMI* mi, const CMPIContext* ctx, CMPIBoolean terminating);
  /* data is passed by value. */
  CMPIStatus (*setProperty)(CMPIPropertyMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                            const CMPIObjectPath* instPath, const char* name, const CMPIData data);
  CMPIStatus (*getProperty)(CMPIPropertyMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                            const CMPIObjectPath* instPath, const char* name);
#if CMPI_VERSION >= 200
  CMPIStatus (*setPropertyWithOrigin)(CMPIPropertyMI* mi, const CMPIContext* ctx,
                                      const CMPIResult* result, CMPIObjectPath* instPath,
                                      const char* name, const CMPIData data, const char* origin);
#endif
};

/* What a provider offers for indications. */
struct _CMPIIndicationMI {
  void* hdl;
  CMPIIndicationMIFT* ft;
};

struct _CMPIIndicationMIFT {
  CMPIVersion ftVersion;
  int miVersion;
  const char* miName;
  CMPIStatus (*cleanup)(CMPIIndicationMI* mi, const CMPIContext* ctx, CMPIBoolean terminating);
  CMPIStatus (*authorizeFilter)(CMPIIndicationMI* mi, const CMPIContext* ctx,
                                const CMPISelectExp* filter, const char* className,
                                const CMPIObjectPath* classPath, const char* owner);
#if CMPI_VERSION >= 210
  CMPIStatus (*mustPoll)(CMPIIndicationMI* mi, const CMPIContext* ctx, const CMPIResult* result,
                         const CMPISelectExp* filter, const char* className,
                         const CMPIObjectPath* classPath);
#else
  CMPIStatus (*mustPoll)(CMPIIndicationMI* mi, const CMPIContext* ctx, const CMPISelectExp* filter,
                         const char* className, const CMPIObjectPath* classPath);
#endif
  CMPIStatus (*activateFilter)(CMPIIndicationMI* mi, const CMPIContext* ctx,
                               const CMPISelectExp* filter, const char* className,
                               const CMPIObjectPath* classPath, CMPIBoolean first);
  CMPIStatus (*deActivateFilter)(CMPIIndicationMI* mi, const CMPIContext* ctx,
                                 const CMPISelectExp* filter, const char* className,
                                 const CMPIObjectPath* classPath, CMPIBoolean last);
  CMPIStatus (*enableIndications)(CMPIIndicationMI* mi, const CMPIContext* ctx);
  CMPIStatus (*disableIndications)(CMPIIndicationMI* mi, const CMPIContext* ctx);
#if CMPI_VERSION >= 210
  CMPIStatus (*authorizeFilterCollection)(CMPIIndicationMI* mi, const CMPIContext* ctx,
                                          const CMPIInstance* coll);
  CMPIStatus (*activateFilterCollection)(CMPIIndicationMI* mi, const CMPIContext* ctx,
                                         const CMPIInstance* coll, CMPIBoolean first);
  CMPIStatus (*deActivateFilterCollection)(CMPIIndicationMI* mi, const CMPIContext* ctx,
                                           const CMPIInstance* coll, CMPIBoolean last);
#endif
};

#ifdef __cplusplus
}
#endif

#endif
