#include <stdlib.h>
#include <string.h>

#include "groups.h"

#define SLOT(name) CALL(c, CMPIStringFT, ft, name)

static void refuse(Checks* c, const CMPIStringFT* ft, const CMPIString* bad) {
  isNothing(c, SLOT(getCharPtr)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(getCharPtr)(bad, NULL));
#if CMPI_VERSION >= 210
  isNothing(c, SLOT(newCharsCP)(bad, CMPI_CP_US_ASCII, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(newCharsCP)(bad, CMPI_CP_US_ASCII, NULL));
#endif
}

/* Between the bytes of a code page and a string. */
static void checkCodePages(Checks* c, const CMPIString* euro) {
#if CMPI_VERSION >= 210
  const CMPIStringFT* ft = euro->ft;
  const CMPIUint16 units[] = {0x20AC, '!', 0};
  const CMPIString* ascii = CMNewString(c->broker, "plain", NULL);
  char* chars = SLOT(newCharsCP)(euro, CMPI_CP_UTF16, fresh(c));
  accepted(c);
  isTrue(c, "the text in UTF-16", chars != NULL && memcmp(chars, units, sizeof units) == 0);
  c->broker->mft->freeChars(c->broker, chars);
  isNothing(c, SLOT(newCharsCP)(euro, CMPI_CP_US_ASCII, fresh(c)));
  refused(c, CMPI_RC_ERR_NOT_IN_CODEPAGE);
  isNothing(c, SLOT(newCharsCP)(euro, (CMPICodepageID)99, fresh(c)));
  refused(c, CMPI_RC_ERR_NOT_SUPPORTED);
  chars = SLOT(newCharsCP)(ascii, CMPI_CP_US_ASCII, NULL);
  isChars(c, "the text in US-ASCII", "plain", chars);
  c->broker->mft->freeChars(c->broker, chars);
#else
  (void)c;
  (void)euro;
#endif
}

void checkStrings(Checks* c) {
  CMPIString* string = CMNewString(c->broker, "\xE2\x82\xAC!", NULL);
  CMPIString* scoped = CMNewString(c->broker, "scoped", NULL);
  CMPIString* copy = CMClone(string, NULL);
  const CMPIStringFT* ft = string->ft;
  isChars(c, "the text", "\xE2\x82\xAC!", SLOT(getCharPtr)(string, fresh(c)));
  accepted(c);
  isChars(c, "the text", "\xE2\x82\xAC!", SLOT(getCharPtr)(string, NULL));
  isChars(c, "hdl as the text", "\xE2\x82\xAC!", string->hdl);
  /* One edition declares the text as writable. */
  *(char*)string->hdl = '?';
  isChars(c, "the text of a clone", "\xE2\x82\xAC!", SLOT(getCharPtr)(copy, NULL));
  checkCodePages(c, copy);
  accepts(c, SLOT(release)(copy));
  accepts(c, SLOT(release)(scoped));
  CHECK_LIFE(c, CMPIString, string);
  EACH_BAD_HANDLE(c, CMPIString, string, refuse);
}
