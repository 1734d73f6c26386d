#include "substitute/cmpi.nsp/broker/calls/Provider.h"
