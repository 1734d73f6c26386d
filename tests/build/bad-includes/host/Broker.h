#include "substitute/cmpi.nsp/Bootstrap.h"
#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
