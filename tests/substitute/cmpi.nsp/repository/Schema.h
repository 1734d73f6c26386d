#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/repository/ClassBuilder.h"
#include "substitute/cmpi.nsp/repository/MofParser.h"
#include "substitute/cmpi.nsp/repository/MofValues.h"
#include "tests/substitute/cmpi.nsp/Problems.h"

namespace cmpinsp {

/// The classes and instances of MOF texts, which count as the files "a", "b" and so on.
struct Schema {
  explicit Schema(const std::vector<std::string>& texts) {
    char name = 'a';
    for (const std::string& text : texts) {
      units.push_back(parseMof(std::string(1, name++), text, problems));
    }
    missing = buildClasses(units, qualifiers, classes, problems);
  }
  explicit Schema(const std::string& text) : Schema(std::vector<std::string>{text}) {}

  std::string faults() const { return linesOf(problems); }

  const vorcore::PropertyDeclaration& property(const std::string& className,
                                               const std::string& name) const {
    const vorcore::ClassDeclarationPtr declaration = classes.find(className);
    return declaration->properties.at(declaration->findProperty(name));
  }
  const vorcore::ParameterDeclaration& parameter(const std::string& className,
                                                 const std::string& method, std::size_t at) const {
    return classes.find(className)->findMethod(method)->parameters.at(at);
  }

  std::vector<substitute::Problem> problems;
  std::vector<CompilationUnit> units;
  QualifierTable qualifiers;
  ClassTable classes;
  std::vector<MissingClass> missing;
};

}  // namespace cmpinsp
