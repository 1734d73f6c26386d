#include <string.h>

#include "groups.h"

#if CMPI_VERSION >= 200

#define SLOT(name) CALL(c, CMPIBrokerMemFT, ft, name)

static void checkMarks(Checks* c) {
  const CMPIBrokerMemFT* ft = c->broker->mft;
  CMPIString* before = CMNewString(c->broker, "before", NULL);
  const CMPIGcStat* outer = SLOT(mark)(c->broker, fresh(c));
  CMPIString* made = CMNewString(c->broker, "made", NULL);
  CMPIString* kept = CMClone(made, NULL);
  const CMPIGcStat* inner = SLOT(mark)(c->broker, NULL);
  isTrue(c, "marks are made", outer != NULL && inner != NULL && inner != outer);
  accepts(c, SLOT(release)(c->broker, outer));
  with(c, "marks that are released, or none");
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(release)(c->broker, inner));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(release)(c->broker, NULL));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(release)(c->broker, foreignHandle()));
  with(c, "a bad broker");
  isNothing(c, SLOT(mark)(NULL, fresh(c)));
  refused(c, CMPI_RC_ERR_INVALID_HANDLE);
  isNothing(c, SLOT(mark)(foreignHandle(), NULL));
  refuses(c, CMPI_RC_ERR_INVALID_HANDLE, SLOT(release)(NULL, outer));
  with(c, "what was made before the mark, and a clone");
  isText(c, "the text", "before", before);
  isText(c, "the text", "made", kept);
  CMRelease(kept);
  with(c, "");
}

static void checkBlocks(Checks* c) {
  const CMPIBrokerMemFT* ft = c->broker->mft;
  const size_t most = (size_t)-1;
  char* block = SLOT(cmpiCalloc)(c->broker, 4, 8);
  char* copy = SLOT(cmpiStrDup)(c->broker, "text");
  isTrue(c, "the block is zero", block != NULL && block[0] == 0 && block[31] == 0);
  isChars(c, "the copy", "text", copy);
  block[31] = 'x';
  block = SLOT(cmpiRealloc)(c->broker, block, 4096);
  isTrue(c, "what was in it is kept", block != NULL && block[31] == 'x');
  SLOT(cmpiFree)(c->broker, block);
  SLOT(cmpiFree)(c->broker, copy);
  block = SLOT(cmpiRealloc)(c->broker, NULL, 16);
  isTrue(c, "nothing grows into a block", block != NULL);
  SLOT(cmpiFree)(c->broker, block);
  block = SLOT(cmpiMalloc)(c->broker, 16);
  isTrue(c, "there is a block", block != NULL);
  SLOT(cmpiFree)(c->broker, block);
  with(c, "a second time, null, or a block of somebody else's");
  SLOT(cmpiFree)(c->broker, block);
  SLOT(cmpiFree)(c->broker, NULL);
  SLOT(cmpiFree)(c->broker, foreignHandle());
  isNothing(c, SLOT(cmpiRealloc)(c->broker, foreignHandle(), 8));
  with(c, "more than there is");
  isNothing(c, SLOT(cmpiMalloc)(c->broker, most / 2));
  isNothing(c, SLOT(cmpiCalloc)(c->broker, most / 2, 4));
  with(c, "no text");
  isNothing(c, SLOT(cmpiStrDup)(c->broker, NULL));
  with(c, "a bad broker");
  isNothing(c, SLOT(cmpiMalloc)(NULL, 1));
  isNothing(c, SLOT(cmpiCalloc)(foreignHandle(), 1, 1));
  isNothing(c, SLOT(cmpiRealloc)(NULL, NULL, 1));
  isNothing(c, SLOT(cmpiStrDup)(foreignHandle(), "x"));
  SLOT(cmpiFree)(NULL, NULL);
  with(c, "");
}

/* What was freed early is no object any more; what is no object is left alone. */
static void checkEarlyEnds(Checks* c) {
  const CMPIBrokerMemFT* ft = c->broker->mft;
  CMPIInstance* instance = CMNewInstance(c->broker, c->target, NULL);
  CMPIObjectPath* path = CMNewObjectPath(c->broker, "root", "X", NULL);
  CMPIArgs* args = CMNewArgs(c->broker, NULL);
  CMPIString* string = CMNewString(c->broker, "x", NULL);
  CMPIArray* array = CMNewArray(c->broker, 1, CMPI_uint8, NULL);
  CMPIDateTime* time = CMNewDateTime(c->broker, NULL);
  const void* const freed[] = {instance, path, args, string, array, time};
  unsigned at;
  SLOT(freeInstance)(c->broker, instance);
  SLOT(freeObjectPath)(c->broker, path);
  SLOT(freeArgs)(c->broker, args);
  SLOT(freeString)(c->broker, string);
  SLOT(freeArray)(c->broker, array);
  SLOT(freeDateTime)(c->broker, time);
  for (at = 0; at < sizeof freed / sizeof *freed; ++at) {
    isNothing(c, c->broker->eft->getType(c->broker, freed[at], fresh(c)));
  }
  with(c, "what is freed, null, foreign, or of another kind");
  SLOT(freeInstance)(c->broker, instance);
  SLOT(freeInstance)(c->broker, NULL);
  SLOT(freeObjectPath)(c->broker, foreignHandle());
  SLOT(freeArgs)(c->broker, (CMPIArgs*)(void*)CMNewDateTime(c->broker, NULL));
  SLOT(freeString)(c->broker, NULL);
  SLOT(freeArray)(c->broker, foreignHandle());
  SLOT(freeDateTime)(NULL, NULL);
#if CMPI_VERSION >= 210
  SLOT(freeChars)(c->broker, NULL);
  SLOT(freeChars)(c->broker, foreignHandle());
#endif
  if (c->result != NULL) {
    SLOT(freeObjectPath)(c->broker, (CMPIObjectPath*)c->target);
    isTrue(c, "what the broker lent stays", CMGetKeyCount(c->target, fresh(c)) == 1);
    accepted(c);
  }
  with(c, "");
}

void checkMemory(Checks* c) {
  checkMarks(c);
  checkBlocks(c);
  checkEarlyEnds(c);
}

#else

void checkMemory(Checks* c) { (void)c; }

#endif
