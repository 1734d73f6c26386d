#pragma once

#include <string>
#include <vector>

#include "substitute/cmpi.nsp/repository/ClassRepository.h"
#include "substitute/vorcore/values/TypeNames.h"

namespace cmpinsp {

inline std::string textOf(const NZELVOR20::TCIMValue& value) {
  return std::string(vorcore::typeName(value.GetType())) + (value.IsArray() ? "[]" : "") +
         (value.IsNull() ? " null" : "=" + value.ToString(10));
}

inline std::string textOf(const std::vector<vorcore::Qualifier>& qualifiers) {
  std::string text = "[";
  for (const vorcore::Qualifier& qualifier : qualifiers) {
    text += qualifier.name + " " + textOf(qualifier.value) + "; ";
  }
  return text + "]";
}

/// Everything that a declaration says: equal texts are equal declarations.
inline std::string textOf(const vorcore::ClassDeclaration& declaration) {
  const auto flag = [](bool is, const char* name) { return is ? std::string(name) : ""; };
  const auto type = [](NZELVOR20::ECIMType is) { return std::string(vorcore::typeName(is)) + " "; };
  std::string text = textOf(declaration.qualifiers) + declaration.name + ":" +
                     declaration.superclass + flag(declaration.isAssociation, " association") +
                     flag(declaration.isAbstract, " abstract") + flag(declaration.isOpen, " open") +
                     "\n";
  for (const vorcore::PropertyDeclaration& property : declaration.properties) {
    text += "  " + textOf(property.qualifiers) + type(property.type) + property.referenceClass +
            " " + property.originClass + "." + property.name + flag(property.isArray, "[]") +
            flag(property.isKey, " key") + " " + textOf(property.defaultValue) + "\n";
  }
  for (const vorcore::MethodDeclaration& method : declaration.methods) {
    text += "  " + textOf(method.qualifiers) + type(method.returnType) + method.originClass + "." +
            method.name + "\n";
    for (const vorcore::ParameterDeclaration& parameter : method.parameters) {
      text += "    " + textOf(parameter.qualifiers) + type(parameter.type) +
              parameter.referenceClass + " " + parameter.name + flag(parameter.isArray, "[]") +
              flag(parameter.isIn, " in") + flag(parameter.isOut, " out") + "\n";
    }
  }
  return text;
}

/// Every class, roots first.
inline std::string textOf(const ClassRepository& classes) {
  std::string text;
  for (const std::string& root : classes.rootClasses()) {
    text += textOf(*classes.find(root));
    for (const std::string& name : classes.subclasses(root, true)) {
      text += textOf(*classes.find(name));
    }
  }
  return text;
}

}  // namespace cmpinsp
