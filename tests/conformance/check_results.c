#include "groups.h"

#define SLOT(name) CALL(c, CMPIResultFT, ft, name)

static void refuse(Checks* c, const CMPIResultFT* ft, const CMPIResult* bad) {
  const CMPIUint32 number = 1;
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(returnData)(bad, (const CMPIValue*)&number, CMPI_uint32));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(returnInstance)(bad, NULL));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(returnObjectPath)(bad, c->target));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(returnDone)(bad));
#if CMPI_VERSION >= 200
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(returnError)(bad, NULL));
#endif
}

static void checkBadAnswers(Checks* c) {
  const CMPIResultFT* ft = c->result->ft;
  const CMPIUint32 number = 1;
  CMPIInstance* released = CMNewInstance(c->broker, c->target, NULL);
  const void* const bad[] = {NULL, foreignHandle(), CMNewArgs(c->broker, NULL), released};
  const char* const names[] = {"a null answer", "a foreign answer", "an answer of another kind",
                               "a released answer"};
  unsigned at;
  released = CMClone(released, NULL);
  CMRelease(released);
  for (at = 0; at < sizeof bad / sizeof *bad; ++at) {
    const void* answer = at == 3 ? released : bad[at];
    with(c, names[at]);
    refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(returnInstance)(c->result, answer));
    refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(returnObjectPath)(c->result, answer));
#if CMPI_VERSION >= 200
    refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(returnError)(c->result, answer));
#endif
  }
  with(c, "a type code of none");
  refuses(c, CMPI_RC_ERR_INVALID_DATA_TYPE,
          SLOT(returnData)(c->result, (const CMPIValue*)&number, 0x0777));
  with(c, "");
}

/* Runs in a call of its own: it answers with garbage, or with what a method may answer. */
void deliver(Checks* c, int isGood) {
  const CMPIUint32 number = 7;
  const CMPIResultFT* ft = c->result->ft;
  CMPIResult* copy;
  if (!isGood) {
    checkBadAnswers(c);
    EACH_BAD_HANDLE(c, CMPIResult, c->result, refuse);
    return;
  }
  CHECK_LIFE(c, CMPIResult, c->result);
  accepts(c, SLOT(returnInstance)(c->result, CMNewInstance(c->broker, c->target, NULL)));
  accepts(c, SLOT(returnObjectPath)(c->result, c->target));
  copy = SLOT(clone)(c->result, NULL);
  accepts(c, SLOT(returnData)(copy, (const CMPIValue*)&number, CMPI_uint32));
  accepts(c, SLOT(release)(copy));
  accepts(c, SLOT(returnDone)(c->result));
  with(c, "answers after the last one");
  accepts(c, SLOT(returnData)(c->result, (const CMPIValue*)c, CMPI_chars));
  accepts(c, SLOT(returnDone)(c->result));
  with(c, "");
}

/* Calls the method that runs `deliver` with these checks. */
static CMPIData askToDeliver(Checks* c, const char* method) {
  const CMPIUint64 address = (CMPIUint64)(size_t)c;
  CMPIArgs* in = CMNewArgs(c->broker, NULL);
  CMAddArg(in, "Checks", &address, CMPI_uint64);
  return CBInvokeMethod(c->broker, c->context, c->target, method, in, NULL, fresh(c));
}

void checkResults(Checks* c) {
  CMPIData data = askToDeliver(c, "Deliver");
  accepted(c);
  isNumberData(c, CMPI_uint32, 7, data);
  with(c, "garbage, although the provider says that all went well");
  data = askToDeliver(c, "DeliverGarbage");
  refused(c, CMPI_RC_ERR_FAILED);
  isNoData(c, data);
  with(c, "");
}
