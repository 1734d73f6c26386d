#pragma once

#include <string>

#include "framework/TCIMValue.h"

namespace cmpinsp::broker {

/// `value` as a value of the declared type, or as it is where text stands for an embedded instance
/// or the other way round; what does not convert without loss throws `Failure`
/// (type mismatch) that names `what`.
NZELVOR20::TCIMValue fittedTo(NZELVOR20::TCIMValue value, NZELVOR20::ECIMType type, bool isArray,
                              const std::string& what);

}  // namespace cmpinsp::broker
