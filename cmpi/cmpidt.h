/* Types, codes, layouts and enumerations of the Common Manageability Programming Interface (CMPI),
   an Open Group standard: the binary interface between a CIM broker and its providers.

   A provider asks for an edition by defining CMPI_VERSION as 100, 200 or 210 before it includes
   any of these headers; without that it gets 2.0, which every present-day broker serves. The
   edition decides how long the tables are that the provider sees and owns. */
#ifndef CMPIDT_H
#define CMPIDT_H

#include <stddef.h>

#define CMPIVersion051 51
#define CMPIVersion060 60
#define CMPIVersion070 70
#define CMPIVersion080 80
#define CMPIVersion085 85
#define CMPIVersion086 86
#define CMPIVersion087 87
#define CMPIVersion090 90
#define CMPIVersion100 100
#define CMPIVersion200 200
#define CMPIVersion210 210

#ifndef CMPI_VERSION
#define CMPI_VERSION 200
#endif
#if CMPI_VERSION != 100 && CMPI_VERSION != 200 && CMPI_VERSION != 210
#error "CMPI_VERSION must be 100, 200 or 210"
#endif
#define CMPICurrentVersion CMPI_VERSION
#define CMPI_VER_100 1
#if CMPI_VERSION >= 200
#define CMPI_VER_200 1
#endif
#if CMPI_VERSION >= 210
#define CMPI_VER_210 1
#endif

#include "cmpi/cmpierror.h"
#include "cmpi/cmpios.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Objects: each is a pointer to { hdl, ft }. */
typedef struct _CMPIBroker CMPIBroker;
typedef struct _CMPIContext CMPIContext;
typedef struct _CMPIResult CMPIResult;
typedef struct _CMPIString CMPIString;
typedef struct _CMPIArray CMPIArray;
typedef struct _CMPIEnumeration CMPIEnumeration;
typedef struct _CMPIInstance CMPIInstance;
typedef struct _CMPIObjectPath CMPIObjectPath;
typedef struct _CMPIArgs CMPIArgs;
typedef struct _CMPIDateTime CMPIDateTime;
typedef struct _CMPISelectExp CMPISelectExp;
typedef struct _CMPISelectCond CMPISelectCond;
typedef struct _CMPISubCond CMPISubCond;
typedef struct _CMPIPredicate CMPIPredicate;
typedef struct _CMPIError CMPIError;
typedef struct _CMPIPropertyList CMPIPropertyList;
typedef struct _CMPIEnumerationFilter CMPIEnumerationFilter;

/* Their function tables. */
typedef struct _CMPIBrokerFT CMPIBrokerFT;
typedef struct _CMPIBrokerEncFT CMPIBrokerEncFT;
typedef struct _CMPIBrokerExtFT CMPIBrokerExtFT;
typedef struct _CMPIBrokerMemFT CMPIBrokerMemFT;
typedef struct _CMPIContextFT CMPIContextFT;
typedef struct _CMPIResultFT CMPIResultFT;
typedef struct _CMPIStringFT CMPIStringFT;
typedef struct _CMPIArrayFT CMPIArrayFT;
typedef struct _CMPIEnumerationFT CMPIEnumerationFT;
typedef struct _CMPIInstanceFT CMPIInstanceFT;
typedef struct _CMPIObjectPathFT CMPIObjectPathFT;
typedef struct _CMPIArgsFT CMPIArgsFT;
typedef struct _CMPIDateTimeFT CMPIDateTimeFT;
typedef struct _CMPISelectExpFT CMPISelectExpFT;
typedef struct _CMPISelectCondFT CMPISelectCondFT;
typedef struct _CMPISubCondFT CMPISubCondFT;
typedef struct _CMPIPredicateFT CMPIPredicateFT;
typedef struct _CMPIErrorFT CMPIErrorFT;
typedef struct _CMPIPropertyListFT CMPIPropertyListFT;
typedef struct _CMPIEnumerationFilterFT CMPIEnumerationFilterFT;

/* What providers implement, and its tables. */
typedef struct _CMPIInstanceMI CMPIInstanceMI;
typedef struct _CMPIAssociationMI CMPIAssociationMI;
typedef struct _CMPIMethodMI CMPIMethodMI;
typedef struct _CMPIPropertyMI CMPIPropertyMI;
typedef struct _CMPIIndicationMI CMPIIndicationMI;
typedef struct _CMPIInstanceMIFT CMPIInstanceMIFT;
typedef struct _CMPIAssociationMIFT CMPIAssociationMIFT;
typedef struct _CMPIMethodMIFT CMPIMethodMIFT;
typedef struct _CMPIPropertyMIFT CMPIPropertyMIFT;
typedef struct _CMPIIndicationMIFT CMPIIndicationMIFT;

/* Scalars. */
typedef unsigned char CMPIBoolean; /* 0 or 1, nothing else */
typedef unsigned short CMPIChar16; /* one UTF-16 code unit */
typedef unsigned char CMPIUint8;
typedef unsigned short CMPIUint16;
typedef unsigned int CMPIUint32;
typedef signed char CMPISint8;
typedef short CMPISint16;
typedef int CMPISint32;
#if defined(_MSC_VER)
typedef unsigned __int64 CMPIUint64;
typedef __int64 CMPISint64;
#elif defined(__GNUC__)
__extension__ typedef unsigned long long CMPIUint64;
__extension__ typedef long long CMPISint64;
#else
typedef unsigned long long CMPIUint64;
typedef long long CMPISint64;
#endif
typedef float CMPIReal32;
typedef double CMPIReal64;
typedef unsigned int CMPICount;
typedef unsigned short CMPIType;
typedef unsigned short CMPIValueState;
typedef unsigned int CMPIFlags;
typedef int CMPIVersion;
typedef void* CMPIMsgFileHandle;
typedef void CMPIGcStat;

#define CMPI_true ((CMPIBoolean)1)
#define CMPI_false ((CMPIBoolean)0)

typedef struct _CMPIValuePtr {
  void* ptr;
  CMPICount length;
} CMPIValuePtr;

/* Providers often pass the address of a variable of the value's own width where a CMPIValue* is
   asked for, and the text itself for CMPI_chars. */
typedef union _CMPIValue {
  CMPIBoolean boolean;
  CMPIChar16 char16;
  CMPIUint8 uint8;
  CMPIUint16 uint16;
  CMPIUint32 uint32;
  CMPIUint64 uint64;
  CMPISint8 sint8;
  CMPISint16 sint16;
  CMPISint32 sint32;
  CMPISint64 sint64;
  CMPIReal32 real32;
  CMPIReal64 real64;
  CMPIInstance* inst;
  CMPIObjectPath* ref;
  CMPIArgs* args;
  CMPISelectExp* filter;
  CMPIEnumeration* Enum;
  CMPIArray* array;
  CMPIString* string;
  char* chars;
  CMPIDateTime* dateTime;
  CMPIValuePtr dataPtr;
  CMPISint8 Byte;
  CMPISint16 Short;
  CMPISint32 Int;
  CMPISint64 Long;
  CMPIReal32 Float;
  CMPIReal64 Double;
} CMPIValue;

typedef struct _CMPIData {
  CMPIType type;
  CMPIValueState state;
  CMPIValue value;
} CMPIData;

typedef CMPIData CMPIAccessor(const char* name, void* parm);

/* Type codes; the array of a type is the type with CMPI_ARRAY added. */
#define CMPI_null 0x0000
#define CMPI_SIMPLE 0x0002
#define CMPI_boolean 0x0002
#define CMPI_char16 0x0003
#define CMPI_REAL 0x0008
#define CMPI_real32 0x0008
#define CMPI_real64 0x000C
#define CMPI_UINT 0x0080
#define CMPI_uint8 0x0080
#define CMPI_uint16 0x0090
#define CMPI_uint32 0x00A0
#define CMPI_uint64 0x00B0
#define CMPI_SINT 0x00C0
#define CMPI_sint8 0x00C0
#define CMPI_sint16 0x00D0
#define CMPI_sint32 0x00E0
#define CMPI_sint64 0x00F0
#define CMPI_INTEGER 0x00C0
#define CMPI_ENC 0x1000
#define CMPI_instance 0x1000
#define CMPI_ref 0x1100
#define CMPI_args 0x1200
#define CMPI_class 0x1300
#define CMPI_filter 0x1400
#define CMPI_enumeration 0x1500
#define CMPI_string 0x1600
#define CMPI_chars 0x1700
#define CMPI_dateTime 0x1800
#define CMPI_ptr 0x1900
#define CMPI_charsptr 0x1A00
#define CMPI_ARRAY 0x2000

#define CMPI_SIMPLEA (CMPI_ARRAY | CMPI_SIMPLE)
#define CMPI_booleanA (CMPI_ARRAY | CMPI_boolean)
#define CMPI_char16A (CMPI_ARRAY | CMPI_char16)
#define CMPI_REALA (CMPI_ARRAY | CMPI_REAL)
#define CMPI_real32A (CMPI_ARRAY | CMPI_real32)
#define CMPI_real64A (CMPI_ARRAY | CMPI_real64)
#define CMPI_UINTA (CMPI_ARRAY | CMPI_UINT)
#define CMPI_uint8A (CMPI_ARRAY | CMPI_uint8)
#define CMPI_uint16A (CMPI_ARRAY | CMPI_uint16)
#define CMPI_uint32A (CMPI_ARRAY | CMPI_uint32)
#define CMPI_uint64A (CMPI_ARRAY | CMPI_uint64)
#define CMPI_SINTA (CMPI_ARRAY | CMPI_SINT)
#define CMPI_sint8A (CMPI_ARRAY | CMPI_sint8)
#define CMPI_sint16A (CMPI_ARRAY | CMPI_sint16)
#define CMPI_sint32A (CMPI_ARRAY | CMPI_sint32)
#define CMPI_sint64A (CMPI_ARRAY | CMPI_sint64)
#define CMPI_INTEGERA (CMPI_ARRAY | CMPI_INTEGER)
#define CMPI_ENCA (CMPI_ARRAY | CMPI_ENC)
#define CMPI_instanceA (CMPI_ARRAY | CMPI_instance)
#define CMPI_refA (CMPI_ARRAY | CMPI_ref)
#define CMPI_stringA (CMPI_ARRAY | CMPI_string)
#define CMPI_charsA (CMPI_ARRAY | CMPI_chars)
#define CMPI_dateTimeA (CMPI_ARRAY | CMPI_dateTime)
#define CMPI_charsptrA (CMPI_ARRAY | CMPI_charsptr)

#define CMPI_Byte CMPI_sint8
#define CMPI_Short CMPI_sint16
#define CMPI_Int CMPI_sint32
#define CMPI_Long CMPI_sint64
#define CMPI_Float CMPI_real32
#define CMPI_Double CMPI_real64
#define CMPI_keyInteger CMPI_sint64
#define CMPI_keyString CMPI_string
#define CMPI_keyBoolean CMPI_boolean
#define CMPI_keyRef CMPI_ref

/* For the right-hand sides of predicates only. */
#define CMPI_charString CMPI_string
#define CMPI_integerString 0x16F0
#define CMPI_realString 0x160C
#define CMPI_numericString 0x16FC
#define CMPI_booleanString 0x1602
#define CMPI_dateTimeString 0x1E00
#define CMPI_classNameString 0x1700
#define CMPI_nameString 0x1E00

/* Value states; they combine. */
#define CMPI_goodValue 0
#define CMPI_nullValue 0x0100
#define CMPI_keyValue 0x0200
#define CMPI_notFound 0x0400
#define CMPI_badValue 0x8000

typedef enum _CMPIrc {
  CMPI_RC_OK = 0,
  CMPI_RC_ERR_FAILED = 1,
  CMPI_RC_ERR_ACCESS_DENIED = 2,
  CMPI_RC_ERR_INVALID_NAMESPACE = 3,
  CMPI_RC_ERR_INVALID_PARAMETER = 4,
  CMPI_RC_ERR_INVALID_CLASS = 5,
  CMPI_RC_ERR_NOT_FOUND = 6,
  CMPI_RC_ERR_NOT_SUPPORTED = 7,
  CMPI_RC_ERR_CLASS_HAS_CHILDREN = 8,
  CMPI_RC_ERR_CLASS_HAS_INSTANCES = 9,
  CMPI_RC_ERR_INVALID_SUPERCLASS = 10,
  CMPI_RC_ERR_ALREADY_EXISTS = 11,
  CMPI_RC_ERR_NO_SUCH_PROPERTY = 12,
  CMPI_RC_ERR_TYPE_MISMATCH = 13,
  CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED = 14,
  CMPI_RC_ERR_INVALID_QUERY = 15,
  CMPI_RC_ERR_METHOD_NOT_AVAILABLE = 16,
  CMPI_RC_ERR_METHOD_NOT_FOUND = 17,
  CMPI_RC_NO_MORE_ELEMENTS = 18,
  CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED = 27,
  CMPI_RC_ERR_QUERY_FEATURE_NOT_SUPPORTED = 29,
  CMPI_RC_DO_NOT_UNLOAD = 50, /* from cleanup only */
  CMPI_RC_NEVER_UNLOAD = 51,  /* from cleanup only */
  CMPI_RC_ERR_INVALID_HANDLE = 60,
  CMPI_RC_ERR_INVALID_DATA_TYPE = 61,
  CMPI_RC_ERR_NOT_IN_CODEPAGE = 62,
  CMPI_RC_ERROR_SYSTEM = 100,
  CMPI_RC_ERROR = 200
} CMPIrc;

typedef struct _CMPIStatus {
  CMPIrc rc;
  CMPIString* msg; /* may be NULL */
} CMPIStatus;

/* The names of the context entries. */
#define CMPIInitNameSpace "CMPIInitNameSpace"
#define CMPIInvocationFlags "CMPIInvocationFlags"
#define CMPIPrincipal "CMPIPrincipal"
#define CMPIRole "CMPIRole"
#define CMPIAcceptLanguage "CMPIAcceptLanguage"
#define CMPIContentLanguage "CMPIContentLanguage"

/* Bits of the entry CMPIInvocationFlags. */
#define CMPI_FLAG_LocalOnly 1
#define CMPI_FLAG_DeepInheritance 2
#define CMPI_FLAG_IncludeQualifiers 4
#define CMPI_FLAG_IncludeClassOrigin 8

/* Broker capabilities; each includes what it depends on. */
#define CMPI_MB_BasicRead 0x00000001
#define CMPI_MB_BasicWrite 0x00000003
#define CMPI_MB_InstanceManipulation 0x00000007
#define CMPI_MB_AssociationTraversal 0x00000009
#define CMPI_MB_QueryExecution 0x00000011
#define CMPI_MB_QueryNormalization 0x00000031
#define CMPI_MB_BasicQualifierSupport 0x00000047
#define CMPI_MB_Indications 0x00000081
#define CMPI_MB_OSEncapsulationSupport 0x00000100
#define CMPI_MB_MemEnhancements 0x00004000
#define CMPI_MB_ExtendedError 0x00008000
#define CMPI_MB_Logging 0x00010000
#define CMPI_MB_Tracing 0x00020000
#define CMPI_MB_PropertyFiltering 0x00040001
#define CMPI_MB_CodepageConversion 0x00080000

typedef enum _CMPIPredOp {
  CMPI_PredOp_Equals = 1,
  CMPI_PredOp_NotEquals = 2,
  CMPI_PredOp_LessThan = 3,
  CMPI_PredOp_GreaterThanOrEquals = 4,
  CMPI_PredOp_GreaterThan = 5,
  CMPI_PredOp_LessThanOrEquals = 6,
  CMPI_PredOp_Isa = 7,
  CMPI_PredOp_NotIsa = 8,
  CMPI_PredOp_Like = 9,
  CMPI_PredOp_NotLike = 10,
  CMPI_PredOp_Not_Null = 11,
  CMPI_PredOp_Null = 12,
  CMPI_PredOp_And = 13,
  CMPI_PredOp_Or = 14
} CMPIPredOp;

typedef enum _CMPISelectCondType {
  CMPI_COND_DOC = 0, /* an OR of ANDs */
  CMPI_COND_COD = 1  /* an AND of ORs */
} CMPISelectCondType;

typedef enum _CMPISeverity {
  CMPI_SEV_ERROR = 1,
  CMPI_SEV_INFO = 2,
  CMPI_SEV_WARNING = 3,
  CMPI_DEV_DEBUG = 4
} CMPISeverity;

typedef enum _CMPILevel { CMPI_LEV_INFO = 1, CMPI_LEV_WARNING = 2, CMPI_LEV_VERBOSE = 3 } CMPILevel;

typedef enum _CMPICodepageID {
  CMPI_CP_SYSTEM = 1,
  CMPI_CP_US_ASCII = 2,
  CMPI_CP_UTF16 = 3
} CMPICodepageID;

#ifdef __cplusplus
}
#endif

#endif
