#pragma once

#include <map>
#include <string>

#include "framework/TCIMValue.h"

namespace NZELVOR20 {

/// What qualifies an object-model operation. "nspID" names the provider family that should answer:
/// "cmpi", "pegasus", or "plugin" for a lookup through the upcall namespace; "nsp" the Pegasus
/// namespace text. An empty map leaves the choice to the namespace.
using TOptionsMap = std::map<std::string, TCIMValue>;

/// A method's parameters by name: the input parameters before a call, the output parameters after.
using TParameterMap = std::map<std::string, TCIMValue>;

}  // namespace NZELVOR20
