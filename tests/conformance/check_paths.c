#include <stdlib.h>

#include "groups.h"

#define SLOT(name) CALL(c, CMPIObjectPathFT, ft, name)

static void refuseParts(Checks* c, const CMPIObjectPathFT* ft, const CMPIObjectPath* bad) {
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setNameSpace)(bad, "x"));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setHostname)(bad, "x"));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setClassName)(bad, "x"));
  isNothing(c, SLOT(getNameSpace)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(getHostname)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(getClassName)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(toString)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(getNameSpace)(bad, NULL));
  isNothing(c, SLOT(getHostname)(bad, NULL));
  isNothing(c, SLOT(getClassName)(bad, NULL));
  isNothing(c, SLOT(toString)(bad, NULL));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setNameSpaceFromObjectPath)(bad, c->target));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setHostAndNameSpaceFromObjectPath)(bad, c->target));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setNameSpaceFromObjectPath)(c->target, bad));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(setHostAndNameSpaceFromObjectPath)(c->target, bad));
}

static void refuse(Checks* c, const CMPIObjectPathFT* ft, const CMPIObjectPath* bad) {
  refuseParts(c, ft, bad);
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(addKey)(bad, "Name", (const CMPIValue*)"x", CMPI_chars));
  isNoData(c, SLOT(getKey)(bad, "Name", fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNoData(c, SLOT(getKey)(bad, "Name", NULL));
  isNoData(c, SLOT(getKeyAt)(bad, 0, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNoData(c, SLOT(getKeyAt)(bad, 0, NULL, NULL));
  isNumber(c, "the count", 0, SLOT(getKeyCount)(bad, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNumber(c, "the count", 0, SLOT(getKeyCount)(bad, NULL));
}

static void checkParts(Checks* c) {
  CMPIObjectPath* path = CMNewObjectPath(c->broker, "root/cimv2", "CONF_Thing", NULL);
  CMPIObjectPath* taker = CMNewObjectPath(c->broker, NULL, "CONF_Other", NULL);
  const CMPIObjectPathFT* ft = path->ft;
  const CMPIString* before = SLOT(getNameSpace)(path, fresh(c));
  accepted(c);
  isText(c, "no namespace", "", SLOT(getNameSpace)(taker, fresh(c)));
  accepted(c);
  isText(c, "no host", "", SLOT(getHostname)(path, fresh(c)));
  accepted(c);
  accepts(c, SLOT(setNameSpace)(path, "/root/other"));
  isText(c, "the namespace", "root/other", SLOT(getNameSpace)(path, NULL));
  isText(c, "the namespace that was got before", "root/cimv2", before);
  accepts(c, SLOT(setHostname)(path, "here"));
  isText(c, "the host", "here", SLOT(getHostname)(path, NULL));
  accepts(c, SLOT(setClassName)(path, "CONF_Changed"));
  isText(c, "the class", "CONF_Changed", SLOT(getClassName)(path, fresh(c)));
  accepted(c);
  accepts(c, SLOT(setNameSpaceFromObjectPath)(taker, path));
  isText(c, "the namespace taken over", "root/other", SLOT(getNameSpace)(taker, NULL));
  isText(c, "the host left alone", "", SLOT(getHostname)(taker, NULL));
  accepts(c, SLOT(setHostAndNameSpaceFromObjectPath)(taker, path));
  isText(c, "the host taken over", "here", SLOT(getHostname)(taker, NULL));
  isText(c, "the class left alone", "CONF_Other", SLOT(getClassName)(taker, NULL));
  with(c, "a null text");
  refuses(c, CMPI_RC_ERR_INVALID_PARAMETER, SLOT(setClassName)(path, NULL));
  accepts(c, SLOT(setNameSpace)(path, NULL));
  accepts(c, SLOT(setHostname)(path, NULL));
  isText(c, "the namespace", "", SLOT(getNameSpace)(path, NULL));
  isText(c, "the host", "", SLOT(getHostname)(path, NULL));
  with(c, "");
}

/* A key is good and marked as one. */
static void isKey(Checks* c, CMPIData data) {
  isTrue(c, "the state says that it is a key", data.state == CMPI_keyValue);
}

static void checkKeys(Checks* c) {
  const CMPIObjectPath* path = CMNewObjectPath(c->broker, "root/cimv2", "CONF_Undeclared", NULL);
  const CMPIObjectPathFT* ft = path->ft;
  CMPIString* name = NULL;
  unsigned at;
  for (at = 0; at < kSampleCount; ++at) {
    CMPIValue* value = tightCopy(&kSamples[at]);
    CMPIData key;
    with(c, kSamples[at].property);
    accepts(c, SLOT(addKey)(path, kSamples[at].property, value, kSamples[at].type));
    free(value);
    key = SLOT(getKey)(path, kSamples[at].property, fresh(c));
    accepted(c);
    isSample(c, &kSamples[at], key);
    isKey(c, key);
    isSample(c, &kSamples[at], SLOT(getKeyAt)(path, at, &name, fresh(c)));
    accepted(c);
    isText(c, "the name", kSamples[at].property, name);
    isNumber(c, "the count", at + 1, SLOT(getKeyCount)(path, fresh(c)));
    accepted(c);
  }
  with(c, "texts and references");
  accepts(c, SLOT(addKey)(path, "Text", (const CMPIValue*)"a", CMPI_chars));
  accepts(c, SLOT(addKey)(path, "TEXT", (const CMPIValue*)"b", CMPI_chars));
  isTextData(c, "b", SLOT(getKey)(path, "text", NULL));
  accepts(c, SLOT(addKey)(path, "Ref", (const CMPIValue*)&c->target, CMPI_ref));
  isNumber(c, "the type", CMPI_ref, SLOT(getKey)(path, "Ref", NULL).type);
  isTrue(c, "there is a text of the path", *CMGetCharPtr(SLOT(toString)(path, fresh(c))) != '\0');
  accepted(c);
  with(c, "");
}

static void checkBadKeys(Checks* c, const CMPIObjectPath* path) {
  const CMPIObjectPathFT* ft = path->ft;
  const CMPIArray* array = CMNewArray(c->broker, 1, CMPI_uint8, NULL);
  const CMPIString* foreign = foreignHandle();
  with(c, "a null key");
  refuses(c, CMPI_RC_ERR_INVALID_PARAMETER, SLOT(addKey)(path, "X", NULL, CMPI_chars));
  with(c, "an array for a key");
  refuses(c, CMPI_RC_ERR_INVALID_PARAMETER,
          SLOT(addKey)(path, "X", (const CMPIValue*)&array, CMPI_uint8A));
  with(c, "a foreign string");
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE,
          SLOT(addKey)(path, "X", (const CMPIValue*)&foreign, CMPI_string));
  with(c, "a type code of none");
  refuses(c, CMPI_RC_ERR_INVALID_DATA_TYPE, SLOT(addKey)(path, "X", (const CMPIValue*)"x", 0x0777));
  with(c, "a null name");
  refuses(c, CMPI_RC_ERR_INVALID_PARAMETER,
          SLOT(addKey)(path, NULL, (const CMPIValue*)"x", CMPI_chars));
  isNoData(c, SLOT(getKey)(path, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_PARAMETER);
  with(c, "an unknown name");
  isNoData(c, SLOT(getKey)(path, "Nowhere", fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  with(c, "an index past the end");
  isNoData(c, SLOT(getKeyAt)(path, 5, NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  with(c, "");
}

void checkObjectPaths(Checks* c) {
  CMPIObjectPath* path = CMNewObjectPath(c->broker, "root/cimv2", "CONF_Thing", NULL);
  CMPIObjectPath* copy = CMClone(path, NULL);
  const CMPIObjectPathFT* ft = path->ft;
  checkParts(c);
  checkKeys(c);
  checkBadKeys(c, path);
  SLOT(addKey)(path, "Name", (const CMPIValue*)"late", CMPI_chars);
  isNumber(c, "the keys of an earlier clone", 0, SLOT(getKeyCount)(copy, NULL));
  SLOT(release)(copy);
  CHECK_LIFE(c, CMPIObjectPath, path);
  EACH_BAD_HANDLE(c, CMPIObjectPath, path, refuse);
}
