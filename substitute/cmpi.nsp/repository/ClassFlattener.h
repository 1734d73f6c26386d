#pragma once

#include <boost/shared_ptr.hpp>
#include <set>
#include <string>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/repository/MofSyntax.h"
#include "substitute/cmpi.nsp/repository/QualifierTable.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

/// A class with what it inherits, and with the inheritance flavors that its files wrote beside a
/// qualifier, where they differ from the qualifier's declaration.
struct FlatClass {
  vorcore::ClassDeclarationPtr declaration;
  std::set<std::string> restricted;  ///< "feature.qualifier" that subclasses do not inherit
  std::set<std::string> passedOn;    ///< "feature.qualifier" that they do
};

/// Joins what a class says with what it inherits (DSP0004, 5.1.2.8 and 7.8): overridden properties
/// and methods keep their place and the qualifiers that are passed on to subclasses.
class ClassFlattener {
 public:
  /// Faults are added to `problems`; the value at fault is left out, the class stays.
  ClassFlattener(const QualifierTable& qualifiers, std::vector<substitute::Problem>& problems);

  /// `superclass` is null for a root class.
  FlatClass flatten(const ClassSyntax& syntax, const std::string& file,
                    const FlatClass* superclass);

 private:
  using Qualifiers = std::vector<vorcore::Qualifier>;

  void report(const Position& at, const std::string& message);
  NZELVOR20::TCIMValue readValue(const Initializer& initializer, NZELVOR20::ECIMType type,
                                 bool isArray);
  NZELVOR20::TCIMValue qualifierValue(const QualifierSyntax& qualifier);
  bool reachesSubclass(const std::string& place, const std::string& qualifier) const;
  void noteFlavor(const std::string& place, const QualifierSyntax& qualifier);
  Qualifiers inheritedBy(const std::string& feature, const Qualifiers& inherited) const;
  Qualifiers merge(const std::vector<QualifierSyntax>& own, Qualifiers qualifiers,
                   const std::string& feature);
  void addProperty(const PropertySyntax& property);
  void addMethod(const MethodSyntax& method);
  vorcore::ParameterDeclaration flattenParameter(const ParameterSyntax& parameter,
                                                 const vorcore::MethodDeclaration* overridden,
                                                 const std::string& method);

  const QualifierTable& m_table;
  std::vector<substitute::Problem>& m_problems;
  std::string m_file;
  FlatClass m_flat;  ///< of the class at hand
  boost::shared_ptr<vorcore::ClassDeclaration> m_class;
};

}  // namespace cmpinsp
