#pragma once

#include <memory>
#include <vector>

#include "providers/common/Diagnostic.h"

namespace providers {

/// What a provider library defines: the diagnostics of its family. The functions by which a broker
/// reaches them are made by the build (`diags_add_provider`). It is called once, when a broker
/// loads the library, which it does for every listing: whatever takes time is left to the first
/// run.
std::vector<std::unique_ptr<Diagnostic>> makeDiagnostics();

}  // namespace providers
