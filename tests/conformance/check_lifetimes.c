#include "groups.h"

/* Releasing what the provider does not own does no harm, and clones hang on nothing. */

static void checkLent(Checks* c) {
  CMPIString* name;
  accepts(c, CALL(c, CMPIObjectPathFT, c->target->ft, release)((CMPIObjectPath*)c->target));
  accepts(c, CALL(c, CMPIContextFT, c->context->ft, release)((CMPIContext*)c->context));
  name = CMGetClassName(c->target, fresh(c));
  accepted(c);
  accepts(c, CALL(c, CMPIStringFT, name->ft, release)(name));
  isText(c, "a part of a lent object", CMGetCharPtr(name), CMGetClassName(c->target, NULL));
  isTextData(c, "root/cimv2", CMGetContextEntry(c->context, CMPIInitNameSpace, fresh(c)));
}

static void checkParts(Checks* c) {
  CMPIInstance* instance = CMNewInstance(c->broker, c->target, NULL);
  CMPIInstance* copy;
  CMPIString* text;
  CMPIData inner;
  CMSetProperty(instance, "Text", "first", CMPI_chars);
  text = CMGetProperty(instance, "Text", NULL).value.string;
  CMSetProperty(instance, "Text", "second", CMPI_chars);
  isText(c, "a value that was got before it changed", "first", text);
  copy = CMClone(instance, NULL);
  CMSetProperty(instance, "Inner", &copy, CMPI_instance);
  CMRelease(copy);
  inner = CMGetProperty(instance, "Inner", NULL);
  isTextData(c, "second", CMGetProperty(inner.value.inst, "Text", NULL));
  copy = CMClone(inner.value.inst, NULL);
  CMRelease(instance);
  isTextData(c, "second", CMGetProperty(copy, "Text", fresh(c)));
  accepted(c);
  text = CMGetProperty(copy, "Text", NULL).value.string;
  text = CMClone(text, NULL);
  CMRelease(copy);
  isText(c, "the clone of a part of what is released", "second", text);
  CMRelease(text);
}

void checkLifetimes(Checks* c) {
  if (c->result != NULL) checkLent(c);
  checkParts(c);
}
