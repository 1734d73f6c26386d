#pragma once

#include <boost/function.hpp>

#include "substitute/cmpi.nsp/broker/IUpcalls.h"
#include "substitute/cmpi.nsp/manager/operations/Attempts.h"
#include "substitute/cmpi.nsp/manager/providers/Router.h"

namespace cmpinsp {

/// Asks one association provider for the references of one endpoint; false stops the walk.
using ReferenceQuestion =
    boost::function<bool(const Route&, const ObjectPath& end, const AssociationFilter&)>;

/// Enumerates the names of the instances of a class, among them those of its subclasses.
using EndQuestion = boost::function<void(const ObjectPath& classPath, const PathSink& sink)>;

/// Reaches the instances of the association class of `classPath` through its association providers
/// at `routes`: asks each of them for the references of every instance that the class's first
/// reference may name, or the next one's where that has none. Where these cannot all be enumerated,
/// the failure is one of the `attempts`, and it asks for those that could. Without such providers,
/// for classes without a declaration, or between associations, it asks nothing.
void walkReferences(const ClassRepository& classes, const std::vector<Route>& routes,
                    const ObjectPath& classPath, Attempts& attempts, const EndQuestion& endsOf,
                    const ReferenceQuestion& ask);

}  // namespace cmpinsp
