/* The standard's convenience macros. `st` is a CMPIStatus* and may be NULL; a value is passed as
   `(CMPIValue*)` of the address of a variable of the type's own width, or of the text itself for
   CMPI_chars. Arguments may be evaluated more than once. */
#ifndef CMPIMACS_H
#define CMPIMACS_H

#include "cmpi/cmpift.h"

/* Return a status from a function. */
#define CMReturn(code)                      \
  do {                                      \
    CMPIStatus cm_status_ = {(code), NULL}; \
    return cm_status_;                      \
  } while (0)
#define CMReturnWithString(code, str)        \
  do {                                       \
    CMPIStatus cm_status_ = {(code), (str)}; \
    return cm_status_;                       \
  } while (0)
#define CMReturnWithChars(broker, code, text)                          \
  do {                                                                 \
    CMPIStatus cm_status_ = {(code), NULL};                            \
    cm_status_.msg = (broker)->eft->newString((broker), (text), NULL); \
    return cm_status_;                                                 \
  } while (0)

/* Set a status; `status` may be NULL. */
#define CMSetStatus(status, code) \
  do {                            \
    if ((status) != NULL) {       \
      (status)->rc = (code);      \
      (status)->msg = NULL;       \
    }                             \
  } while (0)
#define CMSetStatusWithString(status, code, str) \
  do {                                           \
    if ((status) != NULL) {                      \
      (status)->rc = (code);                     \
      (status)->msg = (str);                     \
    }                                            \
  } while (0)
#define CMSetStatusWithChars(broker, status, code, text)                \
  do {                                                                  \
    if ((status) != NULL) {                                             \
      (status)->rc = (code);                                            \
      (status)->msg = (broker)->eft->newString((broker), (text), NULL); \
    }                                                                   \
  } while (0)

/* Tests. */
#define CMIsNullObject(object) ((object) == NULL || (object)->hdl == NULL)
#define CMIsNullValue(data) (((data).state & CMPI_nullValue) != 0)
#define CMIsArray(data) (((data).type & CMPI_ARRAY) != 0)

/* Any object. */
#define CMClone(object, st) ((object)->ft->clone((object), (st)))
#define CMRelease(object) ((object)->ft->release((object)))

/* Factories. */
#define CMNewInstance(b, path, st) ((b)->eft->newInstance((b), (path), (st)))
#define CMNewObjectPath(b, ns, cls, st) ((b)->eft->newObjectPath((b), (ns), (cls), (st)))
#define CMNewArgs(b, st) ((b)->eft->newArgs((b), (st)))
#define CMNewString(b, text, st) ((b)->eft->newString((b), (text), (st)))
#define CMNewArray(b, size, type, st) ((b)->eft->newArray((b), (size), (type), (st)))
#define CMNewDateTime(b, st) ((b)->eft->newDateTime((b), (st)))
#define CMNewDateTimeFromBinary(b, usec, interval, st) \
  ((b)->eft->newDateTimeFromBinary((b), (usec), (interval), (st)))
#define CMNewDateTimeFromChars(b, text, st) ((b)->eft->newDateTimeFromChars((b), (text), (st)))
#define CMNewSelectExp(b, query, lang, projection, st) \
  ((b)->eft->newSelectExp((b), (query), (lang), (projection), (st)))
#define CMClassPathIsA(b, path, cls, st) ((b)->eft->classPathIsA((b), (path), (cls), (st)))
#define CDToString(b, object, st) ((b)->eft->toString((b), (object), (st)))
#define CDIsOfType(b, object, type, st) ((b)->eft->isOfType((b), (object), (type), (st)))
#define CDGetType(b, object, st) ((b)->eft->getType((b), (object), (st)))

/* Logging and messages. */
#define CMLogMessage(b, severity, id, text, str) \
  ((b)->eft->logMessage((b), (severity), (id), (text), (str)))
#define CMTraceMessage(b, level, component, text, str) \
  ((b)->eft->trace((b), (level), (component), (text), (str)))
#define CMFmtSint(v) CMPI_sint32, ((long int)(v))
#define CMFmtUint(v) CMPI_uint32, ((unsigned long int)(v))
#define CMFmtSint64(v) CMPI_sint64, ((CMPISint64)(v))
#define CMFmtUint64(v) CMPI_uint64, ((CMPIUint64)(v))
#define CMFmtReal(v) CMPI_real64, ((double)(v))
#define CMFmtBoolean(v) CMPI_boolean, ((int)(v))
#define CMFmtChars(v) CMPI_chars, ((char*)(v))
#define CMFmtString(v) CMPI_string, ((CMPIString*)(v))
#define CMGetMessage0(b, id, def, st) ((b)->eft->getMessage((b), (id), (def), (st), 0))
#define CMGetMessage1(b, id, def, st, a1) ((b)->eft->getMessage((b), (id), (def), (st), 1, a1))
#define CMGetMessage2(b, id, def, st, a1, a2) \
  ((b)->eft->getMessage((b), (id), (def), (st), 2, a1, a2))
#define CMGetMessage3(b, id, def, st, a1, a2, a3) \
  ((b)->eft->getMessage((b), (id), (def), (st), 3, a1, a2, a3))
#if CMPI_VERSION >= 200
#define CMNewCMPIError(b, owner, id, msg, sev, cause, code, st) \
  ((b)->eft->newCMPIError((b), (owner), (id), (msg), (sev), (cause), (code), (st)))
#define CMOpenMessageFile(b, file, handle) ((b)->eft->openMessageFile((b), (file), (handle)))
#define CMCloseMessageFile(b, handle) ((b)->eft->closeMessageFile((b), (handle)))
#endif
#if CMPI_VERSION >= 210
#define CMNewPropertyList(b, props, st) ((b)->eft->newPropertyList((b), (props), (st)))
#define CMNewStringCP(b, data, page, st) ((b)->eft->newStringCP((b), (data), (page), (st)))
#define CMNewEnumerationFilter(b, lang, query, st) \
  ((b)->eft->newEnumerationFilter((b), (lang), (query), (st)))
#endif

/* Strings. */
#define CMGetCharPtr(str) ((str)->ft->getCharPtr((str), NULL))
#define CMGetCharsPtr(str, st) ((str)->ft->getCharPtr((str), (st)))

/* Instances. */
#define CMGetProperty(inst, name, st) ((inst)->ft->getProperty((inst), (name), (st)))
#define CMGetPropertyAt(inst, index, name, st) \
  ((inst)->ft->getPropertyAt((inst), (index), (name), (st)))
#define CMGetPropertyCount(inst, st) ((inst)->ft->getPropertyCount((inst), (st)))
#define CMSetProperty(inst, name, value, type) \
  ((inst)->ft->setProperty((inst), (name), (CMPIValue*)(value), (type)))
#define CMGetObjectPath(inst, st) ((inst)->ft->getObjectPath((inst), (st)))
#define CMSetPropertyFilter(inst, props, keys) \
  ((inst)->ft->setPropertyFilter((inst), (props), (keys)))
#define CMSetObjectPath(inst, path) ((inst)->ft->setObjectPath((inst), (path)))
#if CMPI_VERSION >= 200
#define CMSetPropertyWithOrigin(inst, name, value, type, origin) \
  ((inst)->ft->setPropertyWithOrigin((inst), (name), (CMPIValue*)(value), (type), (origin)))
#endif

/* Object paths. */
#define CMSetNameSpace(path, ns) ((path)->ft->setNameSpace((path), (ns)))
#define CMGetNameSpace(path, st) ((path)->ft->getNameSpace((path), (st)))
#define CMSetHostname(path, host) ((path)->ft->setHostname((path), (host)))
#define CMGetHostname(path, st) ((path)->ft->getHostname((path), (st)))
#define CMSetClassName(path, cls) ((path)->ft->setClassName((path), (cls)))
#define CMGetClassName(path, st) ((path)->ft->getClassName((path), (st)))
#define CMAddKey(path, name, value, type) \
  ((path)->ft->addKey((path), (name), (CMPIValue*)(value), (type)))
#define CMGetKey(path, name, st) ((path)->ft->getKey((path), (name), (st)))
#define CMGetKeyAt(path, index, name, st) ((path)->ft->getKeyAt((path), (index), (name), (st)))
#define CMGetKeyCount(path, st) ((path)->ft->getKeyCount((path), (st)))
#define CMSetNameSpaceFromObjectPath(path, src) \
  ((path)->ft->setNameSpaceFromObjectPath((path), (src)))
#define CMSetHostAndNameSpaceFromObjectPath(path, src) \
  ((path)->ft->setHostAndNameSpaceFromObjectPath((path), (src)))
#define CMGetClassQualifier(path, qualifier, st) \
  ((path)->ft->getClassQualifier((path), (qualifier), (st)))
#define CMGetPropertyQualifier(path, prop, qualifier, st) \
  ((path)->ft->getPropertyQualifier((path), (prop), (qualifier), (st)))
#define CMGetMethodQualifier(path, method, qualifier, st) \
  ((path)->ft->getMethodQualifier((path), (method), (qualifier), (st)))
#define CMGetParameterQualifier(path, method, parm, qualifier, st) \
  ((path)->ft->getParameterQualifier((path), (method), (parm), (qualifier), (st)))
#define CMObjectPathToString(path, st) ((path)->ft->toString((path), (st)))

/* Arguments. */
#define CMAddArg(args, name, value, type) \
  ((args)->ft->addArg((args), (name), (CMPIValue*)(value), (type)))
#define CMGetArg(args, name, st) ((args)->ft->getArg((args), (name), (st)))
#define CMGetArgAt(args, index, name, st) ((args)->ft->getArgAt((args), (index), (name), (st)))
#define CMGetArgCount(args, st) ((args)->ft->getArgCount((args), (st)))

/* Arrays. */
#define CMGetArrayCount(array, st) ((array)->ft->getSize((array), (st)))
#define CMGetArrayType(array, st) ((array)->ft->getSimpleType((array), (st)))
#define CMGetArrayElementAt(array, index, st) ((array)->ft->getElementAt((array), (index), (st)))
#define CMSetArrayElementAt(array, index, value, type) \
  ((array)->ft->setElementAt((array), (index), (CMPIValue*)(value), (type)))

/* Enumerations. */
#define CMGetNext(en, st) ((en)->ft->getNext((en), (st)))
#define CMHasNext(en, st) ((en)->ft->hasNext((en), (st)))
#define CMToArray(en, st) ((en)->ft->toArray((en), (st)))

/* Dates and times. */
#define CMGetBinaryFormat(dt, st) ((dt)->ft->getBinaryFormat((dt), (st)))
#define CMGetStringFormat(dt, st) ((dt)->ft->getStringFormat((dt), (st)))
#define CMIsInterval(dt, st) ((dt)->ft->isInterval((dt), (st)))

/* Results. */
#define CMReturnData(result, value, type) \
  ((result)->ft->returnData((result), (CMPIValue*)(value), (type)))
#define CMReturnInstance(result, inst) ((result)->ft->returnInstance((result), (inst)))
#define CMReturnObjectPath(result, path) ((result)->ft->returnObjectPath((result), (path)))
#define CMReturnDone(result) ((result)->ft->returnDone((result)))
#if CMPI_VERSION >= 200
#define CMReturnError(result, error) ((result)->ft->returnError((result), (error)))
#endif

/* Contexts. */
#define CMGetContextEntry(ctx, name, st) ((ctx)->ft->getEntry((ctx), (name), (st)))
#define CMGetContextEntryAt(ctx, index, name, st) \
  ((ctx)->ft->getEntryAt((ctx), (index), (name), (st)))
#define CMGetContextEntryCount(ctx, st) ((ctx)->ft->getEntryCount((ctx), (st)))
#define CMAddContextEntry(ctx, name, value, type) \
  ((ctx)->ft->addEntry((ctx), (name), (CMPIValue*)(value), (type)))

/* Queries. */
#define CMGetSelExpString(se, st) ((se)->ft->getString((se), (st)))
#define CMEvaluateSelExp(se, inst, st) ((se)->ft->evaluate((se), (inst), (st)))
#define CMEvaluateSelExpUsingAccessor(se, fn, parm, st) \
  ((se)->ft->evaluateUsingAccessor((se), (fn), (parm), (st)))
#define CMGetDoc(se, st) ((se)->ft->getDOC((se), (st)))
#define CMGetCod(se, st) ((se)->ft->getCOD((se), (st)))
#define CMGetSubCondCountAndType(sc, type, st) ((sc)->ft->getCountAndType((sc), (type), (st)))
#define CMGetSubCondAt(sc, index, st) ((sc)->ft->getSubCondAt((sc), (index), (st)))
#define CMGetPredicateCount(sc, st) ((sc)->ft->getCount((sc), (st)))
#define CMGetPredicateAt(sc, index, st) ((sc)->ft->getPredicateAt((sc), (index), (st)))
#define CMGetPredicate(sc, name, st) ((sc)->ft->getPredicate((sc), (name), (st)))
#define CMGetPredicateData(pr, type, op, lhs, rhs) \
  ((pr)->ft->getData((pr), (type), (op), (lhs), (rhs)))
#define CMEvaluatePredicateUsingAccessor(pr, fn, parm, st) \
  ((pr)->ft->evaluateUsingAccessor((pr), (fn), (parm), (st)))

/* The way back into the broker. */
#define CBGetClassification(b) ((b)->bft->brokerCapabilities)
#define CBBrokerVersion(b) ((b)->bft->brokerVersion)
#define CBBrokerName(b) ((b)->bft->brokerName)
#define CBPrepareAttachThread(b, ctx) ((b)->bft->prepareAttachThread((b), (ctx)))
#define CBAttachThread(b, ctx) ((b)->bft->attachThread((b), (ctx)))
#define CBDetachThread(b, ctx) ((b)->bft->detachThread((b), (ctx)))
#define CBDeliverIndication(b, ctx, ns, ind) ((b)->bft->deliverIndication((b), (ctx), (ns), (ind)))
#define CBEnumInstanceNames(b, ctx, path, st) \
  ((b)->bft->enumerateInstanceNames((b), (ctx), (path), (st)))
#define CBEnumInstances(b, ctx, path, props, st) \
  ((b)->bft->enumerateInstances((b), (ctx), (path), (props), (st)))
#define CBGetInstance(b, ctx, path, props, st) \
  ((b)->bft->getInstance((b), (ctx), (path), (props), (st)))
#define CBCreateInstance(b, ctx, path, inst, st) \
  ((b)->bft->createInstance((b), (ctx), (path), (inst), (st)))
#define CBModifyInstance(b, ctx, path, inst, props) \
  ((b)->bft->modifyInstance((b), (ctx), (path), (inst), (props)))
#define CBSetInstance(b, ctx, path, inst, props) CBModifyInstance(b, ctx, path, inst, props)
#define CBDeleteInstance(b, ctx, path) ((b)->bft->deleteInstance((b), (ctx), (path)))
#define CBExecQuery(b, ctx, path, query, lang, st) \
  ((b)->bft->execQuery((b), (ctx), (path), (query), (lang), (st)))
#define CBAssociators(b, ctx, path, assoc, result, role, resultRole, props, st)                \
  ((b)->bft->associators((b), (ctx), (path), (assoc), (result), (role), (resultRole), (props), \
                         (st)))
#define CBAssociatorNames(b, ctx, path, assoc, result, role, resultRole, st) \
  ((b)->bft->associatorNames((b), (ctx), (path), (assoc), (result), (role), (resultRole), (st)))
#define CBReferences(b, ctx, path, result, role, props, st) \
  ((b)->bft->references((b), (ctx), (path), (result), (role), (props), (st)))
#define CBReferenceNames(b, ctx, path, result, role, st) \
  ((b)->bft->referenceNames((b), (ctx), (path), (result), (role), (st)))
#define CBInvokeMethod(b, ctx, path, method, in, out, st) \
  ((b)->bft->invokeMethod((b), (ctx), (path), (method), (in), (out), (st)))
#define CBSetProperty(b, ctx, path, name, value, type) \
  ((b)->bft->setProperty((b), (ctx), (path), (name), (CMPIValue*)(value), (type)))
#define CBGetProperty(b, ctx, path, name, st) \
  ((b)->bft->getProperty((b), (ctx), (path), (name), (st)))

/* Factories of a provider: each defines `<provider>_Create_<kind>MI` over the functions that begin
   with `prefix`. `hook` is a statement to run in the factory, or CMNoHook; `broker` the variable
   that takes the broker. */
#define CMNoHook ((void)0)

#if CMPI_VERSION >= 210
#define CMPI_STUB_SLOT_210(function) , function
#else
#define CMPI_STUB_SLOT_210(function)
#endif

#define CMPI_STUB_FACTORY(kind, provider, broker, hook, table)                                 \
  CMPI_EXTERN_C CMPI##kind##MI* provider##_Create_##kind##MI(                                  \
      const CMPIBroker* cm_broker_, const CMPIContext* cm_context_, CMPIStatus* cm_status_) {  \
    static CMPI##kind##MI cm_mi_ = {NULL, &table};                                             \
    (void)cm_context_;                                                                         \
    /* Another factory of the library may have set it, and its provider be at work already. */ \
    if (broker != cm_broker_) broker = cm_broker_;                                             \
    CMSetStatus(cm_status_, CMPI_RC_OK);                                                       \
    hook;                                                                                      \
    return &cm_mi_;                                                                            \
  }

#define CMInstanceMIStub(prefix, provider, broker, hook)                    \
  static CMPIInstanceMIFT provider##InstanceFT_ = {                         \
      CMPICurrentVersion,                                                   \
      CMPICurrentVersion,                                                   \
      "instance" #provider,                                                 \
      prefix##Cleanup,                                                      \
      prefix##EnumInstanceNames,                                            \
      prefix##EnumInstances,                                                \
      prefix##GetInstance,                                                  \
      prefix##CreateInstance,                                               \
      prefix##ModifyInstance,                                               \
      prefix##DeleteInstance,                                               \
      prefix##ExecQuery CMPI_STUB_SLOT_210(prefix##EnumInstancesFiltered)}; \
  CMPI_STUB_FACTORY(Instance, provider, broker, hook, provider##InstanceFT_)

#define CMAssociationMIStub(prefix, provider, broker, hook)                  \
  static CMPIAssociationMIFT provider##AssociationFT_ = {                    \
      CMPICurrentVersion,                                                    \
      CMPICurrentVersion,                                                    \
      "association" #provider,                                               \
      prefix##AssociationCleanup,                                            \
      prefix##Associators,                                                   \
      prefix##AssociatorNames,                                               \
      prefix##References,                                                    \
      prefix##ReferenceNames CMPI_STUB_SLOT_210(prefix##AssociatorsFiltered) \
          CMPI_STUB_SLOT_210(prefix##ReferencesFiltered)};                   \
  CMPI_STUB_FACTORY(Association, provider, broker, hook, provider##AssociationFT_)

#define CMMethodMIStub(prefix, provider, broker, hook)                                    \
  static CMPIMethodMIFT provider##MethodFT_ = {CMPICurrentVersion, CMPICurrentVersion,    \
                                               "method" #provider, prefix##MethodCleanup, \
                                               prefix##InvokeMethod};                     \
  CMPI_STUB_FACTORY(Method, provider, broker, hook, provider##MethodFT_)

#if CMPI_VERSION >= 210
#define CMPI_STUB_PROPERTY_ORIGIN(prefix) , prefix##SetPropertyWithOrigin
#elif CMPI_VERSION >= 200
#define CMPI_STUB_PROPERTY_ORIGIN(prefix) , NULL
#else
#define CMPI_STUB_PROPERTY_ORIGIN(prefix)
#endif
#define CMPropertyMIStub(prefix, provider, broker, hook)                            \
  static CMPIPropertyMIFT provider##PropertyFT_ = {                                 \
      CMPICurrentVersion,   CMPICurrentVersion,                                     \
      "property" #provider, prefix##PropertyCleanup,                                \
      prefix##SetProperty,  prefix##GetProperty CMPI_STUB_PROPERTY_ORIGIN(prefix)}; \
  CMPI_STUB_FACTORY(Property, provider, broker, hook, provider##PropertyFT_)

#define CMIndicationMIStub(prefix, provider, broker, hook)                             \
  static CMPIIndicationMIFT provider##IndicationFT_ = {                                \
      CMPICurrentVersion,                                                              \
      CMPICurrentVersion,                                                              \
      "indication" #provider,                                                          \
      prefix##IndicationCleanup,                                                       \
      prefix##AuthorizeFilter,                                                         \
      prefix##MustPoll,                                                                \
      prefix##ActivateFilter,                                                          \
      prefix##DeActivateFilter,                                                        \
      prefix##EnableIndications,                                                       \
      prefix##DisableIndications CMPI_STUB_SLOT_210(prefix##AuthorizeFilterCollection) \
          CMPI_STUB_SLOT_210(prefix##ActivateFilterCollection)                         \
              CMPI_STUB_SLOT_210(prefix##DeActivateFilterCollection)};                 \
  CMPI_STUB_FACTORY(Indication, provider, broker, hook, provider##IndicationFT_)

#endif
