#pragma once

#include <boost/shared_ptr.hpp>

#include "framework/ICIMNamespace.h"
#include "framework/TCIMReference.h"
#include "substitute/cmpi.nsp/model/ObjectPath.h"

namespace cmpinsp {

/// A framework reference to `path`; `ns` is where its class is looked up, held weakly, and may be
/// empty. The key map is built only when somebody asks for it.
NZELVOR20::TCIMReference referenceTo(ObjectPath path,
                                     const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns);

/// The path that `reference` names; without a class name for an empty reference.
ObjectPath pathOf(const NZELVOR20::TCIMReference& reference);

}  // namespace cmpinsp
