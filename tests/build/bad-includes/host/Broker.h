#include "substitute/cmpi.nsp/broker/Broker.h"
#include "substitute/cmpi.nsp/Bootstrap.h"
