#pragma once

#include "substitute/cmpi.nsp/ProviderInfo.h"
#include "substitute/cmpi.nsp/manager/providers/ManagedProvider.h"

namespace cmpinsp {

/// What is known of the provider. With `load`, its library is loaded and its factories are called.
substitute::ProviderInfo describeProvider(ManagedProvider& provider, bool load);

/// An edition of the standard as it is written: "2.1" for 210; empty for 0.
std::string editionText(int edition);

}  // namespace cmpinsp
