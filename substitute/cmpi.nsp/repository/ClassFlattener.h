#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

#include "substitute/cmpi.nsp/Problem.h"
#include "substitute/cmpi.nsp/repository/MofSyntax.h"
#include "substitute/cmpi.nsp/repository/QualifierTable.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

/// A class as a file has it.
struct ClassText {
  const ClassSyntax* syntax = nullptr;
  const std::string* file = nullptr;
};

/// What a class is made of.
struct ClassParts {
  ClassText own;
  vorcore::ClassDeclarationPtr superclass;  ///< empty for a root class and below an undeclared one
  /// Another version of the class, if any: what it has beyond the own one is added.
  ClassText other;
  /// The superclass is of another version than the class was written for, so that what may not be
  /// changed in a subclass is nobody's fault.
  bool isMixed = false;
};

/// Joins what a class says with what it inherits (DSP0004, 5.1.2.8 and 7.8): overridden properties
/// and methods keep their place and the qualifiers that are passed on to subclasses.
class ClassFlattener {
 public:
  /// Faults are added to `problems`; the value at fault is left out, the class stays.
  ClassFlattener(const QualifierTable& qualifiers, std::vector<substitute::Problem>& problems);

  vorcore::ClassDeclarationPtr flatten(const ClassParts& parts);

 private:
  using Qualifiers = std::vector<vorcore::Qualifier>;

  void report(const Position& at, const std::string& message);
  NZELVOR20::TCIMValue readValue(const Initializer& initializer, NZELVOR20::ECIMType type,
                                 bool isArray);
  NZELVOR20::TCIMValue qualifierValue(const QualifierSyntax& qualifier);
  bool reachesSubclass(const vorcore::Qualifier& qualifier) const;
  Qualifiers inheritedBy(const Qualifiers& inherited) const;
  Qualifiers merge(const std::vector<QualifierSyntax>& own, Qualifiers qualifiers,
                   const std::string& feature);
  void override(vorcore::Qualifier& existing, vorcore::Qualifier qualifier, bool isInherited,
                const QualifierSyntax& syntax, const std::string& feature);
  void inherit(const vorcore::ClassDeclaration& superclass);
  void addProperty(const PropertySyntax& property);
  void addMethod(const MethodSyntax& method);
  vorcore::ParameterDeclaration flattenParameter(const ParameterSyntax& parameter,
                                                 const vorcore::ParameterDeclaration* overridden,
                                                 const std::string& method);
  void addFrom(const ClassSyntax& other);
  void completeProperty(std::size_t position, const PropertySyntax& other);
  void completeMethod(std::size_t position, const MethodSyntax& other);

  const QualifierTable& m_table;
  std::vector<substitute::Problem>& m_problems;
  std::string m_file;
  bool m_isMixed = false;
  bool m_isSilent = false;  ///< while another version is read, whose faults nobody can mend
  boost::shared_ptr<vorcore::ClassDeclaration> m_class;
};

}  // namespace cmpinsp
