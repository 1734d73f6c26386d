#include <string.h>

#include "groups.h"

#if CMPI_VERSION >= 210

#define SLOT(name) CALL(c, CMPIPropertyListFT, ft, name)

static void refuse(Checks* c, const CMPIPropertyListFT* ft, const CMPIPropertyList* bad) {
  isNumber(c, "the answer", 0, SLOT(isPropertyInList)(bad, "One", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the answer", 0, SLOT(isPropertyInList)(bad, "One", NULL));
  isNothing(c, SLOT(getProperties)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(getProperties)(bad, NULL));
}

void checkPropertyLists(Checks* c) {
  const CMPIBrokerEncFT* make = c->broker->eft;
  char first[] = "One";
  const char* names[] = {first, "Two", NULL};
  CMPIPropertyList* list =
      CALL(c, CMPIBrokerEncFT, make, newPropertyList)(c->broker, names, fresh(c));
  const CMPIPropertyListFT* ft = list->ft;
  const char** answer;
  accepted(c);
  first[0] = 'X';
  isNumber(c, "a name that is listed", 1, SLOT(isPropertyInList)(list, "ONE", fresh(c)));
  accepted(c);
  isNumber(c, "a name that is not", 0, SLOT(isPropertyInList)(list, "Three", fresh(c)));
  accepted(c);
  answer = SLOT(getProperties)(list, fresh(c));
  accepted(c);
  isTrue(c, "two names come back",
         answer != NULL && strcmp(answer[0], "One") == 0 && strcmp(answer[1], "Two") == 0 &&
             answer[2] == NULL);
  with(c, "a null name");
  isNumber(c, "the answer", 0, SLOT(isPropertyInList)(list, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  with(c, "no list, which is every name");
  isNumber(c, "any name", 1,
           SLOT(isPropertyInList)(CMNewPropertyList(c->broker, NULL, NULL), "Any", NULL));
  with(c, "a bad broker");
  isNothing(c, CALL(c, CMPIBrokerEncFT, make, newPropertyList)(NULL, names, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  with(c, "text in code pages");
  isText(
      c, "from US-ASCII", "plain",
      CALL(c, CMPIBrokerEncFT, make, newStringCP)(c->broker, "plain", CMPI_CP_US_ASCII, fresh(c)));
  accepted(c);
  isText(c, "from UTF-16", "\xE2\x82\xAC",
         CALL(c, CMPIBrokerEncFT, make, newStringCP)(c->broker, "\xAC\x20\0", CMPI_CP_UTF16,
                                                     fresh(c)));
  accepted(c);
  isNothing(c,
            CALL(c, CMPIBrokerEncFT, make, newStringCP)(c->broker, NULL, CMPI_CP_SYSTEM, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  with(c, "");
  CHECK_LIFE(c, CMPIPropertyList, list);
  EACH_BAD_HANDLE(c, CMPIPropertyList, list, refuse);
}

#else

void checkPropertyLists(Checks* c) { (void)c; }

#endif
