/* Every object and every function table of the interface. */
#ifndef CMPIFT_H
#define CMPIFT_H

#include "cmpi/cmpibroker.h"
#include "cmpi/cmpimi.h"
#include "cmpi/cmpiobjects.h"

#endif
