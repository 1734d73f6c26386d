#include <string.h>

#include "groups.h"

#define MAKE(name) CALL(c, CMPIBrokerEncFT, c->broker->eft, name)

/* One object of each kind, from "U16 = 1 AND Text LIKE 'a%'". */
typedef struct Parts {
  CMPISelectExp* exp;
  CMPISelectCond* cond;
  CMPISubCond* sub;
  CMPIPredicate* pred;
} Parts;

static const char* const kQuery =
    "SELECT U16, Text FROM CONF_Thing WHERE U16 = 1 AND Text LIKE 'a%'";

/* Knows the number that `parm` points to and the text "abc". */
static CMPIData lookUp(const char* name, void* parm) {
  CMPIData data;
  memset(&data, 0, sizeof data);
  if (strcmp(name, "U16") == 0) {
    data.type = CMPI_uint16;
    data.value.uint16 = *(const CMPIUint16*)parm;
  } else if (strcmp(name, "Text") == 0) {
    data.type = CMPI_string;
    data.value.string = CMNewString(conformanceBroker, "abc", NULL);
  } else {
    data.state = CMPI_badValue;
  }
  return data;
}

static void checkMaking(Checks* c) {
  CMPIArray* projection = (CMPIArray*)(void*)c;
  isTrue(c, "a query is made",
         MAKE(newSelectExp)(c->broker, kQuery, "WQL", &projection, fresh(c)) != NULL);
  accepted(c);
  isNumber(c, "the number of selected properties", 2, CMGetArrayCount(projection, NULL));
  isTextData(c, "Text", CMGetArrayElementAt(projection, 1, NULL));
  isTrue(c, "a query is made of everything",
         MAKE(newSelectExp)(c->broker, "SELECT * FROM CONF_Thing", "DMTF:CQL", &projection,
                            fresh(c)) != NULL);
  accepted(c);
  isTrue(c, "there is no projection", projection == NULL);
  isTrue(c, "a query is made without a status and a projection",
         MAKE(newSelectExp)(c->broker, kQuery, "CQL", NULL, NULL) != NULL);
  with(c, "no query");
  isNothing(c, MAKE(newSelectExp)(c->broker, "SELECT", "WQL", &projection, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_QUERY);
  isNothing(c, MAKE(newSelectExp)(c->broker, NULL, "WQL", NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  with(c, "an unknown language");
  isNothing(c, MAKE(newSelectExp)(c->broker, kQuery, "SQL", NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED);
  with(c, "a bad broker");
  isNothing(c, MAKE(newSelectExp)(NULL, kQuery, "WQL", NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  with(c, "");
  isTrue(c, "the capabilities name queries and their forms",
         (c->broker->bft->brokerCapabilities & 0x30U) == 0x30U);
}

static CMPIInstance* thing(Checks* c, CMPIUint16 number) {
  CMPIObjectPath* path = CMNewObjectPath(c->broker, "root/cimv2", "CONF_Thing", NULL);
  CMPIInstance* instance;
  CMAddKey(path, "Name", "x", CMPI_chars);
  instance = CMNewInstance(c->broker, path, NULL);
  CMSetProperty(instance, "U16", &number, CMPI_uint16);
  CMSetProperty(instance, "Text", "abc", CMPI_chars);
  return instance;
}

static void checkExpression(Checks* c, Parts p) {
  const CMPISelectExpFT* ft = p.exp->ft;
  CMPIUint16 number = 1;
  int type = 7;
#define SLOT(name) CALL(c, CMPISelectExpFT, ft, name)
  isNumber(c, "a thing that fits", 1, SLOT(evaluate)(p.exp, thing(c, 1), fresh(c)));
  accepted(c);
  isNumber(c, "a thing that does not", 0, SLOT(evaluate)(p.exp, thing(c, 2), fresh(c)));
  accepted(c);
  isNumber(c, "an accessor that fits", 1,
           SLOT(evaluateUsingAccessor)(p.exp, lookUp, &number, fresh(c)));
  accepted(c);
  number = 2;
  isNumber(c, "an accessor that does not", 0,
           SLOT(evaluateUsingAccessor)(p.exp, lookUp, &number, NULL));
  isText(c, "the query", kQuery, SLOT(getString)(p.exp, fresh(c)));
  accepted(c);
  isNumber(c, "the groups of the OR", 1,
           CMGetSubCondCountAndType(SLOT(getDOC)(p.exp, fresh(c)), &type, NULL));
  accepted(c);
  isNumber(c, "the type of the OR", CMPI_COND_DOC, (CMPIUint64)type);
  isNumber(c, "the groups of the AND", 2,
           CMGetSubCondCountAndType(SLOT(getCOD)(p.exp, fresh(c)), &type, NULL));
  accepted(c);
  isNumber(c, "the type of the AND", CMPI_COND_COD, (CMPIUint64)type);
  with(c, "no instance and no accessor");
  isNumber(c, "the answer", 0, SLOT(evaluate)(p.exp, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the answer", 0, SLOT(evaluateUsingAccessor)(p.exp, NULL, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  with(c, "");
#undef SLOT
}

static void checkParts(Checks* c, Parts p) {
  const CMPISelectCondFT* cond = p.cond->ft;
  const CMPISubCondFT* sub = p.sub->ft;
  int type = 7;
  isNumber(c, "the number of groups", 1,
           CALL(c, CMPISelectCondFT, cond, getCountAndType)(p.cond, &type, fresh(c)));
  accepted(c);
  isNumber(c, "the type", CMPI_COND_DOC, (CMPIUint64)type);
  isNothing(c, CALL(c, CMPISelectCondFT, cond, getSubCondAt)(p.cond, 1, fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  isNumber(c, "the number of predicates", 2, CALL(c, CMPISubCondFT, sub, getCount)(p.sub, NULL));
  isTrue(c, "there is a second one",
         CALL(c, CMPISubCondFT, sub, getPredicateAt)(p.sub, 1, fresh(c)) != NULL);
  accepted(c);
  isTrue(c, "it is found by its name",
         CALL(c, CMPISubCondFT, sub, getPredicate)(p.sub, "TEXT", fresh(c)) != NULL);
  accepted(c);
  with(c, "what is not there");
  isNothing(c, CALL(c, CMPISubCondFT, sub, getPredicateAt)(p.sub, 2, fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  isNothing(c, CALL(c, CMPISubCondFT, sub, getPredicate)(p.sub, "Other", fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  isNothing(c, CALL(c, CMPISubCondFT, sub, getPredicate)(p.sub, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  with(c, "");
}

static void checkPredicate(Checks* c, Parts p) {
  const CMPIPredicateFT* ft = p.pred->ft;
  CMPIUint16 number = 1;
  CMPIType type = 0;
  CMPIPredOp op = CMPI_PredOp_Like;
  CMPIString* left = NULL;
  CMPIString* right = NULL;
  accepts(c, CALL(c, CMPIPredicateFT, ft, getData)(p.pred, &type, &op, &left, &right));
  isNumber(c, "the type of the right side", CMPI_integerString, type);
  isNumber(c, "the operation", CMPI_PredOp_Equals, (CMPIUint64)op);
  isText(c, "the left side", "U16", left);
  isText(c, "the right side", "1", right);
  accepts(c, CALL(c, CMPIPredicateFT, ft, getData)(p.pred, NULL, NULL, NULL, NULL));
  isNumber(c, "a number that fits", 1,
           CALL(c, CMPIPredicateFT, ft, evaluateUsingAccessor)(p.pred, lookUp, &number, fresh(c)));
  accepted(c);
  number = 2;
  isNumber(c, "a number that does not", 0,
           CALL(c, CMPIPredicateFT, ft, evaluateUsingAccessor)(p.pred, lookUp, &number, NULL));
}

static void refuseExp(Checks* c, const CMPISelectExpFT* ft, CMPISelectExp* bad) {
#define SLOT(name) CALL(c, CMPISelectExpFT, ft, name)
  isNumber(c, "the answer", 0, SLOT(evaluate)(bad, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the answer", 0, SLOT(evaluateUsingAccessor)(bad, lookUp, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(getString)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(getDOC)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(getCOD)(bad, NULL));
#undef SLOT
}

static void refuseCond(Checks* c, const CMPISelectCondFT* ft, CMPISelectCond* bad) {
  isNumber(c, "the number", 0, CALL(c, CMPISelectCondFT, ft, getCountAndType)(bad, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, CALL(c, CMPISelectCondFT, ft, getSubCondAt)(bad, 0, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
}

static void refuseSub(Checks* c, const CMPISubCondFT* ft, CMPISubCond* bad) {
  isNumber(c, "the number", 0, CALL(c, CMPISubCondFT, ft, getCount)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, CALL(c, CMPISubCondFT, ft, getPredicateAt)(bad, 0, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, CALL(c, CMPISubCondFT, ft, getPredicate)(bad, "U16", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
}

static void refusePred(Checks* c, const CMPIPredicateFT* ft, CMPIPredicate* bad) {
  CMPIString* left = NULL;
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          CALL(c, CMPIPredicateFT, ft, getData)(bad, NULL, NULL, &left, NULL));
  isTrue(c, "nothing is handed out", left == NULL);
  isNumber(c, "the answer", 0,
           CALL(c, CMPIPredicateFT, ft, evaluateUsingAccessor)(bad, lookUp, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
}

static void checkGivingBack(Checks* c) {
#if CMPI_VERSION >= 200
  CMPISelectExp* exp = CMNewSelectExp(c->broker, kQuery, "WQL", NULL, NULL);
  CALL(c, CMPIBrokerMemFT, c->broker->mft, freeSelectExp)(c->broker, exp);
  isNothing(c, CALL(c, CMPISelectExpFT, exp->ft, getString)(exp, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  CALL(c, CMPIBrokerMemFT, c->broker->mft, freeSelectExp)(c->broker, NULL);
  CALL(c, CMPIBrokerMemFT, c->broker->mft, freeSelectExp)(c->broker, foreignHandle());
#else
  (void)c;
#endif
}

#if CMPI_VERSION >= 210
static void refuseFilter(Checks* c, const CMPIEnumerationFilterFT* ft, CMPIEnumerationFilter* bad) {
  isNumber(c, "the answer", 0,
           CALL(c, CMPIEnumerationFilterFT, ft, match)(bad, thing(c, 1), fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
}
#endif

static void checkFilter(Checks* c) {
#if CMPI_VERSION >= 210
  CMPIEnumerationFilter* filter =
      MAKE(newEnumerationFilter)(c->broker, "DMTF:FQL", "U16 = 1", fresh(c));
  const CMPIEnumerationFilterFT* ft = filter->ft;
  accepted(c);
  isNumber(c, "a thing that matches", 1,
           CALL(c, CMPIEnumerationFilterFT, ft, match)(filter, thing(c, 1), fresh(c)));
  accepted(c);
  isNumber(c, "a thing that does not", 0,
           CALL(c, CMPIEnumerationFilterFT, ft, match)(filter, thing(c, 2), NULL));
  isNothing(c, MAKE(newEnumerationFilter)(c->broker, "DMTF:FQL", "U16 =", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_QUERY);
  isNothing(c, MAKE(newEnumerationFilter)(foreignHandle(), NULL, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, MAKE(newEnumerationFilter)(c->broker, NULL, NULL, NULL));
  CHECK_LIFE(c, CMPIEnumerationFilter, filter);
  EACH_BAD_HANDLE(c, CMPIEnumerationFilter, filter, refuseFilter);
#else
  (void)c;
#endif
}

static Parts partsOf(Checks* c) {
  Parts p;
  p.exp = CMNewSelectExp(c->broker, kQuery, "WQL", NULL, NULL);
  p.cond = CALL(c, CMPISelectExpFT, p.exp->ft, getDOC)(p.exp, NULL);
  p.sub = CALL(c, CMPISelectCondFT, p.cond->ft, getSubCondAt)(p.cond, 0, NULL);
  p.pred = CALL(c, CMPISubCondFT, p.sub->ft, getPredicateAt)(p.sub, 0, NULL);
  return p;
}

void checkQueries(Checks* c) {
  const Parts p = partsOf(c);
  checkMaking(c);
  checkExpression(c, p);
  checkParts(c, p);
  checkPredicate(c, p);
  CHECK_LIFE(c, CMPISelectExp, p.exp);
  CHECK_LIFE(c, CMPISelectCond, p.cond);
  CHECK_LIFE(c, CMPISubCond, p.sub);
  CHECK_LIFE(c, CMPIPredicate, p.pred);
  EACH_BAD_HANDLE(c, CMPISelectExp, p.exp, refuseExp);
  EACH_BAD_HANDLE(c, CMPISelectCond, p.cond, refuseCond);
  EACH_BAD_HANDLE(c, CMPISubCond, p.sub, refuseSub);
  EACH_BAD_HANDLE(c, CMPIPredicate, p.pred, refusePred);
  checkGivingBack(c);
  checkFilter(c);
}
