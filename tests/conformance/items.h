/* The two items that the provider serves. CONFORMANCE_PROVIDER is its name. */
#ifndef CONFORMANCE_ITEMS_H
#define CONFORMANCE_ITEMS_H

#include "cmpi/cmpi.h"

/* "" for no text. */
const char* textOf(const CMPIString* text);

/* The number, 0 or 1, of the item that a path names; -1 for none of them. */
int itemOf(const CMPIObjectPath* path);
CMPIObjectPath* pathOf(int item);
CMPIInstance* instanceOf(int item);

/* Ends a good answer. */
CMPIStatus itemsDone(const CMPIResult* result);

#endif
