#pragma once

#include "cmpi/cmpi.h"

namespace providers {

// The functions that the broker calls. `hdl` of each interface is the `ProviderHost`.

CMPIInstanceMIFT makeInstanceTable(const char* providerName);
CMPIAssociationMIFT makeAssociationTable(const char* providerName);
CMPIMethodMIFT makeMethodTable(const char* providerName);

}  // namespace providers
