#pragma once

#include <boost/shared_ptr.hpp>

#include "framework/ICIMNamespace.h"
#include "substitute/cmpi.nsp/model/ObjectPath.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

/// `path` with its keys in the types that `declaration` (which may be null) gives them: a path that
/// was read from text has wide integers, and references as texts. A key that does not convert stays
/// as it is. `ns` is for the references.
ObjectPath withDeclaredKeyTypes(ObjectPath path, const vorcore::ClassDeclaration* declaration,
                                const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns);

}  // namespace cmpinsp
