#include "groups.h"

/* Associations and single properties through the broker. */
#define SLOT(name) CALL(c, CMPIBrokerFT, ft, name)

static CMPIObjectPath* itemPath(Checks* c, const char* name) {
  CMPIObjectPath* path = CMNewObjectPath(c->broker, "root/cimv2", ITEM_CLASS, NULL);
  CMAddKey(path, "Name", name, CMPI_chars);
  return path;
}

/* The key Name of the one item of an enumeration, or of none. */
static void isOne(Checks* c, const char* name, const CMPIEnumeration* found) {
  CMPIData item;
  accepted(c);
  if (found == NULL) return;
  isNumber(c, "whether there is one", name != NULL, CMHasNext(found, NULL));
  if (name == NULL || !CMHasNext(found, NULL)) return;
  item = CMGetNext(found, NULL);
  if (item.type == CMPI_ref) isTextData(c, name, CMGetKey(item.value.ref, "Name", NULL));
  if (item.type == CMPI_instance) {
    isTextData(c, name, CMGetProperty(item.value.inst, "Name", NULL));
  }
}

static void checkOthers(Checks* c) {
  const CMPIBrokerFT* ft = c->broker->bft;
  const CMPIObjectPath* one = itemPath(c, "one");
  const CMPIBroker* b = c->broker;
  isOne(c, "two",
        SLOT(associators)(b, c->context, one, LINK_CLASS, NULL, NULL, NULL, NULL, fresh(c)));
  isOne(
      c, "two",
      SLOT(associatorNames)(b, c->context, one, LINK_CLASS, ITEM_CLASS, "Left", "Right", fresh(c)));
  with(c, "empty texts for restrictions");
  isOne(c, "two", SLOT(associatorNames)(b, c->context, one, LINK_CLASS, "", "", "", fresh(c)));
  with(c, "a restriction that excludes the other end");
  isOne(
      c, NULL,
      SLOT(associators)(b, c->context, one, LINK_CLASS, "CONF_Lonely", NULL, NULL, NULL, fresh(c)));
  with(c, "an instance without links");
  isOne(c, NULL,
        SLOT(associatorNames)(b, c->context, itemPath(c, "nowhere"), LINK_CLASS, NULL, NULL, NULL,
                              fresh(c)));
  with(c, "an unknown association");
  isNothing(c, SLOT(associators)(b, c->context, one, "CONF_Undeclared", NULL, NULL, NULL, NULL,
                                 fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_CLASS);
  with(c, "");
}

static void checkLinks(Checks* c) {
  const CMPIBrokerFT* ft = c->broker->bft;
  const CMPIObjectPath* one = itemPath(c, "one");
  const char* names[] = {"Left", NULL};
  const CMPIEnumeration* found =
      SLOT(references)(c->broker, c->context, one, LINK_CLASS, "Left", names, fresh(c));
  accepted(c);
  isTrue(c, "there is a link", found != NULL && CMHasNext(found, NULL) == 1);
  if (found != NULL && CMHasNext(found, NULL)) {
    const CMPIInstance* link = CMGetNext(found, NULL).value.inst;
    isNumber(c, "the type of an end", CMPI_ref, CMGetProperty(link, "Left", NULL).type);
  }
  found = SLOT(referenceNames)(c->broker, c->context, one, LINK_CLASS, NULL, fresh(c));
  accepted(c);
  isNumber(c, "the number of links", 1, CMGetArrayCount(CMToArray(found, NULL), NULL));
}

static void checkFiltered(Checks* c) {
#if CMPI_VERSION >= 210
  const CMPIBrokerFT* ft = c->broker->bft;
  const CMPIBroker* b = c->broker;
  const CMPIObjectPath* one = itemPath(c, "one");
  const char* lang = "DMTF:FQL";
  const char* query = "U16 = 1";
  isOne(c, "one", SLOT(enumerateInstancesFiltered)(b, c->context, one, NULL, NULL, NULL, fresh(c)));
  isOne(c, "two",
        SLOT(associatorsFiltered)(b, c->context, one, LINK_CLASS, NULL, NULL, NULL, NULL, lang,
                                  NULL, fresh(c)));
  accepted(c);
  isTrue(c, "there are links",
         SLOT(referencesFiltered)(b, c->context, one, LINK_CLASS, NULL, NULL, NULL, "", fresh(c)) !=
             NULL);
  accepted(c);
  with(c, "a filter query");
  isOne(c, "one",
        SLOT(enumerateInstancesFiltered)(b, c->context, one, NULL, lang, query, fresh(c)));
  isOne(c, NULL,
        SLOT(enumerateInstancesFiltered)(b, c->context, one, NULL, lang, "U16 = 9", fresh(c)));
  isOne(c, NULL,
        SLOT(associatorsFiltered)(b, c->context, one, LINK_CLASS, NULL, NULL, NULL, NULL, lang,
                                  query, fresh(c)));
  isTrue(c, "the links are of their class",
         CMHasNext(SLOT(referencesFiltered)(b, c->context, one, LINK_CLASS, NULL, NULL, lang,
                                            "__THIS ISA " LINK_CLASS, fresh(c)),
                   NULL) == 1);
  accepted(c);
  with(c, "a bad filter query");
  isNothing(c, SLOT(enumerateInstancesFiltered)(b, c->context, one, NULL, lang, "=", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_QUERY);
  isNothing(c, SLOT(associatorsFiltered)(b, c->context, one, LINK_CLASS, NULL, NULL, NULL, NULL,
                                         "SQL", query, fresh(c)));
  refused(c, CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED);
  isNothing(
      c, SLOT(referencesFiltered)(b, c->context, one, LINK_CLASS, NULL, NULL, "SQL", query, NULL));
  with(c, "");
#else
  (void)c;
#endif
}

void checkAssociations(Checks* c) {
  checkOthers(c);
  checkLinks(c);
  checkFiltered(c);
}

void checkSingleProperties(Checks* c) {
  const CMPIBrokerFT* ft = c->broker->bft;
  const CMPIBroker* b = c->broker;
  const CMPIObjectPath* one = itemPath(c, "one");
  const CMPIUint16 nine = 9;
  const CMPIUint16 ten = 10;
  isNumberData(c, CMPI_uint16, 9, SLOT(getProperty)(b, c->context, one, "U16", fresh(c)));
  accepted(c);
  accepts(c, SLOT(setProperty)(b, c->context, one, "U16", (const CMPIValue*)&nine, CMPI_uint16));
  with(c, "what the provider refuses");
  refuses(c, CMPI_RC_ERR_INVALID_PARAMETER,
          SLOT(setProperty)(b, c->context, one, "U16", (const CMPIValue*)&ten, CMPI_uint16));
  with(c, "a property that the instance alone has");
  isTextData(c, "one", SLOT(getProperty)(b, c->context, one, "Name", fresh(c)));
  accepted(c);
  with(c, "an unknown name");
  isNoData(c, SLOT(getProperty)(b, c->context, one, "Nowhere", fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  with(c, "a null name");
  isNoData(c, SLOT(getProperty)(b, c->context, one, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  refuses(c, CMPI_RC_ERR_INVALID_PARAMETER,
          SLOT(setProperty)(b, c->context, one, NULL, (const CMPIValue*)&nine, CMPI_uint16));
  with(c, "a type code of none");
  refuses(c, CMPI_RC_ERR_INVALID_DATA_TYPE,
          SLOT(setProperty)(b, c->context, one, "U16", (const CMPIValue*)&nine, 0x0777));
  with(c, "");
}
