#include "groups.h"

/* Every upcall with a broker, a context or a path that is none. */
#define SLOT(name) CALL(c, CMPIBrokerFT, ft, name)

typedef struct Given {
  const CMPIBroker* broker;
  const CMPIContext* context;
  const CMPIObjectPath* path;
} Given;

static void refuseInstances(Checks* c, Given g, CMPIrc code) {
  const CMPIBrokerFT* ft = c->broker->bft;
  const CMPIInstance* item = CMNewInstance(c->broker, c->target, NULL);
  isNothing(c, SLOT(enumerateInstanceNames)(g.broker, g.context, g.path, fresh(c)));
  refused(c, code);
  isNothing(c, SLOT(enumerateInstances)(g.broker, g.context, g.path, NULL, fresh(c)));
  refused(c, code);
  isNothing(c, SLOT(getInstance)(g.broker, g.context, g.path, NULL, fresh(c)));
  refused(c, code);
  isNothing(c, SLOT(createInstance)(g.broker, g.context, g.path, item, fresh(c)));
  refused(c, code);
  refuses(c, code, SLOT(modifyInstance)(g.broker, g.context, g.path, item, NULL));
  refuses(c, code, SLOT(deleteInstance)(g.broker, g.context, g.path));
  isNothing(c, SLOT(execQuery)(g.broker, g.context, g.path, "SELECT * FROM X", "WQL", fresh(c)));
  refused(c, code);
}

static void refuseOthers(Checks* c, Given g, CMPIrc code) {
  const CMPIBrokerFT* ft = c->broker->bft;
  const CMPIUint16 number = 1;
  isNothing(c,
            SLOT(associators)(g.broker, g.context, g.path, NULL, NULL, NULL, NULL, NULL, fresh(c)));
  refused(c, code);
  isNothing(c,
            SLOT(associatorNames)(g.broker, g.context, g.path, NULL, NULL, NULL, NULL, fresh(c)));
  refused(c, code);
  isNothing(c, SLOT(references)(g.broker, g.context, g.path, NULL, NULL, NULL, fresh(c)));
  refused(c, code);
  isNothing(c, SLOT(referenceNames)(g.broker, g.context, g.path, NULL, NULL, fresh(c)));
  refused(c, code);
  isNoData(c, SLOT(invokeMethod)(g.broker, g.context, g.path, "Turn", NULL, NULL, fresh(c)));
  refused(c, code);
  isNoData(c, SLOT(getProperty)(g.broker, g.context, g.path, "U16", fresh(c)));
  refused(c, code);
  refuses(c, code,
          SLOT(setProperty)(g.broker, g.context, g.path, "U16", (const CMPIValue*)&number,
                            CMPI_uint16));
}

static void refuseFiltered(Checks* c, Given g, CMPIrc code) {
#if CMPI_VERSION >= 210
  const CMPIBrokerFT* ft = c->broker->bft;
  isNothing(
      c, SLOT(enumerateInstancesFiltered)(g.broker, g.context, g.path, NULL, NULL, NULL, fresh(c)));
  refused(c, code);
  isNothing(c, SLOT(associatorsFiltered)(g.broker, g.context, g.path, NULL, NULL, NULL, NULL, NULL,
                                         NULL, NULL, fresh(c)));
  refused(c, code);
  isNothing(c, SLOT(referencesFiltered)(g.broker, g.context, g.path, NULL, NULL, NULL, NULL, NULL,
                                        fresh(c)));
  refused(c, code);
#else
  (void)c, (void)g, (void)code;
#endif
}

static void refuseAll(Checks* c, Given g, CMPIrc code) {
  refuseInstances(c, g, code);
  refuseOthers(c, g, code);
  refuseFiltered(c, g, code);
}

/* Bad upcalls that give no status, of those that answer with an object. */
static void checkWithoutStatus(Checks* c) {
  const CMPIBrokerFT* ft = c->broker->bft;
  const CMPIContext* x = c->context;
  isNothing(c, SLOT(enumerateInstanceNames)(c->broker, x, NULL, NULL));
  isNothing(c, SLOT(enumerateInstances)(c->broker, x, NULL, NULL, NULL));
  isNothing(c, SLOT(getInstance)(c->broker, x, NULL, NULL, NULL));
  isNothing(c, SLOT(createInstance)(c->broker, x, NULL, NULL, NULL));
  isNothing(c, SLOT(execQuery)(c->broker, x, NULL, NULL, NULL, NULL));
  isNothing(c, SLOT(associators)(c->broker, x, NULL, NULL, NULL, NULL, NULL, NULL, NULL));
  isNothing(c, SLOT(associatorNames)(c->broker, x, NULL, NULL, NULL, NULL, NULL, NULL));
  isNothing(c, SLOT(references)(c->broker, x, NULL, NULL, NULL, NULL, NULL));
  isNothing(c, SLOT(referenceNames)(c->broker, x, NULL, NULL, NULL, NULL));
  isNoData(c, SLOT(invokeMethod)(c->broker, x, NULL, NULL, NULL, NULL, NULL));
  isNoData(c, SLOT(getProperty)(c->broker, x, NULL, NULL, NULL));
}

void checkBadUpcalls(Checks* c) {
  const Given good = {c->broker, c->context, c->target};
  void* const bad[] = {NULL, foreignHandle(), CMNewArgs(c->broker, NULL)};
  unsigned at;
  Given given;
  for (at = 0; at < sizeof bad / sizeof *bad; ++at) {
    with(c, "a bad broker");
    given = good;
    given.broker = bad[at];
    refuseAll(c, given, CMPI_RC_ERR_INVALID_HANDLE);
    with(c, "a bad context");
    given = good;
    given.context = bad[at];
    refuseAll(c, given, CMPI_RC_ERR_INVALID_HANDLE);
    with(c, "a bad path");
    given = good;
    given.path = bad[at];
    refuseAll(c, given, CMPI_RC_ERR_INVALID_HANDLE);
  }
  with(c, "a path without a class, and one of a class that nobody declared");
  given = good;
  given.path = CMNewObjectPath(c->broker, "root/cimv2", NULL, NULL);
  refuseAll(c, given, CMPI_RC_ERR_INVALID_CLASS);
  given.path = CMNewObjectPath(c->broker, "root/cimv2", "CONF_Undeclared", NULL);
  refuseInstances(c, given, CMPI_RC_ERR_INVALID_CLASS);
  with(c, "no status");
  checkWithoutStatus(c);
  with(c, "");
}
