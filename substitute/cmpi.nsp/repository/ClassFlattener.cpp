#include "substitute/cmpi.nsp/repository/ClassFlattener.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <unordered_map>
#include <utility>

#include "substitute/cmpi.nsp/repository/ClassTable.h"
#include "substitute/cmpi.nsp/repository/MofValues.h"
#include "substitute/cmpi.nsp/repository/ValueNames.h"

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

/// Finds qualifiers by their names while more are added: by a table where there are many.
class QualifierFinder {
 public:
  QualifierFinder(std::vector<Qualifier>& qualifiers, std::size_t more) : m_qualifiers(qualifiers) {
    constexpr std::size_t kFew = 16;
    m_hasTable = more > kFew;
    for (std::size_t at = 0; m_hasTable && at < qualifiers.size(); ++at) note(at);
  }

  Qualifier* find(const std::string& name) {
    if (m_hasTable) {
      const auto found = m_table.find(name);
      return found == m_table.end() ? nullptr : &m_qualifiers[found->second];
    }
    const auto found = std::find_if(
        m_qualifiers.begin(), m_qualifiers.end(),
        [&](const Qualifier& candidate) { return vorcore::equalNames(candidate.name, name); });
    return found == m_qualifiers.end() ? nullptr : &*found;
  }

  void add(Qualifier qualifier) {
    m_qualifiers.push_back(std::move(qualifier));
    if (m_hasTable) note(m_qualifiers.size() - 1);
  }

 private:
  void note(std::size_t at) { m_table.emplace(m_qualifiers[at].name, at); }

  std::vector<Qualifier>& m_qualifiers;
  bool m_hasTable = false;
  std::unordered_map<std::string, std::size_t, NameHash, NameEqual> m_table;
};

vorcore::Reach reachOf(const Flavors& flavors) {
  if (flavors.toSubclass == Choice::eOpen) return vorcore::Reach::eAsDeclared;
  return flavors.toSubclass == Choice::eYes ? vorcore::Reach::eSubclasses
                                            : vorcore::Reach::eClassAlone;
}

using ParametersByName =
    std::unordered_map<std::string, const vorcore::ParameterDeclaration*, NameHash, NameEqual>;

ParametersByName parametersOf(const vorcore::MethodDeclaration* method) {
  ParametersByName parameters;
  if (method == nullptr) return parameters;
  for (const vorcore::ParameterDeclaration& parameter : method->parameters) {
    parameters.emplace(parameter.name, &parameter);
  }
  return parameters;
}

}  // namespace

ClassFlattener::ClassFlattener(const QualifierTable& qualifiers,
                               std::vector<substitute::Problem>& problems)
    : m_table(qualifiers), m_problems(problems) {}

void ClassFlattener::report(const Position& at, const std::string& message) {
  if (m_isSilent) return;
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

bool ClassFlattener::reachesSubclass(const Qualifier& qualifier) const {
  if (qualifier.reach != vorcore::Reach::eAsDeclared) {
    return qualifier.reach == vorcore::Reach::eSubclasses;
  }
  const NZELVOR20::TCIMQualifierDecl* declared = m_table.find(qualifier.name);
  return declared == nullptr || declared->toSubclass;
}

ClassFlattener::Qualifiers ClassFlattener::inheritedBy(const Qualifiers& inherited) const {
  Qualifiers qualifiers;
  qualifiers.reserve(inherited.size());
  for (const Qualifier& qualifier : inherited) {
    if (reachesSubclass(qualifier)) qualifiers.push_back(qualifier);
  }
  return qualifiers;
}

ClassFlattener::Qualifiers ClassFlattener::merge(const std::vector<QualifierSyntax>& own,
                                                 Qualifiers qualifiers,
                                                 const std::string& feature) {
  const std::size_t inherited = qualifiers.size();
  QualifierFinder finder(qualifiers, own.size());
  for (const QualifierSyntax& syntax : own) {
    Qualifier qualifier{syntax.name, qualifierValue(syntax), reachOf(syntax.flavors)};
    Qualifier* existing = finder.find(syntax.name);
    if (existing == nullptr) {
      finder.add(std::move(qualifier));
    } else {
      const bool isInherited = existing < qualifiers.data() + inherited;
      override(*existing, std::move(qualifier), isInherited, syntax, feature);
    }
  }
  return qualifiers;
}

void ClassFlattener::override(Qualifier& existing, Qualifier qualifier, bool isInherited,
                              const QualifierSyntax& syntax, const std::string& feature) {
  if (qualifier.reach != vorcore::Reach::eAsDeclared) existing.reach = qualifier.reach;
  const NZELVOR20::TCIMQualifierDecl* declared = m_table.find(syntax.name);
  const bool isFixed = isInherited && declared != nullptr && !declared->overridable;
  if (!isFixed) {
    existing.value = std::move(qualifier.value);
  } else if (existing.value != qualifier.value && !m_isMixed) {
    report(syntax.at, "the qualifier " + syntax.name +
                          (feature.empty() ? std::string() : " of " + feature) +
                          " may not be changed by a subclass");
  }
}

void ClassFlattener::addProperty(const PropertySyntax& syntax) {
  const std::size_t position = m_class->properties.find(syntax.name);
  const vorcore::PropertyDeclaration* overridden =
      position < m_class->properties.size() ? &m_class->properties[position] : nullptr;
  vorcore::PropertyDeclaration property;
  Qualifiers inherited;
  if (overridden != nullptr) inherited = inheritedBy(overridden->qualifiers);
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
    m_class->properties.replace(position, std::move(property));
  } else {
    m_class->properties.push_back(std::move(property));
  }
}

vorcore::ParameterDeclaration ClassFlattener::flattenParameter(
    const ParameterSyntax& syntax, const vorcore::ParameterDeclaration* overridden,
    const std::string& method) {
  Qualifiers inherited;
  if (overridden != nullptr) inherited = inheritedBy(overridden->qualifiers);
  vorcore::ParameterDeclaration parameter;
  parameter.name = syntax.name;
  parameter.qualifiers = merge(syntax.qualifiers, std::move(inherited), method + "." + syntax.name);
  parameter.type = valueType(syntax.type, parameter.qualifiers);
  parameter.isArray = syntax.type.isArray;
  parameter.isIn = isTrue(parameter.qualifiers, "In", true);
  parameter.isOut = isTrue(parameter.qualifiers, "Out");
  parameter.referenceClass = syntax.type.referenceClass;
  return parameter;
}

void ClassFlattener::addMethod(const MethodSyntax& syntax) {
  const std::size_t position = m_class->methods.find(syntax.name);
  const vorcore::MethodDeclaration* overridden =
      position < m_class->methods.size() ? &m_class->methods[position] : nullptr;
  vorcore::MethodDeclaration method;
  Qualifiers inherited;
  if (overridden != nullptr) inherited = inheritedBy(overridden->qualifiers);
  method.name = syntax.name;
  method.qualifiers = merge(syntax.qualifiers, std::move(inherited), syntax.name);
  method.returnType = valueType(syntax.returnType, method.qualifiers);
  method.originClass = overridden != nullptr ? overridden->originClass : m_class->name;
  method.parameters.reserve(syntax.parameters.size());
  const ParametersByName known = parametersOf(overridden);
  for (const ParameterSyntax& parameter : syntax.parameters) {
    const auto found = known.find(parameter.name);
    method.parameters.push_back(
        flattenParameter(parameter, found == known.end() ? nullptr : found->second, syntax.name));
  }
  if (overridden != nullptr) {
    m_class->methods.replace(position, std::move(method));
  } else {
    m_class->methods.push_back(std::move(method));
  }
}

void ClassFlattener::completeProperty(std::size_t position, const PropertySyntax& other) {
  vorcore::PropertyDeclaration property = m_class->properties[position];
  const Qualifiers others = merge(other.qualifiers, {}, other.name);
  if (valueType(other.type, others) != property.type) return;
  if (completeNames(property.qualifiers, others)) {
    m_class->properties.replace(position, std::move(property));
  }
}

void ClassFlattener::completeMethod(std::size_t position, const MethodSyntax& other) {
  vorcore::MethodDeclaration method = m_class->methods[position];
  bool isChanged = completeNames(method.qualifiers, merge(other.qualifiers, {}, other.name));
  for (vorcore::ParameterDeclaration& parameter : method.parameters) {
    const auto found = std::find_if(other.parameters.begin(), other.parameters.end(),
                                    [&](const ParameterSyntax& candidate) {
                                      return vorcore::equalNames(candidate.name, parameter.name);
                                    });
    if (found == other.parameters.end()) continue;
    const Qualifiers others = merge(found->qualifiers, {}, found->name);
    isChanged = completeNames(parameter.qualifiers, others) || isChanged;
  }
  if (isChanged) m_class->methods.replace(position, std::move(method));
}

/// Adds what another version of the class has beyond this one.
void ClassFlattener::addFrom(const ClassSyntax& other) {
  m_isSilent = true;
  for (const PropertySyntax& property : other.properties) {
    const std::size_t position = m_class->properties.find(property.name);
    if (position < m_class->properties.size()) {
      completeProperty(position, property);
    } else {
      addProperty(property);
    }
  }
  for (const MethodSyntax& method : other.methods) {
    const std::size_t position = m_class->methods.find(method.name);
    if (position < m_class->methods.size()) {
      completeMethod(position, method);
    } else {
      addMethod(method);
    }
  }
  m_isSilent = false;
}

void ClassFlattener::inherit(const ClassDeclaration& superclass) {
  m_class->qualifiers = inheritedBy(superclass.qualifiers);
  m_class->properties = superclass.properties;
  m_class->methods = superclass.methods;
  m_class->isAssociation = superclass.isAssociation;
  m_class->isOpen = superclass.isOpen;
  m_class->superclass = superclass.name;
}

vorcore::ClassDeclarationPtr ClassFlattener::flatten(const ClassParts& parts) {
  const ClassSyntax& syntax = *parts.own.syntax;
  m_file = *parts.own.file;
  m_isMixed = parts.isMixed;
  m_class = boost::make_shared<ClassDeclaration>();
  m_class->name = syntax.name;
  if (parts.superclass) {
    inherit(*parts.superclass);
  } else {
    m_class->superclass = syntax.superclass;
    m_class->isOpen = !syntax.superclass.empty();
  }
  m_class->qualifiers = merge(syntax.qualifiers, std::move(m_class->qualifiers), std::string());
  m_class->isAssociation = m_class->isAssociation || isTrue(m_class->qualifiers, "Association");
  m_class->isAbstract = isTrue(m_class->qualifiers, "Abstract");
  for (const PropertySyntax& property : syntax.properties) addProperty(property);
  for (const MethodSyntax& method : syntax.methods) addMethod(method);
  if (parts.other.syntax != nullptr) addFrom(*parts.other.syntax);
  return std::move(m_class);
}

}  // namespace cmpinsp
