#pragma once

#include <string>

#include "framework/Export.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace vorcore {

/// The other face of an `ICIMClass` that stands on a class declaration: instances and copies share
/// the declaration instead of asking the class for one property after the other.
class NZELVOR20_INTERFACE IDeclaredClass {
 public:
  virtual ~IDeclaredClass() = default;

  /// Never empty.
  virtual ClassDeclarationPtr GetDeclaration() const = 0;

  /// The name of the class's namespace as paths show it; may be empty.
  virtual std::string GetNamespaceName() const = 0;
};

}  // namespace vorcore
