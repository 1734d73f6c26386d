/* The binary layout, checked by the compiler: 64-bit Linux and Windows alike. Include it in one
   file of each build; it holds no code. */
#ifndef CMPILAYOUT_H
#define CMPILAYOUT_H

#include "cmpi/cmpift.h"

#if defined(__cplusplus)
#define CMPI_CHECK(name, condition) static_assert(condition, #name)
#else
#define CMPI_CHECK(name, condition) extern char cmpi_check_##name[(condition) ? 1 : -1]
#endif
#define CMPI_CHECK_SIZE(type, bytes) CMPI_CHECK(type##_size, sizeof(type) == (bytes))
#define CMPI_CHECK_AT(type, member, bytes) \
  CMPI_CHECK(type##_##member, offsetof(type, member) == (bytes))
#define CMPI_CHECK_HEAD(type)  \
  CMPI_CHECK_SIZE(type, 16);   \
  CMPI_CHECK_AT(type, hdl, 0); \
  CMPI_CHECK_AT(type, ft, 8)
/* A table's size, which grew with the editions. */
#if CMPI_VERSION == 100
#define CMPI_CHECK_TABLE(type, at100, at200, at210) CMPI_CHECK_SIZE(type, at100)
#elif CMPI_VERSION == 200
#define CMPI_CHECK_TABLE(type, at100, at200, at210) CMPI_CHECK_SIZE(type, at200)
#else
#define CMPI_CHECK_TABLE(type, at100, at200, at210) CMPI_CHECK_SIZE(type, at210)
#endif

CMPI_CHECK_SIZE(CMPIBoolean, 1);
CMPI_CHECK_SIZE(CMPIChar16, 2);
CMPI_CHECK_SIZE(CMPIUint8, 1);
CMPI_CHECK_SIZE(CMPISint8, 1);
CMPI_CHECK_SIZE(CMPIUint16, 2);
CMPI_CHECK_SIZE(CMPISint16, 2);
CMPI_CHECK_SIZE(CMPIUint32, 4);
CMPI_CHECK_SIZE(CMPISint32, 4);
CMPI_CHECK_SIZE(CMPIUint64, 8);
CMPI_CHECK_SIZE(CMPISint64, 8);
CMPI_CHECK_SIZE(CMPIReal32, 4);
CMPI_CHECK_SIZE(CMPIReal64, 8);
CMPI_CHECK_SIZE(CMPICount, 4);
CMPI_CHECK_SIZE(CMPIType, 2);
CMPI_CHECK_SIZE(CMPIValueState, 2);
CMPI_CHECK_SIZE(CMPIFlags, 4);
CMPI_CHECK_SIZE(CMPIVersion, 4);
CMPI_CHECK_SIZE(CMPIrc, 4);
CMPI_CHECK_SIZE(CMPIPredOp, 4);
CMPI_CHECK_SIZE(CMPISeverity, 4);
CMPI_CHECK_SIZE(CMPIErrorProbableCause, 4);
CMPI_CHECK_SIZE(CMPIMsgFileHandle, 8);
CMPI_CHECK_SIZE(CMPI_THREAD_TYPE, 8);
CMPI_CHECK_SIZE(CMPI_MUTEX_TYPE, 8);
CMPI_CHECK_SIZE(CMPI_COND_TYPE, 8);
CMPI_CHECK_SIZE(CMPI_THREAD_KEY_TYPE, 4);

CMPI_CHECK_SIZE(CMPIValuePtr, 16);
CMPI_CHECK_AT(CMPIValuePtr, ptr, 0);
CMPI_CHECK_AT(CMPIValuePtr, length, 8);
CMPI_CHECK_SIZE(CMPIValue, 16);
CMPI_CHECK_SIZE(CMPIData, 24);
CMPI_CHECK_AT(CMPIData, type, 0);
CMPI_CHECK_AT(CMPIData, state, 2);
CMPI_CHECK_AT(CMPIData, value, 8);
CMPI_CHECK_SIZE(CMPIStatus, 16);
CMPI_CHECK_AT(CMPIStatus, rc, 0);
CMPI_CHECK_AT(CMPIStatus, msg, 8);

CMPI_CHECK_AT(CMPIValue, boolean, 0);
CMPI_CHECK_AT(CMPIValue, char16, 0);
CMPI_CHECK_AT(CMPIValue, uint8, 0);
CMPI_CHECK_AT(CMPIValue, uint16, 0);
CMPI_CHECK_AT(CMPIValue, uint32, 0);
CMPI_CHECK_AT(CMPIValue, uint64, 0);
CMPI_CHECK_AT(CMPIValue, sint8, 0);
CMPI_CHECK_AT(CMPIValue, sint16, 0);
CMPI_CHECK_AT(CMPIValue, sint32, 0);
CMPI_CHECK_AT(CMPIValue, sint64, 0);
CMPI_CHECK_AT(CMPIValue, real32, 0);
CMPI_CHECK_AT(CMPIValue, real64, 0);
CMPI_CHECK_AT(CMPIValue, inst, 0);
CMPI_CHECK_AT(CMPIValue, ref, 0);
CMPI_CHECK_AT(CMPIValue, args, 0);
CMPI_CHECK_AT(CMPIValue, filter, 0);
CMPI_CHECK_AT(CMPIValue, Enum, 0);
CMPI_CHECK_AT(CMPIValue, array, 0);
CMPI_CHECK_AT(CMPIValue, string, 0);
CMPI_CHECK_AT(CMPIValue, chars, 0);
CMPI_CHECK_AT(CMPIValue, dateTime, 0);
CMPI_CHECK_AT(CMPIValue, dataPtr, 0);
CMPI_CHECK_AT(CMPIValue, Byte, 0);
CMPI_CHECK_AT(CMPIValue, Short, 0);
CMPI_CHECK_AT(CMPIValue, Int, 0);
CMPI_CHECK_AT(CMPIValue, Long, 0);
CMPI_CHECK_AT(CMPIValue, Float, 0);
CMPI_CHECK_AT(CMPIValue, Double, 0);

CMPI_CHECK_HEAD(CMPIContext);
CMPI_CHECK_HEAD(CMPIResult);
CMPI_CHECK_HEAD(CMPIInstance);
CMPI_CHECK_HEAD(CMPIObjectPath);
CMPI_CHECK_HEAD(CMPIArgs);
CMPI_CHECK_HEAD(CMPIString);
CMPI_CHECK_HEAD(CMPIArray);
CMPI_CHECK_HEAD(CMPIEnumeration);
CMPI_CHECK_HEAD(CMPIDateTime);
CMPI_CHECK_HEAD(CMPISelectExp);
CMPI_CHECK_HEAD(CMPISelectCond);
CMPI_CHECK_HEAD(CMPISubCond);
CMPI_CHECK_HEAD(CMPIPredicate);
#if CMPI_VERSION >= 200
CMPI_CHECK_HEAD(CMPIError);
#endif
#if CMPI_VERSION >= 210
CMPI_CHECK_HEAD(CMPIPropertyList);
#endif
#if CMPI_VERSION >= 210
CMPI_CHECK_HEAD(CMPIEnumerationFilter);
#endif
CMPI_CHECK_HEAD(CMPIInstanceMI);
CMPI_CHECK_HEAD(CMPIAssociationMI);
CMPI_CHECK_HEAD(CMPIMethodMI);
CMPI_CHECK_HEAD(CMPIPropertyMI);
CMPI_CHECK_HEAD(CMPIIndicationMI);

CMPI_CHECK_TABLE(CMPIBroker, 32, 40, 40);
CMPI_CHECK_AT(CMPIBroker, hdl, 0);
CMPI_CHECK_AT(CMPIBroker, bft, 8);
CMPI_CHECK_AT(CMPIBroker, eft, 16);
CMPI_CHECK_AT(CMPIBroker, xft, 24);
#if CMPI_VERSION >= 200
CMPI_CHECK_AT(CMPIBroker, mft, 32);
#endif

CMPI_CHECK_TABLE(CMPIBrokerFT, 160, 160, 184);
CMPI_CHECK_AT(CMPIBrokerFT, brokerCapabilities, 0);
CMPI_CHECK_AT(CMPIBrokerFT, brokerVersion, 4);
CMPI_CHECK_AT(CMPIBrokerFT, brokerName, 8);
CMPI_CHECK_AT(CMPIBrokerFT, prepareAttachThread, 16);
CMPI_CHECK_AT(CMPIBrokerFT, attachThread, 24);
CMPI_CHECK_AT(CMPIBrokerFT, detachThread, 32);
CMPI_CHECK_AT(CMPIBrokerFT, deliverIndication, 40);
CMPI_CHECK_AT(CMPIBrokerFT, enumerateInstanceNames, 48);
CMPI_CHECK_AT(CMPIBrokerFT, getInstance, 56);
CMPI_CHECK_AT(CMPIBrokerFT, createInstance, 64);
CMPI_CHECK_AT(CMPIBrokerFT, modifyInstance, 72);
CMPI_CHECK_AT(CMPIBrokerFT, deleteInstance, 80);
CMPI_CHECK_AT(CMPIBrokerFT, execQuery, 88);
CMPI_CHECK_AT(CMPIBrokerFT, enumerateInstances, 96);
CMPI_CHECK_AT(CMPIBrokerFT, associators, 104);
CMPI_CHECK_AT(CMPIBrokerFT, associatorNames, 112);
CMPI_CHECK_AT(CMPIBrokerFT, references, 120);
CMPI_CHECK_AT(CMPIBrokerFT, referenceNames, 128);
CMPI_CHECK_AT(CMPIBrokerFT, invokeMethod, 136);
CMPI_CHECK_AT(CMPIBrokerFT, setProperty, 144);
CMPI_CHECK_AT(CMPIBrokerFT, getProperty, 152);
#if CMPI_VERSION >= 210
CMPI_CHECK_AT(CMPIBrokerFT, enumerateInstancesFiltered, 160);
CMPI_CHECK_AT(CMPIBrokerFT, associatorsFiltered, 168);
CMPI_CHECK_AT(CMPIBrokerFT, referencesFiltered, 176);
#endif

CMPI_CHECK_TABLE(CMPIBrokerEncFT, 136, 168, 192);
CMPI_CHECK_AT(CMPIBrokerEncFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIBrokerEncFT, newInstance, 8);
CMPI_CHECK_AT(CMPIBrokerEncFT, newObjectPath, 16);
CMPI_CHECK_AT(CMPIBrokerEncFT, newArgs, 24);
CMPI_CHECK_AT(CMPIBrokerEncFT, newString, 32);
CMPI_CHECK_AT(CMPIBrokerEncFT, newArray, 40);
CMPI_CHECK_AT(CMPIBrokerEncFT, newDateTime, 48);
CMPI_CHECK_AT(CMPIBrokerEncFT, newDateTimeFromBinary, 56);
CMPI_CHECK_AT(CMPIBrokerEncFT, newDateTimeFromChars, 64);
CMPI_CHECK_AT(CMPIBrokerEncFT, newSelectExp, 72);
CMPI_CHECK_AT(CMPIBrokerEncFT, classPathIsA, 80);
CMPI_CHECK_AT(CMPIBrokerEncFT, toString, 88);
CMPI_CHECK_AT(CMPIBrokerEncFT, isOfType, 96);
CMPI_CHECK_AT(CMPIBrokerEncFT, getType, 104);
CMPI_CHECK_AT(CMPIBrokerEncFT, getMessage, 112);
CMPI_CHECK_AT(CMPIBrokerEncFT, logMessage, 120);
CMPI_CHECK_AT(CMPIBrokerEncFT, trace, 128);
#if CMPI_VERSION >= 200
CMPI_CHECK_AT(CMPIBrokerEncFT, newCMPIError, 136);
CMPI_CHECK_AT(CMPIBrokerEncFT, openMessageFile, 144);
CMPI_CHECK_AT(CMPIBrokerEncFT, closeMessageFile, 152);
CMPI_CHECK_AT(CMPIBrokerEncFT, getMessage2, 160);
#endif
#if CMPI_VERSION >= 210
CMPI_CHECK_AT(CMPIBrokerEncFT, newPropertyList, 168);
CMPI_CHECK_AT(CMPIBrokerEncFT, newStringCP, 176);
CMPI_CHECK_AT(CMPIBrokerEncFT, newEnumerationFilter, 184);
#endif

CMPI_CHECK_TABLE(CMPIBrokerExtFT, 168, 168, 200);
CMPI_CHECK_AT(CMPIBrokerExtFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIBrokerExtFT, resolveFileName, 8);
CMPI_CHECK_AT(CMPIBrokerExtFT, newThread, 16);
CMPI_CHECK_AT(CMPIBrokerExtFT, joinThread, 24);
CMPI_CHECK_AT(CMPIBrokerExtFT, exitThread, 32);
CMPI_CHECK_AT(CMPIBrokerExtFT, cancelThread, 40);
CMPI_CHECK_AT(CMPIBrokerExtFT, threadSleep, 48);
CMPI_CHECK_AT(CMPIBrokerExtFT, threadOnce, 56);
CMPI_CHECK_AT(CMPIBrokerExtFT, createThreadKey, 64);
CMPI_CHECK_AT(CMPIBrokerExtFT, destroyThreadKey, 72);
CMPI_CHECK_AT(CMPIBrokerExtFT, getThreadSpecific, 80);
CMPI_CHECK_AT(CMPIBrokerExtFT, setThreadSpecific, 88);
CMPI_CHECK_AT(CMPIBrokerExtFT, newMutex, 96);
CMPI_CHECK_AT(CMPIBrokerExtFT, destroyMutex, 104);
CMPI_CHECK_AT(CMPIBrokerExtFT, lockMutex, 112);
CMPI_CHECK_AT(CMPIBrokerExtFT, unlockMutex, 120);
CMPI_CHECK_AT(CMPIBrokerExtFT, newCondition, 128);
CMPI_CHECK_AT(CMPIBrokerExtFT, destroyCondition, 136);
CMPI_CHECK_AT(CMPIBrokerExtFT, condWait, 144);
CMPI_CHECK_AT(CMPIBrokerExtFT, timedCondWait, 152);
CMPI_CHECK_AT(CMPIBrokerExtFT, signalCondition, 160);
#if CMPI_VERSION >= 210
CMPI_CHECK_AT(CMPIBrokerExtFT, destroyMutex2, 168);
CMPI_CHECK_AT(CMPIBrokerExtFT, lockMutex2, 176);
CMPI_CHECK_AT(CMPIBrokerExtFT, unlockMutex2, 184);
CMPI_CHECK_AT(CMPIBrokerExtFT, destroyCondition2, 192);
#endif

#if CMPI_VERSION >= 200
CMPI_CHECK_TABLE(CMPIBrokerMemFT, 0, 120, 128);
CMPI_CHECK_AT(CMPIBrokerMemFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIBrokerMemFT, mark, 8);
CMPI_CHECK_AT(CMPIBrokerMemFT, release, 16);
CMPI_CHECK_AT(CMPIBrokerMemFT, cmpiMalloc, 24);
CMPI_CHECK_AT(CMPIBrokerMemFT, cmpiCalloc, 32);
CMPI_CHECK_AT(CMPIBrokerMemFT, cmpiRealloc, 40);
CMPI_CHECK_AT(CMPIBrokerMemFT, cmpiStrDup, 48);
CMPI_CHECK_AT(CMPIBrokerMemFT, cmpiFree, 56);
CMPI_CHECK_AT(CMPIBrokerMemFT, freeInstance, 64);
CMPI_CHECK_AT(CMPIBrokerMemFT, freeObjectPath, 72);
CMPI_CHECK_AT(CMPIBrokerMemFT, freeArgs, 80);
CMPI_CHECK_AT(CMPIBrokerMemFT, freeString, 88);
CMPI_CHECK_AT(CMPIBrokerMemFT, freeArray, 96);
CMPI_CHECK_AT(CMPIBrokerMemFT, freeDateTime, 104);
CMPI_CHECK_AT(CMPIBrokerMemFT, freeSelectExp, 112);
#if CMPI_VERSION >= 210
CMPI_CHECK_AT(CMPIBrokerMemFT, freeChars, 120);
#endif
#endif

CMPI_CHECK_TABLE(CMPIContextFT, 56, 56, 56);
CMPI_CHECK_AT(CMPIContextFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIContextFT, release, 8);
CMPI_CHECK_AT(CMPIContextFT, clone, 16);
CMPI_CHECK_AT(CMPIContextFT, getEntry, 24);
CMPI_CHECK_AT(CMPIContextFT, getEntryAt, 32);
CMPI_CHECK_AT(CMPIContextFT, getEntryCount, 40);
CMPI_CHECK_AT(CMPIContextFT, addEntry, 48);

CMPI_CHECK_TABLE(CMPIResultFT, 56, 64, 64);
CMPI_CHECK_AT(CMPIResultFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIResultFT, release, 8);
CMPI_CHECK_AT(CMPIResultFT, clone, 16);
CMPI_CHECK_AT(CMPIResultFT, returnData, 24);
CMPI_CHECK_AT(CMPIResultFT, returnInstance, 32);
CMPI_CHECK_AT(CMPIResultFT, returnObjectPath, 40);
CMPI_CHECK_AT(CMPIResultFT, returnDone, 48);
#if CMPI_VERSION >= 200
CMPI_CHECK_AT(CMPIResultFT, returnError, 56);
#endif

CMPI_CHECK_TABLE(CMPIInstanceFT, 80, 88, 88);
CMPI_CHECK_AT(CMPIInstanceFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIInstanceFT, release, 8);
CMPI_CHECK_AT(CMPIInstanceFT, clone, 16);
CMPI_CHECK_AT(CMPIInstanceFT, getProperty, 24);
CMPI_CHECK_AT(CMPIInstanceFT, getPropertyAt, 32);
CMPI_CHECK_AT(CMPIInstanceFT, getPropertyCount, 40);
CMPI_CHECK_AT(CMPIInstanceFT, setProperty, 48);
CMPI_CHECK_AT(CMPIInstanceFT, getObjectPath, 56);
CMPI_CHECK_AT(CMPIInstanceFT, setPropertyFilter, 64);
CMPI_CHECK_AT(CMPIInstanceFT, setObjectPath, 72);
#if CMPI_VERSION >= 200
CMPI_CHECK_AT(CMPIInstanceFT, setPropertyWithOrigin, 80);
#endif

CMPI_CHECK_TABLE(CMPIObjectPathFT, 160, 160, 160);
CMPI_CHECK_AT(CMPIObjectPathFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIObjectPathFT, release, 8);
CMPI_CHECK_AT(CMPIObjectPathFT, clone, 16);
CMPI_CHECK_AT(CMPIObjectPathFT, setNameSpace, 24);
CMPI_CHECK_AT(CMPIObjectPathFT, getNameSpace, 32);
CMPI_CHECK_AT(CMPIObjectPathFT, setHostname, 40);
CMPI_CHECK_AT(CMPIObjectPathFT, getHostname, 48);
CMPI_CHECK_AT(CMPIObjectPathFT, setClassName, 56);
CMPI_CHECK_AT(CMPIObjectPathFT, getClassName, 64);
CMPI_CHECK_AT(CMPIObjectPathFT, addKey, 72);
CMPI_CHECK_AT(CMPIObjectPathFT, getKey, 80);
CMPI_CHECK_AT(CMPIObjectPathFT, getKeyAt, 88);
CMPI_CHECK_AT(CMPIObjectPathFT, getKeyCount, 96);
CMPI_CHECK_AT(CMPIObjectPathFT, setNameSpaceFromObjectPath, 104);
CMPI_CHECK_AT(CMPIObjectPathFT, setHostAndNameSpaceFromObjectPath, 112);
CMPI_CHECK_AT(CMPIObjectPathFT, getClassQualifier, 120);
CMPI_CHECK_AT(CMPIObjectPathFT, getPropertyQualifier, 128);
CMPI_CHECK_AT(CMPIObjectPathFT, getMethodQualifier, 136);
CMPI_CHECK_AT(CMPIObjectPathFT, getParameterQualifier, 144);
CMPI_CHECK_AT(CMPIObjectPathFT, toString, 152);

CMPI_CHECK_TABLE(CMPIArgsFT, 56, 56, 56);
CMPI_CHECK_AT(CMPIArgsFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIArgsFT, release, 8);
CMPI_CHECK_AT(CMPIArgsFT, clone, 16);
CMPI_CHECK_AT(CMPIArgsFT, addArg, 24);
CMPI_CHECK_AT(CMPIArgsFT, getArg, 32);
CMPI_CHECK_AT(CMPIArgsFT, getArgAt, 40);
CMPI_CHECK_AT(CMPIArgsFT, getArgCount, 48);

CMPI_CHECK_TABLE(CMPIStringFT, 32, 32, 40);
CMPI_CHECK_AT(CMPIStringFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIStringFT, release, 8);
CMPI_CHECK_AT(CMPIStringFT, clone, 16);
CMPI_CHECK_AT(CMPIStringFT, getCharPtr, 24);
#if CMPI_VERSION >= 210
CMPI_CHECK_AT(CMPIStringFT, newCharsCP, 32);
#endif

CMPI_CHECK_TABLE(CMPIArrayFT, 56, 56, 56);
CMPI_CHECK_AT(CMPIArrayFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIArrayFT, release, 8);
CMPI_CHECK_AT(CMPIArrayFT, clone, 16);
CMPI_CHECK_AT(CMPIArrayFT, getSize, 24);
CMPI_CHECK_AT(CMPIArrayFT, getSimpleType, 32);
CMPI_CHECK_AT(CMPIArrayFT, getElementAt, 40);
CMPI_CHECK_AT(CMPIArrayFT, setElementAt, 48);

CMPI_CHECK_TABLE(CMPIEnumerationFT, 48, 48, 48);
CMPI_CHECK_AT(CMPIEnumerationFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIEnumerationFT, release, 8);
CMPI_CHECK_AT(CMPIEnumerationFT, clone, 16);
CMPI_CHECK_AT(CMPIEnumerationFT, getNext, 24);
CMPI_CHECK_AT(CMPIEnumerationFT, hasNext, 32);
CMPI_CHECK_AT(CMPIEnumerationFT, toArray, 40);

CMPI_CHECK_TABLE(CMPIDateTimeFT, 48, 48, 48);
CMPI_CHECK_AT(CMPIDateTimeFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIDateTimeFT, release, 8);
CMPI_CHECK_AT(CMPIDateTimeFT, clone, 16);
CMPI_CHECK_AT(CMPIDateTimeFT, getBinaryFormat, 24);
CMPI_CHECK_AT(CMPIDateTimeFT, getStringFormat, 32);
CMPI_CHECK_AT(CMPIDateTimeFT, isInterval, 40);

CMPI_CHECK_TABLE(CMPISelectExpFT, 64, 64, 64);
CMPI_CHECK_AT(CMPISelectExpFT, ftVersion, 0);
CMPI_CHECK_AT(CMPISelectExpFT, release, 8);
CMPI_CHECK_AT(CMPISelectExpFT, clone, 16);
CMPI_CHECK_AT(CMPISelectExpFT, evaluate, 24);
CMPI_CHECK_AT(CMPISelectExpFT, getString, 32);
CMPI_CHECK_AT(CMPISelectExpFT, getDOC, 40);
CMPI_CHECK_AT(CMPISelectExpFT, getCOD, 48);
CMPI_CHECK_AT(CMPISelectExpFT, evaluateUsingAccessor, 56);

CMPI_CHECK_TABLE(CMPISelectCondFT, 40, 40, 40);
CMPI_CHECK_AT(CMPISelectCondFT, ftVersion, 0);
CMPI_CHECK_AT(CMPISelectCondFT, release, 8);
CMPI_CHECK_AT(CMPISelectCondFT, clone, 16);
CMPI_CHECK_AT(CMPISelectCondFT, getCountAndType, 24);
CMPI_CHECK_AT(CMPISelectCondFT, getSubCondAt, 32);

CMPI_CHECK_TABLE(CMPISubCondFT, 48, 48, 48);
CMPI_CHECK_AT(CMPISubCondFT, ftVersion, 0);
CMPI_CHECK_AT(CMPISubCondFT, release, 8);
CMPI_CHECK_AT(CMPISubCondFT, clone, 16);
CMPI_CHECK_AT(CMPISubCondFT, getCount, 24);
CMPI_CHECK_AT(CMPISubCondFT, getPredicateAt, 32);
CMPI_CHECK_AT(CMPISubCondFT, getPredicate, 40);

CMPI_CHECK_TABLE(CMPIPredicateFT, 40, 40, 40);
CMPI_CHECK_AT(CMPIPredicateFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIPredicateFT, release, 8);
CMPI_CHECK_AT(CMPIPredicateFT, clone, 16);
CMPI_CHECK_AT(CMPIPredicateFT, getData, 24);
CMPI_CHECK_AT(CMPIPredicateFT, evaluateUsingAccessor, 32);

#if CMPI_VERSION >= 200
CMPI_CHECK_TABLE(CMPIErrorFT, 0, 216, 216);
CMPI_CHECK_AT(CMPIErrorFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIErrorFT, release, 8);
CMPI_CHECK_AT(CMPIErrorFT, clone, 16);
CMPI_CHECK_AT(CMPIErrorFT, getErrorType, 24);
CMPI_CHECK_AT(CMPIErrorFT, getOtherErrorType, 32);
CMPI_CHECK_AT(CMPIErrorFT, getOwningEntity, 40);
CMPI_CHECK_AT(CMPIErrorFT, getMessageID, 48);
CMPI_CHECK_AT(CMPIErrorFT, getMessage, 56);
CMPI_CHECK_AT(CMPIErrorFT, getPerceivedSeverity, 64);
CMPI_CHECK_AT(CMPIErrorFT, getProbableCause, 72);
CMPI_CHECK_AT(CMPIErrorFT, getProbableCauseDescription, 80);
CMPI_CHECK_AT(CMPIErrorFT, getRecommendedActions, 88);
CMPI_CHECK_AT(CMPIErrorFT, getErrorSource, 96);
CMPI_CHECK_AT(CMPIErrorFT, getErrorSourceFormat, 104);
CMPI_CHECK_AT(CMPIErrorFT, getOtherErrorSourceFormat, 112);
CMPI_CHECK_AT(CMPIErrorFT, getCIMStatusCode, 120);
CMPI_CHECK_AT(CMPIErrorFT, getCIMStatusCodeDescription, 128);
CMPI_CHECK_AT(CMPIErrorFT, getMessageArguments, 136);
CMPI_CHECK_AT(CMPIErrorFT, setErrorType, 144);
CMPI_CHECK_AT(CMPIErrorFT, setOtherErrorType, 152);
CMPI_CHECK_AT(CMPIErrorFT, setProbableCauseDescription, 160);
CMPI_CHECK_AT(CMPIErrorFT, setRecommendedActions, 168);
CMPI_CHECK_AT(CMPIErrorFT, setErrorSource, 176);
CMPI_CHECK_AT(CMPIErrorFT, setErrorSourceFormat, 184);
CMPI_CHECK_AT(CMPIErrorFT, setOtherErrorSourceFormat, 192);
CMPI_CHECK_AT(CMPIErrorFT, setCIMStatusCodeDescription, 200);
CMPI_CHECK_AT(CMPIErrorFT, setMessageArguments, 208);
#endif

#if CMPI_VERSION >= 210
CMPI_CHECK_TABLE(CMPIPropertyListFT, 0, 0, 40);
CMPI_CHECK_AT(CMPIPropertyListFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIPropertyListFT, release, 8);
CMPI_CHECK_AT(CMPIPropertyListFT, clone, 16);
CMPI_CHECK_AT(CMPIPropertyListFT, isPropertyInList, 24);
CMPI_CHECK_AT(CMPIPropertyListFT, getProperties, 32);
#endif

#if CMPI_VERSION >= 210
CMPI_CHECK_TABLE(CMPIEnumerationFilterFT, 0, 0, 32);
CMPI_CHECK_AT(CMPIEnumerationFilterFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIEnumerationFilterFT, release, 8);
CMPI_CHECK_AT(CMPIEnumerationFilterFT, clone, 16);
CMPI_CHECK_AT(CMPIEnumerationFilterFT, match, 24);
#endif

CMPI_CHECK_TABLE(CMPIInstanceMIFT, 80, 80, 88);
CMPI_CHECK_AT(CMPIInstanceMIFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIInstanceMIFT, miVersion, 4);
CMPI_CHECK_AT(CMPIInstanceMIFT, miName, 8);
CMPI_CHECK_AT(CMPIInstanceMIFT, cleanup, 16);
CMPI_CHECK_AT(CMPIInstanceMIFT, enumerateInstanceNames, 24);
CMPI_CHECK_AT(CMPIInstanceMIFT, enumerateInstances, 32);
CMPI_CHECK_AT(CMPIInstanceMIFT, getInstance, 40);
CMPI_CHECK_AT(CMPIInstanceMIFT, createInstance, 48);
CMPI_CHECK_AT(CMPIInstanceMIFT, modifyInstance, 56);
CMPI_CHECK_AT(CMPIInstanceMIFT, deleteInstance, 64);
CMPI_CHECK_AT(CMPIInstanceMIFT, execQuery, 72);
#if CMPI_VERSION >= 210
CMPI_CHECK_AT(CMPIInstanceMIFT, enumerateInstancesFiltered, 80);
#endif

CMPI_CHECK_TABLE(CMPIAssociationMIFT, 56, 56, 72);
CMPI_CHECK_AT(CMPIAssociationMIFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIAssociationMIFT, miVersion, 4);
CMPI_CHECK_AT(CMPIAssociationMIFT, miName, 8);
CMPI_CHECK_AT(CMPIAssociationMIFT, cleanup, 16);
CMPI_CHECK_AT(CMPIAssociationMIFT, associators, 24);
CMPI_CHECK_AT(CMPIAssociationMIFT, associatorNames, 32);
CMPI_CHECK_AT(CMPIAssociationMIFT, references, 40);
CMPI_CHECK_AT(CMPIAssociationMIFT, referenceNames, 48);
#if CMPI_VERSION >= 210
CMPI_CHECK_AT(CMPIAssociationMIFT, associatorsFiltered, 56);
CMPI_CHECK_AT(CMPIAssociationMIFT, referencesFiltered, 64);
#endif

CMPI_CHECK_TABLE(CMPIMethodMIFT, 32, 32, 32);
CMPI_CHECK_AT(CMPIMethodMIFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIMethodMIFT, miVersion, 4);
CMPI_CHECK_AT(CMPIMethodMIFT, miName, 8);
CMPI_CHECK_AT(CMPIMethodMIFT, cleanup, 16);
CMPI_CHECK_AT(CMPIMethodMIFT, invokeMethod, 24);

CMPI_CHECK_TABLE(CMPIPropertyMIFT, 40, 48, 48);
CMPI_CHECK_AT(CMPIPropertyMIFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIPropertyMIFT, miVersion, 4);
CMPI_CHECK_AT(CMPIPropertyMIFT, miName, 8);
CMPI_CHECK_AT(CMPIPropertyMIFT, cleanup, 16);
CMPI_CHECK_AT(CMPIPropertyMIFT, setProperty, 24);
CMPI_CHECK_AT(CMPIPropertyMIFT, getProperty, 32);
#if CMPI_VERSION >= 200
CMPI_CHECK_AT(CMPIPropertyMIFT, setPropertyWithOrigin, 40);
#endif

CMPI_CHECK_TABLE(CMPIIndicationMIFT, 72, 72, 96);
CMPI_CHECK_AT(CMPIIndicationMIFT, ftVersion, 0);
CMPI_CHECK_AT(CMPIIndicationMIFT, miVersion, 4);
CMPI_CHECK_AT(CMPIIndicationMIFT, miName, 8);
CMPI_CHECK_AT(CMPIIndicationMIFT, cleanup, 16);
CMPI_CHECK_AT(CMPIIndicationMIFT, authorizeFilter, 24);
CMPI_CHECK_AT(CMPIIndicationMIFT, mustPoll, 32);
CMPI_CHECK_AT(CMPIIndicationMIFT, activateFilter, 40);
CMPI_CHECK_AT(CMPIIndicationMIFT, deActivateFilter, 48);
CMPI_CHECK_AT(CMPIIndicationMIFT, enableIndications, 56);
CMPI_CHECK_AT(CMPIIndicationMIFT, disableIndications, 64);
#if CMPI_VERSION >= 210
CMPI_CHECK_AT(CMPIIndicationMIFT, authorizeFilterCollection, 72);
CMPI_CHECK_AT(CMPIIndicationMIFT, activateFilterCollection, 80);
CMPI_CHECK_AT(CMPIIndicationMIFT, deActivateFilterCollection, 88);
#endif

#endif
