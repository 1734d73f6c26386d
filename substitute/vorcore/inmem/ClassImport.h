#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace NZELVOR20 {
class TInmemNamespace;
}

namespace vorcore {

/// The declaration of any class: its own where it stands on one, else made from what its operations
/// answer. Of qualifiers, those that the display of values and the meaning of a property rest on.
ClassDeclarationPtr declarationOf(NZELVOR20::ICIMClass& described);

/// What an instance of a class that cannot be found tells of that class.
ClassDeclaration declarationOf(NZELVOR20::ICIMInstance& instance);

/// Marks the properties that `path` has as keys, where the declaration marks none.
void markKeys(ClassDeclaration& declaration, const NZELVOR20::TCIMReference& path);

/// The instance's class; an empty handle where it cannot be found.
boost::shared_ptr<NZELVOR20::ICIMClass> classOf(NZELVOR20::ICIMInstance& instance);

/// Makes the class of `instance` in `target`, below its superclasses, unless it is there already.
/// Throws `TVORException` (invalid class) for an instance that names no class.
void importClassOf(NZELVOR20::ICIMInstance& instance, NZELVOR20::TInmemNamespace& target);

/// Makes `imported` in `target`, below its superclasses, unless it is there already.
void importClass(NZELVOR20::ICIMClass& imported, NZELVOR20::TInmemNamespace& target);

}  // namespace vorcore
