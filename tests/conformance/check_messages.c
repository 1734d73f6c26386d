#include "groups.h"

/* Messages with inserts, message files, the log. */
#define SLOT(name) CALL(c, CMPIBrokerEncFT, ft, name)

static void checkInserts(Checks* c) {
  const CMPIBrokerEncFT* ft = c->broker->eft;
  const CMPIString* string = CMNewString(c->broker, "object", NULL);
  isText(c, "the message", "no inserts",
         SLOT(getMessage)(c->broker, "id", "no inserts", fresh(c), 0));
  accepted(c);
  isText(c, "the message", "text object -5 4000000000 $4",
         SLOT(getMessage)(c->broker, "id", "$0 $1 $2 $3 $4", fresh(c), 4, CMFmtChars("text"),
                          CMFmtString(string), CMFmtSint(-5), CMFmtUint(4000000000U)));
  accepted(c);
  isText(c, "the message", "true -6 7 b a",
         SLOT(getMessage)(c->broker, NULL, "$2 $1 $0 $4 $3", NULL, 5, CMFmtUint64(7),
                          CMFmtSint64(-6), CMFmtBoolean(1), CMFmtChars("a"), CMFmtChars("b")));
  isText(c, "no message", "", SLOT(getMessage)(c->broker, "id", NULL, fresh(c), 0));
  accepted(c);
  with(c, "an insert of another type");
  isText(c, "the raw text", "raw $0",
         SLOT(getMessage)(c->broker, "id", "raw $0", fresh(c), 1, CMPI_ref, c->target));
  refused(c, CMPI_RC_ERR_TYPE_MISMATCH);
  with(c, "a string that is none");
  isText(c, "the message", "<>",
         SLOT(getMessage)(c->broker, "id", "<$0>", fresh(c), 1, CMPI_string, foreignHandle()));
  with(c, "a bad broker");
  isNothing(c, SLOT(getMessage)(NULL, "id", "text", fresh(c), 0));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  with(c, "");
}

static void checkFiles(Checks* c) {
#if CMPI_VERSION >= 200
  const CMPIBrokerEncFT* ft = c->broker->eft;
  CMPIMsgFileHandle file = c;
  refuses(c, CMPI_RC_ERR_NOT_FOUND, SLOT(openMessageFile)(c->broker, "acme", &file));
  isTrue(c, "there is no file", file == NULL);
  refuses(c, CMPI_RC_ERR_NOT_FOUND, SLOT(openMessageFile)(c->broker, NULL, NULL));
  isText(c, "the default text", "5 fans",
         SLOT(getMessage2)(c->broker, "id", file, "$0 fans", fresh(c), 1, CMFmtSint(5)));
  accepted(c);
  accepts(c, SLOT(closeMessageFile)(c->broker, NULL));
  with(c, "a file that was not opened");
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(closeMessageFile)(c->broker, foreignHandle()));
  with(c, "a bad broker");
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(openMessageFile)(NULL, "acme", &file));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(closeMessageFile)(foreignHandle(), NULL));
  isNothing(c, SLOT(getMessage2)(NULL, "id", NULL, "text", fresh(c), 0));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  with(c, "");
#else
  (void)c;
#endif
}

static void checkLog(Checks* c) {
  const CMPIBrokerEncFT* ft = c->broker->eft;
  const CMPIString* string = CMNewString(c->broker, "object", NULL);
  accepts(c, SLOT(logMessage)(c->broker, CMPI_SEV_INFO, "id", "a line", NULL));
  accepts(c, SLOT(logMessage)(c->broker, CMPI_SEV_ERROR, NULL, NULL, string));
  accepts(c, SLOT(logMessage)(c->broker, (CMPISeverity)99, NULL, NULL, NULL));
  accepts(c, SLOT(logMessage)(c->broker, CMPI_SEV_WARNING, "id", NULL, foreignHandle()));
  accepts(c, SLOT(trace)(c->broker, CMPI_LEV_INFO, "part", "a line", NULL));
  accepts(c, SLOT(trace)(c->broker, CMPI_LEV_VERBOSE, NULL, NULL, string));
  accepts(c, SLOT(trace)(c->broker, (CMPILevel)99, NULL, "caf\xE9", foreignHandle()));
  with(c, "a bad broker");
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(logMessage)(NULL, CMPI_SEV_INFO, "id", "x", NULL));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(trace)(foreignHandle(), CMPI_LEV_INFO, "part", "x", NULL));
  with(c, "");
}

void checkMessages(Checks* c) {
  checkInserts(c);
  checkFiles(c);
  checkLog(c);
}
