#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include "framework/ICIMInstance.h"
#include "framework/ICIMNamespace.h"
#include "substitute/cmpi.nsp/model/InstanceData.h"

/// Where the broker's plain data and the framework's instances meet; the namespace side implements
/// both functions, since the instances are its own.
namespace cmpinsp {

/// An instance over `data`, which is shared: neither side may change it from now on. `ns` is the
/// namespace that the instance belongs to; it may be empty or expired.
boost::shared_ptr<NZELVOR20::ICIMInstance> makeInstance(
    const InstanceDataPtr& data, const boost::weak_ptr<NZELVOR20::ICIMNamespace>& ns);

/// The data of any instance: shared with `makeInstance`'s own, copied from others. Never empty;
/// throws `TVORException` where the instance cannot be read.
InstanceDataPtr dataOf(const NZELVOR20::ICIMInstance& instance);

}  // namespace cmpinsp
