#include "groups.h"

#if CMPI_VERSION >= 200

#define SLOT(name) CALL(c, CMPIErrorFT, ft, name)

/* The slots that get a text, and those that set one. */
typedef struct TextGetter {
  const char* name;
  size_t offset;
  CMPIString* (*get)(const CMPIError*, CMPIStatus*);
} TextGetter;
typedef struct TextSetter {
  const char* name;
  size_t offset;
  CMPIStatus (*set)(const CMPIError*, const char*);
} TextSetter;
#define NAMED(name) \
  { #name, offsetof(CMPIErrorFT, name), ft->name }

static CMPIString* get(Checks* c, const TextGetter* slot, const CMPIError* error, CMPIStatus* st) {
  noteCall(c, "CMPIErrorFT", sizeof(CMPIErrorFT), slot->offset, slot->name);
  return slot->get(error, st);
}

static CMPIStatus set(Checks* c, const TextSetter* slot, const CMPIError* error, const char* text) {
  noteCall(c, "CMPIErrorFT", sizeof(CMPIErrorFT), slot->offset, slot->name);
  return slot->set(error, text);
}

static void refuseGetting(Checks* c, const CMPIErrorFT* ft, const CMPIError* bad) {
  const TextGetter getters[] = {NAMED(getOtherErrorType),
                                NAMED(getOwningEntity),
                                NAMED(getMessageID),
                                NAMED(getMessage),
                                NAMED(getErrorSource),
                                NAMED(getProbableCauseDescription),
                                NAMED(getOtherErrorSourceFormat),
                                NAMED(getCIMStatusCodeDescription)};
  unsigned at;
  for (at = 0; at < sizeof getters / sizeof *getters; ++at) {
    isNothing(c, get(c, &getters[at], bad, fresh(c)));
    refused(c, CMPI_RC_ERR_INVALID_HANDLE);
    isNothing(c, get(c, &getters[at], bad, NULL));
  }
  isNothing(c, SLOT(getRecommendedActions)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(getMessageArguments)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the type", 0, SLOT(getErrorType)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the severity", 0, SLOT(getPerceivedSeverity)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the cause", 0, SLOT(getProbableCause)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the format", 0, SLOT(getErrorSourceFormat)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the code", 0, SLOT(getCIMStatusCode)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
}

static void refuse(Checks* c, const CMPIErrorFT* ft, const CMPIError* bad) {
  const TextSetter setters[] = {NAMED(setOtherErrorType), NAMED(setProbableCauseDescription),
                                NAMED(setErrorSource), NAMED(setOtherErrorSourceFormat),
                                NAMED(setCIMStatusCodeDescription)};
  const CMPIArray* texts = CMNewArray(c->broker, 1, CMPI_string, NULL);
  unsigned at;
  refuseGetting(c, ft, bad);
  for (at = 0; at < sizeof setters / sizeof *setters; ++at) {
    refuses(c, CMPI_RC_ERR_INVALID_HANDLE, set(c, &setters[at], bad, "x"));
  }
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setErrorType)(bad, UnknownErrorType));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(setErrorSourceFormat)(bad, CMPIErrorSrcFormatUnknown));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setRecommendedActions)(bad, texts));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setMessageArguments)(bad, texts));
}

/* Each text is not set at first, then what it was set to, then not set again. */
static void checkTexts(Checks* c, const CMPIError* error) {
  const CMPIErrorFT* ft = error->ft;
  const TextGetter getters[] = {NAMED(getOtherErrorType), NAMED(getProbableCauseDescription),
                                NAMED(getErrorSource), NAMED(getOtherErrorSourceFormat),
                                NAMED(getCIMStatusCodeDescription)};
  const TextSetter setters[] = {NAMED(setOtherErrorType), NAMED(setProbableCauseDescription),
                                NAMED(setErrorSource), NAMED(setOtherErrorSourceFormat),
                                NAMED(setCIMStatusCodeDescription)};
  unsigned at;
  for (at = 0; at < sizeof getters / sizeof *getters; ++at) {
    isNothing(c, get(c, &getters[at], error, fresh(c)));
    accepted(c);
    accepts(c, set(c, &setters[at], error, "a text"));
    isText(c, "the text", "a text", get(c, &getters[at], error, fresh(c)));
    accepted(c);
    accepts(c, set(c, &setters[at], error, NULL));
    isNothing(c, get(c, &getters[at], error, NULL));
  }
}

static void checkArrayOf(Checks* c, const CMPIError* error) {
  const CMPIErrorFT* ft = error->ft;
  const CMPIArray* texts = CMNewArray(c->broker, 2, CMPI_string, NULL);
  const CMPIArray* numbers = CMNewArray(c->broker, 2, CMPI_uint8, NULL);
  const CMPIArray* answer;
  CMSetArrayElementAt(texts, 1, "second", CMPI_chars);
  isNothing(c, SLOT(getRecommendedActions)(error, fresh(c)));
  accepted(c);
  accepts(c, SLOT(setRecommendedActions)(error, texts));
  accepts(c, SLOT(setMessageArguments)(error, texts));
  CMSetArrayElementAt(texts, 1, "changed", CMPI_chars);
  answer = SLOT(getRecommendedActions)(error, fresh(c));
  accepted(c);
  isTextData(c, "second", CMGetArrayElementAt(answer, 1, NULL));
  answer = SLOT(getMessageArguments)(error, fresh(c));
  accepted(c);
  isNumber(c, "the size", 2, CMGetArrayCount(answer, NULL));
  with(c, "an array of numbers");
  refuses(c, CMPI_RC_ERR_TYPE_MISMATCH, SLOT(setRecommendedActions)(error, numbers));
  refuses(c, CMPI_RC_ERR_TYPE_MISMATCH, SLOT(setMessageArguments)(error, numbers));
  with(c, "no array");
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setRecommendedActions)(error, NULL));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setMessageArguments)(error, foreignHandle()));
  with(c, "");
}

static void checkGiven(Checks* c, const CMPIError* error) {
  const CMPIErrorFT* ft = error->ft;
  isText(c, "the owner", "ACME", SLOT(getOwningEntity)(error, fresh(c)));
  accepted(c);
  isText(c, "the number", "A1", SLOT(getMessageID)(error, fresh(c)));
  accepted(c);
  isText(c, "the message", "it broke", SLOT(getMessage)(error, fresh(c)));
  accepted(c);
  isNumber(c, "the severity", ErrorSevHigh, SLOT(getPerceivedSeverity)(error, fresh(c)));
  accepted(c);
  isNumber(c, "the cause", ErrorProbCauseDisk_Failure, SLOT(getProbableCause)(error, fresh(c)));
  accepted(c);
  isNumber(c, "the code", CMPI_RC_ERR_ACCESS_DENIED, SLOT(getCIMStatusCode)(error, fresh(c)));
  accepted(c);
  accepts(c, SLOT(setErrorType)(error, HardwareErrorType));
  isNumber(c, "the type", HardwareErrorType, SLOT(getErrorType)(error, fresh(c)));
  accepted(c);
  accepts(c, SLOT(setErrorSourceFormat)(error, CMPIErrorSrcFormatObjectHandle));
  isNumber(c, "the format", CMPIErrorSrcFormatObjectHandle,
           SLOT(getErrorSourceFormat)(error, fresh(c)));
  accepted(c);
}

void checkErrors(Checks* c) {
  CMPIError* error = CALL(c, CMPIBrokerEncFT, c->broker->eft, newCMPIError)(
      c->broker, "ACME", "A1", "it broke", ErrorSevHigh, ErrorProbCauseDisk_Failure,
      CMPI_RC_ERR_ACCESS_DENIED, fresh(c));
  accepted(c);
  isNothing(c, CALL(c, CMPIBrokerEncFT, c->broker->eft, newCMPIError)(
                   NULL, NULL, NULL, NULL, ErrorSevLow, ErrorProbCauseUnknown, CMPI_RC_ERR_FAILED,
                   fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  checkGiven(c, error);
  checkTexts(c, error);
  checkArrayOf(c, error);
  CHECK_LIFE(c, CMPIError, error);
  EACH_BAD_HANDLE(c, CMPIError, error, refuse);
}

#else

void checkErrors(Checks* c) { (void)c; }

#endif
