/* The function tables of the encapsulated objects.
   The order of the members is the binary interface: members were only ever appended. */
#ifndef CMPIOBJECTS_H
#define CMPIOBJECTS_H

#include "cmpi/cmpidt.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What qualifies a call: named values. */
struct _CMPIContext {
  void* hdl;
  CMPIContextFT* ft;
};

struct _CMPIContextFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIContext* ctx);
  CMPIContext* (*clone)(const CMPIContext* ctx, CMPIStatus* st);
  CMPIData (*getEntry)(const CMPIContext* ctx, const char* name, CMPIStatus* st);
  /* name may be NULL. */
  CMPIData (*getEntryAt)(const CMPIContext* ctx, CMPICount index, CMPIString** name,
                         CMPIStatus* st);
  CMPICount (*getEntryCount)(const CMPIContext* ctx, CMPIStatus* st);
  CMPIStatus (*addEntry)(const CMPIContext* ctx, const char* name, const CMPIValue* value,
                         const CMPIType type);
};

/* Where a provider delivers its answers. */
struct _CMPIResult {
  void* hdl;
  CMPIResultFT* ft;
};

struct _CMPIResultFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIResult* result);
  CMPIResult* (*clone)(const CMPIResult* result, CMPIStatus* st);
  CMPIStatus (*returnData)(const CMPIResult* result, const CMPIValue* value, const CMPIType type);
  CMPIStatus (*returnInstance)(const CMPIResult* result, const CMPIInstance* inst);
  CMPIStatus (*returnObjectPath)(const CMPIResult* result, const CMPIObjectPath* path);
  CMPIStatus (*returnDone)(const CMPIResult* result);
#if CMPI_VERSION >= 200
  CMPIStatus (*returnError)(const CMPIResult* result, const CMPIError* err);
#endif
};

/* An instance. Setters take a pointer to const: the state is behind hdl. */
struct _CMPIInstance {
  void* hdl;
  CMPIInstanceFT* ft;
};

struct _CMPIInstanceFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIInstance* inst);
  CMPIInstance* (*clone)(const CMPIInstance* inst, CMPIStatus* st);
  CMPIData (*getProperty)(const CMPIInstance* inst, const char* name, CMPIStatus* st);
  CMPIData (*getPropertyAt)(const CMPIInstance* inst, CMPICount index, CMPIString** name,
                            CMPIStatus* st);
  CMPICount (*getPropertyCount)(const CMPIInstance* inst, CMPIStatus* st);
  CMPIStatus (*setProperty)(const CMPIInstance* inst, const char* name, const CMPIValue* value,
                            CMPIType type);
  CMPIObjectPath* (*getObjectPath)(const CMPIInstance* inst, CMPIStatus* st);
  CMPIStatus (*setPropertyFilter)(const CMPIInstance* inst, const char** props, const char** keys);
  CMPIStatus (*setObjectPath)(const CMPIInstance* inst, const CMPIObjectPath* path);
#if CMPI_VERSION >= 200
  CMPIStatus (*setPropertyWithOrigin)(const CMPIInstance* inst, const char* name,
                                      const CMPIValue* value, const CMPIType type,
                                      const char* origin);
#endif
};

/* An object path: host, namespace, class and key bindings. */
struct _CMPIObjectPath {
  void* hdl;
  CMPIObjectPathFT* ft;
};

struct _CMPIObjectPathFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIObjectPath* path);
  CMPIObjectPath* (*clone)(const CMPIObjectPath* path, CMPIStatus* st);
  CMPIStatus (*setNameSpace)(const CMPIObjectPath* path, const char* ns);
  CMPIString* (*getNameSpace)(const CMPIObjectPath* path, CMPIStatus* st);
  CMPIStatus (*setHostname)(const CMPIObjectPath* path, const char* host);
  CMPIString* (*getHostname)(const CMPIObjectPath* path, CMPIStatus* st);
  CMPIStatus (*setClassName)(const CMPIObjectPath* path, const char* className);
  CMPIString* (*getClassName)(const CMPIObjectPath* path, CMPIStatus* st);
  CMPIStatus (*addKey)(const CMPIObjectPath* path, const char* key, const CMPIValue* value,
                       const CMPIType type);
  CMPIData (*getKey)(const CMPIObjectPath* path, const char* key, CMPIStatus* st);
  CMPIData (*getKeyAt)(const CMPIObjectPath* path, CMPICount index, CMPIString** name,
                       CMPIStatus* st);
  CMPICount (*getKeyCount)(const CMPIObjectPath* path, CMPIStatus* st);
  CMPIStatus (*setNameSpaceFromObjectPath)(const CMPIObjectPath* path, const CMPIObjectPath* src);
  CMPIStatus (*setHostAndNameSpaceFromObjectPath)(const CMPIObjectPath* path,
                                                  const CMPIObjectPath* src);
  CMPIData (*getClassQualifier)(const CMPIObjectPath* path, const char* qualifier, CMPIStatus* st);
  CMPIData (*getPropertyQualifier)(const CMPIObjectPath* path, const char* property,
                                   const char* qualifier, CMPIStatus* st);
  CMPIData (*getMethodQualifier)(const CMPIObjectPath* path, const char* method,
                                 const char* qualifier, CMPIStatus* st);
  CMPIData (*getParameterQualifier)(const CMPIObjectPath* path, const char* method,
                                    const char* property, const char* qualifier, CMPIStatus* st);
  CMPIString* (*toString)(const CMPIObjectPath* path, CMPIStatus* st);
};

/* The parameters of a method, in or out. */
struct _CMPIArgs {
  void* hdl;
  CMPIArgsFT* ft;
};

struct _CMPIArgsFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIArgs* args);
  CMPIArgs* (*clone)(const CMPIArgs* args, CMPIStatus* st);
  CMPIStatus (*addArg)(const CMPIArgs* args, const char* name, const CMPIValue* value,
                       const CMPIType type);
  CMPIData (*getArg)(const CMPIArgs* args, const char* name, CMPIStatus* st);
  CMPIData (*getArgAt)(const CMPIArgs* args, CMPICount index, CMPIString** name, CMPIStatus* st);
  CMPICount (*getArgCount)(const CMPIArgs* args, CMPIStatus* st);
};

/* A text, UTF-8, NUL-terminated. */
struct _CMPIString {
  void* hdl;
  CMPIStringFT* ft;
};

struct _CMPIStringFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIString* str);
  CMPIString* (*clone)(const CMPIString* str, CMPIStatus* st);
  const char* (*getCharPtr)(const CMPIString* str, CMPIStatus* st);
#if CMPI_VERSION >= 210
  char* (*newCharsCP)(const CMPIString* str, const CMPICodepageID cpid, CMPIStatus* st);
#endif
};

/* An array of fixed size, its elements of one type. */
struct _CMPIArray {
  void* hdl;
  CMPIArrayFT* ft;
};

struct _CMPIArrayFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIArray* array);
  CMPIArray* (*clone)(const CMPIArray* array, CMPIStatus* st);
  CMPICount (*getSize)(const CMPIArray* array, CMPIStatus* st);
  CMPIType (*getSimpleType)(const CMPIArray* array, CMPIStatus* st);
  CMPIData (*getElementAt)(const CMPIArray* array, CMPICount index, CMPIStatus* st);
  CMPIStatus (*setElementAt)(const CMPIArray* array, CMPICount index, const CMPIValue* value,
                             CMPIType type);
};

/* The answers of an upcall, one after another. */
struct _CMPIEnumeration {
  void* hdl;
  CMPIEnumerationFT* ft;
};

struct _CMPIEnumerationFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIEnumeration* en);
  CMPIEnumeration* (*clone)(const CMPIEnumeration* en, CMPIStatus* st);
  CMPIData (*getNext)(const CMPIEnumeration* en, CMPIStatus* st);
  CMPIBoolean (*hasNext)(const CMPIEnumeration* en, CMPIStatus* st);
  CMPIArray* (*toArray)(const CMPIEnumeration* en, CMPIStatus* st);
};

/* A point in time or an interval. */
struct _CMPIDateTime {
  void* hdl;
  CMPIDateTimeFT* ft;
};

struct _CMPIDateTimeFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIDateTime* dt);
  CMPIDateTime* (*clone)(const CMPIDateTime* dt, CMPIStatus* st);
  CMPIUint64 (*getBinaryFormat)(const CMPIDateTime* dt, CMPIStatus* st);
  CMPIString* (*getStringFormat)(const CMPIDateTime* dt, CMPIStatus* st);
  CMPIBoolean (*isInterval)(const CMPIDateTime* dt, CMPIStatus* st);
};

/* A query. */
struct _CMPISelectExp {
  void* hdl;
  CMPISelectExpFT* ft;
};

struct _CMPISelectExpFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPISelectExp* se);
  CMPISelectExp* (*clone)(const CMPISelectExp* se, CMPIStatus* st);
  CMPIBoolean (*evaluate)(const CMPISelectExp* se, const CMPIInstance* inst, CMPIStatus* st);
  CMPIString* (*getString)(const CMPISelectExp* se, CMPIStatus* st);
  CMPISelectCond* (*getDOC)(const CMPISelectExp* se, CMPIStatus* st);
  CMPISelectCond* (*getCOD)(const CMPISelectExp* se, CMPIStatus* st);
  CMPIBoolean (*evaluateUsingAccessor)(const CMPISelectExp* se, CMPIAccessor* fn, void* parm,
                                       CMPIStatus* st);
};

/* A query's condition in a normal form. */
struct _CMPISelectCond {
  void* hdl;
  CMPISelectCondFT* ft;
};

struct _CMPISelectCondFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPISelectCond* sc);
  CMPISelectCond* (*clone)(const CMPISelectCond* sc, CMPIStatus* st);
  CMPICount (*getCountAndType)(const CMPISelectCond* sc, int* type, CMPIStatus* st);
  CMPISubCond* (*getSubCondAt)(const CMPISelectCond* sc, CMPICount index, CMPIStatus* st);
};

/* One group of predicates of a condition. */
struct _CMPISubCond {
  void* hdl;
  CMPISubCondFT* ft;
};

struct _CMPISubCondFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPISubCond* sc);
  CMPISubCond* (*clone)(const CMPISubCond* sc, CMPIStatus* st);
  CMPICount (*getCount)(const CMPISubCond* sc, CMPIStatus* st);
  CMPIPredicate* (*getPredicateAt)(const CMPISubCond* sc, CMPICount index, CMPIStatus* st);
  CMPIPredicate* (*getPredicate)(const CMPISubCond* sc, const char* name, CMPIStatus* st);
};

/* One comparison. */
struct _CMPIPredicate {
  void* hdl;
  CMPIPredicateFT* ft;
};

struct _CMPIPredicateFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIPredicate* pr);
  CMPIPredicate* (*clone)(const CMPIPredicate* pr, CMPIStatus* st);
  CMPIStatus (*getData)(const CMPIPredicate* pr, CMPIType* type, CMPIPredOp* prop, CMPIString** lhs,
                        CMPIString** rhs);
  CMPIBoolean (*evaluateUsingAccessor)(const CMPIPredicate* pr, CMPIAccessor* fn, void* parm,
                                       CMPIStatus* st);
};

#if CMPI_VERSION >= 200
/* An error as CIM_Error describes it. Since edition 2.0. */
struct _CMPIError {
  void* hdl;
  CMPIErrorFT* ft;
};

struct _CMPIErrorFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIError* err);
  CMPIError* (*clone)(const CMPIError* err, CMPIStatus* st);
  CMPIErrorType (*getErrorType)(const CMPIError* err, CMPIStatus* st);
  CMPIString* (*getOtherErrorType)(const CMPIError* err, CMPIStatus* st);
  CMPIString* (*getOwningEntity)(const CMPIError* err, CMPIStatus* st);
  CMPIString* (*getMessageID)(const CMPIError* err, CMPIStatus* st);
  CMPIString* (*getMessage)(const CMPIError* err, CMPIStatus* st);
  CMPIErrorSeverity (*getPerceivedSeverity)(const CMPIError* err, CMPIStatus* st);
  CMPIErrorProbableCause (*getProbableCause)(const CMPIError* err, CMPIStatus* st);
  CMPIString* (*getProbableCauseDescription)(const CMPIError* err, CMPIStatus* st);
  CMPIArray* (*getRecommendedActions)(const CMPIError* err, CMPIStatus* st);
  CMPIString* (*getErrorSource)(const CMPIError* err, CMPIStatus* st);
  CMPIErrorSrcFormat (*getErrorSourceFormat)(const CMPIError* err, CMPIStatus* st);
  CMPIString* (*getOtherErrorSourceFormat)(const CMPIError* err, CMPIStatus* st);
  CMPIrc (*getCIMStatusCode)(const CMPIError* err, CMPIStatus* st);
  CMPIString* (*getCIMStatusCodeDescription)(const CMPIError* err, CMPIStatus* st);
  CMPIArray* (*getMessageArguments)(const CMPIError* err, CMPIStatus* st);
  CMPIStatus (*setErrorType)(const CMPIError* err, const CMPIErrorType et);
  CMPIStatus (*setOtherErrorType)(const CMPIError* err, const char* ot);
  CMPIStatus (*setProbableCauseDescription)(const CMPIError* err, const char* pcd);
  CMPIStatus (*setRecommendedActions)(const CMPIError* err, const CMPIArray* ra);
  CMPIStatus (*setErrorSource)(const CMPIError* err, const char* es);
  CMPIStatus (*setErrorSourceFormat)(const CMPIError* err, const CMPIErrorSrcFormat esf);
  CMPIStatus (*setOtherErrorSourceFormat)(const CMPIError* err, const char* oef);
  CMPIStatus (*setCIMStatusCodeDescription)(const CMPIError* err, const char* scd);
  CMPIStatus (*setMessageArguments)(const CMPIError* err, const CMPIArray* values);
};
#endif

#if CMPI_VERSION >= 210
/* A list of property names. Since edition 2.1. */
struct _CMPIPropertyList {
  void* hdl;
  CMPIPropertyListFT* ft;
};

struct _CMPIPropertyListFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIPropertyList* pl);
  CMPIPropertyList* (*clone)(const CMPIPropertyList* pl, CMPIStatus* st);
  CMPIBoolean (*isPropertyInList)(const CMPIPropertyList* pl, const char* name, CMPIStatus* st);
  const char** (*getProperties)(const CMPIPropertyList* pl, CMPIStatus* st);
};
#endif

#if CMPI_VERSION >= 210
/* A filter over instances. Since edition 2.1. */
struct _CMPIEnumerationFilter {
  void* hdl;
  CMPIEnumerationFilterFT* ft;
};

struct _CMPIEnumerationFilterFT {
  CMPIVersion ftVersion;
  CMPIStatus (*release)(CMPIEnumerationFilter* ef);
  CMPIEnumerationFilter* (*clone)(const CMPIEnumerationFilter* ef, CMPIStatus* st);
  CMPIBoolean (*match)(const CMPIEnumerationFilter* ef, const CMPIInstance* inst, CMPIStatus* st);
};
#endif

#ifdef __cplusplus
}
#endif

#endif
