#pragma once

#include "substitute/cmpi.nsp/broker/IUpcalls.h"

namespace cmpinsp {

/// `instance` with nothing but the wanted properties and the keys: providers may hand out more than
/// was asked for. The same instance where all are wanted.
InstanceDataPtr narrowed(const InstanceDataPtr& instance, PropertyNames wanted);

}  // namespace cmpinsp
