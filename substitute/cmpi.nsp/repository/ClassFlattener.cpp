#include "substitute/cmpi.nsp/repository/ClassFlattener.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <utility>

#include "substitute/cmpi.nsp/repository/MofValues.h"

namespace cmpinsp {

namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;
using vorcore::ClassDeclaration;
using vorcore::Qualifier;

bool isTrue(const std::vector<Qualifier>& qualifiers, const char* name, bool otherwise = false) {
  const TCIMValue* value = vorcore::findQualifier(qualifiers, name);
  if (value == nullptr || value->IsNull() || value->GetType() != ECIMType::eBoolean) {
    return otherwise;
  }
  return value->ToBoolean();
}

/// A string that holds an instance is of type instance for everybody but the MOF.
ECIMType valueType(const TypeSyntax& type, const std::vector<Qualifier>& qualifiers) {
  if (type.type != ECIMType::eString) return type.type;
  const TCIMValue* instanceOf = vorcore::findQualifier(qualifiers, "EmbeddedInstance");
  const bool isInstance = instanceOf != nullptr && !instanceOf->IsNull();
  return isInstance || isTrue(qualifiers, "EmbeddedObject") ? ECIMType::eInstance : type.type;
}

std::string placeOf(const std::string& feature, const std::string& qualifier) {
  return vorcore::nameKey(feature) + "." + vorcore::nameKey(qualifier);
}

template <typename Named>
Named* findNamed(std::vector<Named>& list, const std::string& name) {
  const auto found = std::find_if(list.begin(), list.end(), [&](const Named& candidate) {
    return vorcore::equalNames(candidate.name, name);
  });
  return found == list.end() ? nullptr : &*found;
}

}  // namespace

ClassFlattener::ClassFlattener(const QualifierTable& qualifiers,
                               std::vector<substitute::Problem>& problems)
    : m_table(qualifiers), m_problems(problems) {}

void ClassFlattener::report(const Position& at, const std::string& message) {
  m_problems.push_back({m_file, at.line, at.column, "class " + m_class->name + ": " + message});
}

TCIMValue ClassFlattener::readValue(const Initializer& initializer, ECIMType type, bool isArray) {
  try {
    return valueOf(initializer, type, isArray);
  } catch (const SyntaxError& error) {
    report(error.at, error.message);
    return TCIMValue::Null(type, isArray);
  }
}

/// A qualifier without a value is true, or what its declaration says (DSP0004, 7.8).
TCIMValue ClassFlattener::qualifierValue(const QualifierSyntax& qualifier) {
  const NZELVOR20::TCIMQualifierDecl* declared = m_table.find(qualifier.name);
  if (!qualifier.value) {
    const bool isFlag = declared == nullptr || declared->type == ECIMType::eBoolean;
    return isFlag ? TCIMValue::Boolean(true) : declared->defaultValue;
  }
  if (declared != nullptr) return readValue(*qualifier.value, declared->type, declared->isArray);
  try {
    return guessedValueOf(*qualifier.value);
  } catch (const SyntaxError& error) {
    report(error.at, error.message);
    return TCIMValue();
  }
}

bool ClassFlattener::reachesSubclass(const std::string& place, const std::string& qualifier) const {
  if (m_flat.restricted.count(place) != 0) return false;
  if (m_flat.passedOn.count(place) != 0) return true;
  const NZELVOR20::TCIMQualifierDecl* declared = m_table.find(qualifier);
  return declared == nullptr || declared->toSubclass;
}

void ClassFlattener::noteFlavor(const std::string& place, const QualifierSyntax& qualifier) {
  if (qualifier.flavors.toSubclass == Choice::eOpen) return;
  const bool passesOn = qualifier.flavors.toSubclass == Choice::eYes;
  (passesOn ? m_flat.restricted : m_flat.passedOn).erase(place);
  (passesOn ? m_flat.passedOn : m_flat.restricted).insert(place);
}

ClassFlattener::Qualifiers ClassFlattener::inheritedBy(const std::string& feature,
                                                       const Qualifiers& inherited) const {
  Qualifiers qualifiers;
  qualifiers.reserve(inherited.size());
  for (const Qualifier& qualifier : inherited) {
    if (reachesSubclass(placeOf(feature, qualifier.name), qualifier.name)) {
      qualifiers.push_back(qualifier);
    }
  }
  return qualifiers;
}

ClassFlattener::Qualifiers ClassFlattener::merge(const std::vector<QualifierSyntax>& own,
                                                 Qualifiers qualifiers,
                                                 const std::string& feature) {
  const std::size_t inherited = qualifiers.size();
  for (const QualifierSyntax& syntax : own) {
    Qualifier qualifier{syntax.name, qualifierValue(syntax)};
    noteFlavor(placeOf(feature, syntax.name), syntax);
    Qualifier* existing = findNamed(qualifiers, syntax.name);
    if (existing == nullptr) {
      qualifiers.push_back(std::move(qualifier));
      continue;
    }
    const bool isInherited = existing < qualifiers.data() + inherited;
    const NZELVOR20::TCIMQualifierDecl* declared = m_table.find(syntax.name);
    const bool isFixed = isInherited && declared != nullptr && !declared->overridable;
    if (!isFixed) {
      existing->value = std::move(qualifier.value);
    } else if (existing->value != qualifier.value) {
      report(syntax.at, "the qualifier " + syntax.name +
                            (feature.empty() ? std::string() : " of " + feature) +
                            " may not be changed by a subclass");
    }
  }
  return qualifiers;
}

void ClassFlattener::addProperty(const PropertySyntax& syntax) {
  vorcore::PropertyDeclaration* overridden = findNamed(m_class->properties, syntax.name);
  vorcore::PropertyDeclaration property;
  Qualifiers inherited;
  if (overridden != nullptr) inherited = inheritedBy(syntax.name, overridden->qualifiers);
  property.name = syntax.name;
  property.qualifiers = merge(syntax.qualifiers, std::move(inherited), syntax.name);
  property.type = valueType(syntax.type, property.qualifiers);
  property.isArray = syntax.type.isArray;
  property.isKey = isTrue(property.qualifiers, "Key");
  property.referenceClass = syntax.type.referenceClass;
  property.originClass = overridden != nullptr ? overridden->originClass : m_class->name;
  property.defaultValue = TCIMValue::Null(property.type, property.isArray);
  if (syntax.initial) {
    property.defaultValue = readValue(*syntax.initial, property.type, property.isArray);
  } else if (overridden != nullptr && overridden->type == property.type &&
             overridden->isArray == property.isArray) {
    property.defaultValue = overridden->defaultValue;
  }
  if (overridden != nullptr) {
    *overridden = std::move(property);
  } else {
    m_class->properties.push_back(std::move(property));
  }
}

vorcore::ParameterDeclaration ClassFlattener::flattenParameter(
    const ParameterSyntax& syntax, const vorcore::MethodDeclaration* overridden,
    const std::string& method) {
  const std::string feature = method + "." + syntax.name;
  Qualifiers inherited;
  if (overridden != nullptr) {
    for (const vorcore::ParameterDeclaration& parameter : overridden->parameters) {
      if (!vorcore::equalNames(parameter.name, syntax.name)) continue;
      inherited = inheritedBy(feature, parameter.qualifiers);
    }
  }
  vorcore::ParameterDeclaration parameter;
  parameter.name = syntax.name;
  parameter.qualifiers = merge(syntax.qualifiers, std::move(inherited), feature);
  parameter.type = valueType(syntax.type, parameter.qualifiers);
  parameter.isArray = syntax.type.isArray;
  parameter.isIn = isTrue(parameter.qualifiers, "In", true);
  parameter.isOut = isTrue(parameter.qualifiers, "Out");
  parameter.referenceClass = syntax.type.referenceClass;
  return parameter;
}

void ClassFlattener::addMethod(const MethodSyntax& syntax) {
  vorcore::MethodDeclaration* overridden = findNamed(m_class->methods, syntax.name);
  vorcore::MethodDeclaration method;
  Qualifiers inherited;
  if (overridden != nullptr) inherited = inheritedBy(syntax.name, overridden->qualifiers);
  method.name = syntax.name;
  method.qualifiers = merge(syntax.qualifiers, std::move(inherited), syntax.name);
  method.returnType = valueType(syntax.returnType, method.qualifiers);
  method.originClass = overridden != nullptr ? overridden->originClass : m_class->name;
  method.parameters.reserve(syntax.parameters.size());
  for (const ParameterSyntax& parameter : syntax.parameters) {
    method.parameters.push_back(flattenParameter(parameter, overridden, syntax.name));
  }
  if (overridden != nullptr) {
    *overridden = std::move(method);
  } else {
    m_class->methods.push_back(std::move(method));
  }
}

FlatClass ClassFlattener::flatten(const ClassSyntax& syntax, const std::string& file,
                                  const FlatClass* superclass) {
  m_file = file;
  m_flat = superclass != nullptr ? *superclass : FlatClass();
  m_class = boost::make_shared<ClassDeclaration>();
  Qualifiers inherited;
  if (superclass != nullptr) {
    const ClassDeclaration& parent = *superclass->declaration;
    inherited = inheritedBy(std::string(), parent.qualifiers);
    m_class->properties = parent.properties;
    m_class->methods = parent.methods;
    m_class->isAssociation = parent.isAssociation;
    m_class->superclass = parent.name;
  }
  m_class->name = syntax.name;
  m_class->qualifiers = merge(syntax.qualifiers, std::move(inherited), std::string());
  m_class->isAssociation = m_class->isAssociation || isTrue(m_class->qualifiers, "Association");
  m_class->isAbstract = isTrue(m_class->qualifiers, "Abstract");
  for (const PropertySyntax& property : syntax.properties) addProperty(property);
  for (const MethodSyntax& method : syntax.methods) addMethod(method);
  m_class->buildIndex();
  m_flat.declaration = m_class;
  return std::move(m_flat);
}

}  // namespace cmpinsp
