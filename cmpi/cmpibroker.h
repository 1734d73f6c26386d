/* The broker and its four function tables.
   The order of the members is the binary interface: members were only ever appended. */
#ifndef CMPIBROKER_H
#define CMPIBROKER_H

#include "cmpi/cmpidt.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A broker as a provider sees it; outlives the provider and serves any thread. */
struct _CMPIBroker {
  void* hdl;
  CMPIBrokerFT* bft;
  CMPIBrokerEncFT* eft;
  CMPIBrokerExtFT* xft;
#if CMPI_VERSION >= 200
  CMPIBrokerMemFT* mft;
#endif
};

/* Threads, indications and the way back into the broker. The first member is a capability
   mask: this table has no ftVersion. */
struct _CMPIBrokerFT {
  unsigned int brokerCapabilities;
  CMPIVersion brokerVersion;
  const char* brokerName;
  /* For the parent thread; the child attaches with the context returned. */
  CMPIContext* (*prepareAttachThread)(const CMPIBroker* broker, const CMPIContext* ctx);
  /* For the child thread, before anything else. */
  CMPIStatus (*attachThread)(const CMPIBroker* broker, const CMPIContext* ctx);
  /* For the child thread, last; disposes of the prepared context. */
  CMPIStatus (*detachThread)(const CMPIBroker* broker, const CMPIContext* ctx);
  CMPIStatus (*deliverIndication)(const CMPIBroker* broker, const CMPIContext* ctx, const char* ns,
                                  const CMPIInstance* ind);
  CMPIEnumeration* (*enumerateInstanceNames)(const CMPIBroker* broker, const CMPIContext* ctx,
                                             const CMPIObjectPath* classPath, CMPIStatus* st);
  /* props is NULL-terminated here and below; NULL means all. */
  CMPIInstance* (*getInstance)(const CMPIBroker* broker, const CMPIContext* ctx,
                               const CMPIObjectPath* instPath, const char** props, CMPIStatus* st);
  CMPIObjectPath* (*createInstance)(const CMPIBroker* broker, const CMPIContext* ctx,
                                    const CMPIObjectPath* classPath, const CMPIInstance* inst,
                                    CMPIStatus* st);
  CMPIStatus (*modifyInstance)(const CMPIBroker* broker, const CMPIContext* ctx,
                               const CMPIObjectPath* instPath, const CMPIInstance* inst,
                               const char** props);
  CMPIStatus (*deleteInstance)(const CMPIBroker* broker, const CMPIContext* ctx,
                               const CMPIObjectPath* instPath);
  CMPIEnumeration* (*execQuery)(const CMPIBroker* broker, const CMPIContext* ctx,
                                const CMPIObjectPath* classPath, const char* query,
                                const char* lang, CMPIStatus* st);
  CMPIEnumeration* (*enumerateInstances)(const CMPIBroker* broker, const CMPIContext* ctx,
                                         const CMPIObjectPath* classPath, const char** props,
                                         CMPIStatus* st);
  CMPIEnumeration* (*associators)(const CMPIBroker* broker, const CMPIContext* ctx,
                                  const CMPIObjectPath* instPath, const char* assocClass,
                                  const char* resultClass, const char* role, const char* resultRole,
                                  const char** props, CMPIStatus* st);
  CMPIEnumeration* (*associatorNames)(const CMPIBroker* broker, const CMPIContext* ctx,
                                      const CMPIObjectPath* instPath, const char* assocClass,
                                      const char* resultClass, const char* role,
                                      const char* resultRole, CMPIStatus* st);
  /* resultClass is the association class here and below. */
  CMPIEnumeration* (*references)(const CMPIBroker* broker, const CMPIContext* ctx,
                                 const CMPIObjectPath* instPath, const char* resultClass,
                                 const char* role, const char** props, CMPIStatus* st);
  CMPIEnumeration* (*referenceNames)(const CMPIBroker* broker, const CMPIContext* ctx,
                                     const CMPIObjectPath* instPath, const char* resultClass,
                                     const char* role, CMPIStatus* st);
  CMPIData (*invokeMethod)(const CMPIBroker* broker, const CMPIContext* ctx,
                           const CMPIObjectPath* target, const char* method, const CMPIArgs* in,
                           CMPIArgs* out, CMPIStatus* st);
  CMPIStatus (*setProperty)(const CMPIBroker* broker, const CMPIContext* ctx,
                            const CMPIObjectPath* instPath, const char* name,
                            const CMPIValue* value, CMPIType type);
  CMPIData (*getProperty)(const CMPIBroker* broker, const CMPIContext* ctx,
                          const CMPIObjectPath* instPath, const char* name, CMPIStatus* st);
#if CMPI_VERSION >= 210
  CMPIEnumeration* (*enumerateInstancesFiltered)(const CMPIBroker* broker, const CMPIContext* ctx,
                                                 const CMPIObjectPath* classPath,
                                                 const char** props, const char* fLang,
                                                 const char* fQuery, CMPIStatus* st);
  CMPIEnumeration* (*associatorsFiltered)(const CMPIBroker* broker, const CMPIContext* ctx,
                                          const CMPIObjectPath* instPath, const char* assocClass,
                                          const char* resultClass, const char* role,
                                          const char* resultRole, const char** props,
                                          const char* fLang, const char* fQuery, CMPIStatus* st);
  CMPIEnumeration* (*referencesFiltered)(const CMPIBroker* broker, const CMPIContext* ctx,
                                         const CMPIObjectPath* instPath, const char* resultClass,
                                         const char* role, const char** props, const char* fLang,
                                         const char* fQuery, CMPIStatus* st);
#endif
};

/* Factories of encapsulated objects, schema questions, messages and logging. */
struct _CMPIBrokerEncFT {
  CMPIVersion ftVersion;
  CMPIInstance* (*newInstance)(const CMPIBroker* broker, const CMPIObjectPath* instPath,
                               CMPIStatus* st);
  CMPIObjectPath* (*newObjectPath)(const CMPIBroker* broker, const char* ns, const char* className,
                                   CMPIStatus* st);
  CMPIArgs* (*newArgs)(const CMPIBroker* broker, CMPIStatus* st);
  CMPIString* (*newString)(const CMPIBroker* broker, const char* data, CMPIStatus* st);
  /* type is the element type, never the array type. */
  CMPIArray* (*newArray)(const CMPIBroker* broker, CMPICount size, CMPIType type, CMPIStatus* st);
  CMPIDateTime* (*newDateTime)(const CMPIBroker* broker, CMPIStatus* st);
  /* Microseconds since 1970-01-01 UTC, or the length of an interval. */
  CMPIDateTime* (*newDateTimeFromBinary)(const CMPIBroker* broker, CMPIUint64 usec,
                                         CMPIBoolean interval, CMPIStatus* st);
  CMPIDateTime* (*newDateTimeFromChars)(const CMPIBroker* broker, const char* text, CMPIStatus* st);
  CMPISelectExp* (*newSelectExp)(const CMPIBroker* broker, const char* query, const char* lang,
                                 CMPIArray** projection, CMPIStatus* st);
  CMPIBoolean (*classPathIsA)(const CMPIBroker* broker, const CMPIObjectPath* classPath,
                              const char* className, CMPIStatus* st);
  CMPIString* (*toString)(const CMPIBroker* broker, const void* object, CMPIStatus* st);
  CMPIBoolean (*isOfType)(const CMPIBroker* broker, const void* object, const char* type,
                          CMPIStatus* st);
  CMPIString* (*getType)(const CMPIBroker* broker, const void* object, CMPIStatus* st);
  /* Ends in count pairs of a type and a value. */
  CMPIString* (*getMessage)(const CMPIBroker* broker, const char* msgId, const char* defMsg,
                            CMPIStatus* st, CMPICount count, ...);
  CMPIStatus (*logMessage)(const CMPIBroker* broker, CMPISeverity severity, const char* id,
                           const char* text, const CMPIString* str);
  CMPIStatus (*trace)(const CMPIBroker* broker, CMPILevel level, const char* component,
                      const char* text, const CMPIString* str);
#if CMPI_VERSION >= 200
  CMPIError* (*newCMPIError)(const CMPIBroker* broker, const char* owner, const char* msgID,
                             const char* msg, const CMPIErrorSeverity sev,
                             const CMPIErrorProbableCause pc, const CMPIrc cimRc, CMPIStatus* st);
  CMPIStatus (*openMessageFile)(const CMPIBroker* broker, const char* msgFile,
                                CMPIMsgFileHandle* h);
  CMPIStatus (*closeMessageFile)(const CMPIBroker* broker, const CMPIMsgFileHandle h);
  CMPIString* (*getMessage2)(const CMPIBroker* broker, const char* msgId, const CMPIMsgFileHandle h,
                             const char* defMsg, CMPIStatus* st, CMPICount count, ...);
#endif
#if CMPI_VERSION >= 210
  CMPIPropertyList* (*newPropertyList)(const CMPIBroker* broker, const char** props,
                                       CMPIStatus* st);
  CMPIString* (*newStringCP)(const CMPIBroker* broker, const char* data, const CMPICodepageID cpid,
                             CMPIStatus* st);
  CMPIEnumerationFilter* (*newEnumerationFilter)(const CMPIBroker* broker, const char* fLang,
                                                 const char* fQuery, CMPIStatus* st);
#endif
};

/* Operating-system services. Every int result is 0 or an error number. */
struct _CMPIBrokerExtFT {
  CMPIVersion ftVersion;
  char* (*resolveFileName)(const char* name);
  CMPI_THREAD_TYPE (*newThread)(CMPIThreadFunc start, void* parm, int detached);
  int (*joinThread)(CMPI_THREAD_TYPE thread, CMPI_THREAD_RETURN* retval);
  int (*exitThread)(CMPI_THREAD_RETURN value);
  int (*cancelThread)(CMPI_THREAD_TYPE thread);
  int (*threadSleep)(CMPIUint32 msec);
  int (*threadOnce)(int* once, CMPIThreadOnceFunc function);
  int (*createThreadKey)(CMPI_THREAD_KEY_TYPE* key, CMPIThreadKeyCleanupFunc cleanup);
  int (*destroyThreadKey)(CMPI_THREAD_KEY_TYPE key);
  void* (*getThreadSpecific)(CMPI_THREAD_KEY_TYPE key);
  int (*setThreadSpecific)(CMPI_THREAD_KEY_TYPE key, void* value);
  CMPI_MUTEX_TYPE (*newMutex)(int opt);
  void (*destroyMutex)(CMPI_MUTEX_TYPE mutex);
  void (*lockMutex)(CMPI_MUTEX_TYPE mutex);
  void (*unlockMutex)(CMPI_MUTEX_TYPE mutex);
  CMPI_COND_TYPE (*newCondition)(int opt);
  void (*destroyCondition)(CMPI_COND_TYPE cond);
  int (*condWait)(CMPI_COND_TYPE cond, CMPI_MUTEX_TYPE mutex);
  /* The deadline is absolute wall-clock time. */
  int (*timedCondWait)(CMPI_COND_TYPE cond, CMPI_MUTEX_TYPE mutex, struct timespec* wait);
  int (*signalCondition)(CMPI_COND_TYPE cond);
#if CMPI_VERSION >= 210
  int (*destroyMutex2)(CMPI_MUTEX_TYPE mutex);
  int (*lockMutex2)(CMPI_MUTEX_TYPE mutex);
  int (*unlockMutex2)(CMPI_MUTEX_TYPE mutex);
  int (*destroyCondition2)(CMPI_COND_TYPE cond);
#endif
};

#if CMPI_VERSION >= 200
/* Nested object scopes and memory that the broker keeps account of. */
struct _CMPIBrokerMemFT {
  CMPIVersion ftVersion;
  CMPIGcStat* (*mark)(const CMPIBroker* broker, CMPIStatus* st);
  CMPIStatus (*release)(const CMPIBroker* broker, const CMPIGcStat* gc);
  void* (*cmpiMalloc)(const CMPIBroker* broker, size_t size);
  void* (*cmpiCalloc)(const CMPIBroker* broker, size_t n, size_t size);
  void* (*cmpiRealloc)(const CMPIBroker* broker, void* p, size_t size);
  char* (*cmpiStrDup)(const CMPIBroker* broker, const char* str);
  void (*cmpiFree)(const CMPIBroker* broker, void* p);
  void (*freeInstance)(const CMPIBroker* broker, CMPIInstance* inst);
  void (*freeObjectPath)(const CMPIBroker* broker, CMPIObjectPath* obj);
  void (*freeArgs)(const CMPIBroker* broker, CMPIArgs* args);
  void (*freeString)(const CMPIBroker* broker, CMPIString* str);
  void (*freeArray)(const CMPIBroker* broker, CMPIArray* array);
  void (*freeDateTime)(const CMPIBroker* broker, CMPIDateTime* dt);
  void (*freeSelectExp)(const CMPIBroker* broker, CMPISelectExp* se);
#if CMPI_VERSION >= 210
  void (*freeChars)(const CMPIBroker* broker, char* p);
#endif
};
#endif

#ifdef __cplusplus
}
#endif

#endif
