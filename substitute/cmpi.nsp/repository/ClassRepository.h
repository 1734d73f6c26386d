#pragma once

#include <boost/function.hpp>
#include <string>
#include <vector>

#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

/// The classes of an installation. Filled at start, read-only afterwards: reading is safe from any
/// thread. Names are compared without case.
class ClassRepository {
 public:
  virtual ~ClassRepository() = default;

  /// The class, or an empty handle.
  virtual vorcore::ClassDeclarationPtr find(const std::string& className) const = 0;

  /// Whether there is such a class; unlike `find` this reads nothing of it.
  virtual bool knows(const std::string& className) const = 0;

  /// The name of the class that a declared class is below; empty for none. Reads nothing of it,
  /// too.
  virtual std::string superclassOf(const std::string& className) const = 0;

  /// True when `className` is `ancestor` or one of its direct or indirect subclasses. An undeclared
  /// class is only itself, and what is declared as its subclass.
  virtual bool isA(const std::string& className, const std::string& ancestor) const = 0;

  /// The direct subclasses, or with `deep` all of them, in name order.
  virtual std::vector<std::string> subclasses(const std::string& className, bool deep) const = 0;

  /// Every class without a declared superclass, in name order.
  virtual std::vector<std::string> rootClasses() const = 0;
};

}  // namespace cmpinsp
