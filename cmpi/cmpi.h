/* Everything that a provider includes. */
#ifndef CMPI_H
#define CMPI_H

#include "cmpi/cmpidt.h"
#include "cmpi/cmpift.h"
#include "cmpi/cmpimacs.h"

#endif
