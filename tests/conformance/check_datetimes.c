#include "groups.h"

#define SLOT(name) CALL(c, CMPIDateTimeFT, ft, name)
#define MAKE(name) CALL(c, CMPIBrokerEncFT, c->broker->eft, name)

static void refuse(Checks* c, const CMPIDateTimeFT* ft, const CMPIDateTime* bad) {
  isNumber(c, "the microseconds", 0, SLOT(getBinaryFormat)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(getStringFormat)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the answer", 0, SLOT(isInterval)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the microseconds", 0, SLOT(getBinaryFormat)(bad, NULL));
  isNothing(c, SLOT(getStringFormat)(bad, NULL));
  isNumber(c, "the answer", 0, SLOT(isInterval)(bad, NULL));
}

static void checkTexts(Checks* c) {
  const struct {
    const char* text;
    CMPIUint64 microseconds;
    CMPIBoolean isInterval;
  } rows[] = {{"19700101000000.000000+000", 0, 0},
              {"19700102010000.000001+060", 86400000001U, 0},
              {"19700101000000.000000-060", 3600000000U, 0},
              {"20240229123456.789012+000", 1709210096789012U, 0},
              {"00000001020304.000005:000", 93784000005U, 1},
              {"19700101000001.******+000", 1000000, 0}};
  unsigned at;
  for (at = 0; at < sizeof rows / sizeof *rows; ++at) {
    const CMPIDateTime* time;
    const CMPIDateTimeFT* ft;
    with(c, rows[at].text);
    time = MAKE(newDateTimeFromChars)(c->broker, rows[at].text, fresh(c));
    accepted(c);
    if (time == NULL) continue;
    ft = time->ft;
    isNumber(c, "the microseconds", rows[at].microseconds, SLOT(getBinaryFormat)(time, fresh(c)));
    accepted(c);
    isText(c, "the text", rows[at].text, SLOT(getStringFormat)(time, fresh(c)));
    accepted(c);
    isNumber(c, "whether it is an interval", rows[at].isInterval, SLOT(isInterval)(time, fresh(c)));
    accepted(c);
  }
  with(c, "");
}

static void checkBadTexts(Checks* c) {
  const char* const texts[] = {NULL,
                               "",
                               "yesterday",
                               "20240229123456.789012+00",
                               "20241329123456.789012+000",
                               "20240229126056.789012+000",
                               "2024022912345x.789012+000",
                               "20240229123456,789012+000"};
  unsigned at;
  for (at = 0; at < sizeof texts / sizeof *texts; ++at) {
    with(c, texts[at] == NULL ? "a null text" : texts[at]);
    isNothing(c, MAKE(newDateTimeFromChars)(c->broker, texts[at], fresh(c)));
    refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
    isNothing(c, MAKE(newDateTimeFromChars)(c->broker, texts[at], NULL));
  }
  with(c, "");
}

static void checkBinary(Checks* c) {
  const CMPIDateTime* time = MAKE(newDateTimeFromBinary)(c->broker, 1709210096789012U, 0, fresh(c));
  const CMPIDateTime* length;
  const CMPIDateTimeFT* ft = time->ft;
  accepted(c);
  isNumber(c, "the microseconds", 1709210096789012U, SLOT(getBinaryFormat)(time, NULL));
  isNumber(c, "whether it is an interval", 0, SLOT(isInterval)(time, NULL));
  length = MAKE(newDateTimeFromBinary)(c->broker, 93784000005U, 1, fresh(c));
  accepted(c);
  isText(c, "the interval", "00000001020304.000005:000", SLOT(getStringFormat)(length, NULL));
  /* Any value that is not zero is true in C. */
  length = MAKE(newDateTimeFromBinary)(c->broker, 5, 200, NULL);
  isNumber(c, "whether it is an interval", 1, SLOT(isInterval)(length, NULL));
  with(c, "a number that no text can hold");
  isNothing(c, MAKE(newDateTimeFromBinary)(c->broker, 0xFFFFFFFFFFFFFFFFU, 0, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  with(c, "");
}

void checkDateTimes(Checks* c) {
  CMPIDateTime* now = MAKE(newDateTime)(c->broker, fresh(c));
  const CMPIDateTimeFT* ft = now->ft;
  accepted(c);
  isTrue(c, "now is after 2020", SLOT(getBinaryFormat)(now, NULL) > 1577836800000000U);
  checkTexts(c);
  checkBadTexts(c);
  checkBinary(c);
  CHECK_LIFE(c, CMPIDateTime, now);
  EACH_BAD_HANDLE(c, CMPIDateTime, now, refuse);
}
