#pragma once

#include <string>
#include <vector>

#include "providers/common/Diagnostic.h"
#include "providers/processor/topology/CpuTopology.h"

namespace providers {

/// A processor package as an element that can be tested.
Device makeDevice(const CpuPackage& package);

/// The package that the device is; null when it is gone.
const CpuPackage* findPackage(const std::vector<CpuPackage>& packages, const Device& device);

/// A model name that can stand in a list: without ',' and '|' and control characters, single
/// blanks; "Processor" for an empty one.
std::string displayName(const std::string& model);

/// A run that could not be made.
Outcome notTested(const std::string& why);

}  // namespace providers
