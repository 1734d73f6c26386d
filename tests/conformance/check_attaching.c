#include "groups.h"

/* Threads of the provider's own that work with the broker. */
#define SLOT(name) CALL(c, CMPIBrokerFT, ft, name)

typedef struct Work {
  const CMPIBroker* broker;
  CMPIContext* context;
  CMPIrc attached;
  CMPIrc asked;
  CMPIrc detached;
  CMPIrc detachedAgain;
  CMPIrc contextAfterwards;
} Work;

static CMPI_THREAD_RETURN CMPI_THREAD_CDECL work(void* parm) {
  Work* work = parm;
  const CMPIBroker* broker = work->broker;
  CMPIStatus st;
  const CMPIContextFT* ft = work->context->ft;
  work->attached = CBAttachThread(broker, work->context).rc;
  CBEnumInstanceNames(broker, work->context, CMNewObjectPath(broker, NULL, ITEM_CLASS, NULL), &st);
  work->asked = st.rc;
  work->detached = CBDetachThread(broker, work->context).rc;
  work->detachedAgain = CBDetachThread(broker, work->context).rc;
  ft->getEntryCount(work->context, &st);
  work->contextAfterwards = st.rc;
  return 0;
}

static void checkAThread(Checks* c) {
  const CMPIBrokerFT* ft = c->broker->bft;
  Work one = {NULL,          NULL,          CMPI_RC_ERROR, CMPI_RC_ERROR,
              CMPI_RC_ERROR, CMPI_RC_ERROR, CMPI_RC_ERROR};
  one.broker = c->broker;
  one.context = SLOT(prepareAttachThread)(c->broker, c->context);
  isTrue(c, "a context is prepared", one.context != NULL && one.context != c->context);
  isTextData(c, "root/cimv2", CMGetContextEntry(one.context, CMPIInitNameSpace, NULL));
  c->broker->xft->joinThread(c->broker->xft->newThread(work, &one, 0), NULL);
  noteCall(c, "CMPIBrokerFT", sizeof *ft, offsetof(CMPIBrokerFT, attachThread), "attachThread");
  isNumber(c, "the status", CMPI_RC_OK, one.attached);
  isNumber(c, "the status of an upcall", CMPI_RC_OK, one.asked);
  noteCall(c, "CMPIBrokerFT", sizeof *ft, offsetof(CMPIBrokerFT, detachThread), "detachThread");
  isNumber(c, "the status", CMPI_RC_OK, one.detached);
  isTrue(c, "a second time fails", one.detachedAgain != CMPI_RC_OK);
  isNumber(c, "the status of a use of the context", CMPI_RC_ERR_INVALID_HANDLE,
           one.contextAfterwards);
}

static void refuse(Checks* c, const CMPIBroker* broker, const CMPIContext* context) {
  const CMPIBrokerFT* ft = c->broker->bft;
  isNothing(c, SLOT(prepareAttachThread)(broker, context));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(attachThread)(broker, context));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(detachThread)(broker, context));
}

void checkAttaching(Checks* c) {
  const CMPIBrokerFT* ft = c->broker->bft;
  checkAThread(c);
  with(c, "a thread that was not attached");
  if (c->result != NULL) {
    refuses(c, CMPI_RC_ERR_FAILED, SLOT(detachThread)(c->broker, c->context));
  }
  with(c, "a bad broker");
  refuse(c, NULL, c->context);
  refuse(c, foreignHandle(), c->context);
  with(c, "a bad context");
  refuse(c, c->broker, NULL);
  refuse(c, c->broker, foreignHandle());
  refuse(c, c->broker, (const CMPIContext*)(const void*)c->target);
  with(c, "");
}
