#include "substitute/cmpi.nsp/manager/StaticInstances.h"

#include <boost/make_shared.hpp>
#include <utility>

#include "framework/TCIMReference.h"
#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/broker/EmbeddedInstance.h"
#include "substitute/cmpi.nsp/manager/Router.h"
#include "substitute/cmpi.nsp/model/PathReference.h"
#include "substitute/cmpi.nsp/registration/RegistrationReaders.h"
#include "substitute/cmpi.nsp/repository/MofParser.h"
#include "substitute/cmpi.nsp/repository/MofValues.h"

namespace cmpinsp {

namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

/// How many instances may stand inside, or refer by their keys to, each other.
constexpr int kDeepestChain = 32;

/// Builds the instances of one file, whose aliases they may use before they are declared.
class UnitBuilder {
 public:
  UnitBuilder(const CompilationUnit& unit, const ClassRepository& classes,
              const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns)
      : m_classes(classes), m_namespace(ns) {
    for (const InstanceSyntax& instance : unit.instances) {
      if (!instance.alias.empty()) m_aliases.emplace(instance.alias, &instance);
    }
  }

  InstanceDataPtr build(const InstanceSyntax& syntax, int depth = 0) {
    if (depth > kDeepestChain) {
      throw SyntaxError{syntax.at, "instances are nested, or refer to each other, too deeply"};
    }
    InstanceDataPtr data = boost::make_shared<InstanceData>();
    data->declaration = m_classes.find(syntax.className);
    if (!data->declaration) {
      throw SyntaxError{syntax.at, "instance of the unknown class " + syntax.className};
    }
    const vorcore::ClassDeclaration& declaration = *data->declaration;
    data->path.nameSpace = kDefaultNamespace;
    data->path.className = declaration.name;
    data->values.reserve(declaration.properties.size());
    for (const vorcore::PropertyDeclaration& property : declaration.properties) {
      data->values.push_back(property.defaultValue);
    }
    for (const AssignmentSyntax& assignment : syntax.assignments) {
      assign(*data, assignment, depth);
    }
    for (std::size_t at = 0; at < declaration.properties.size(); ++at) {
      const vorcore::PropertyDeclaration& property = declaration.properties[at];
      if (property.isKey) data->path.setKey(property.name, data->values[at]);
    }
    return data;
  }

 private:
  void assign(InstanceData& data, const AssignmentSyntax& assignment, int depth) {
    const std::size_t position = data.declaration->findProperty(assignment.name);
    if (position == vorcore::ClassDeclaration::kNoProperty) {
      throw SyntaxError{assignment.at,
                        "class " + data.declaration->name + " has no property " + assignment.name};
    }
    const vorcore::PropertyDeclaration& property = data.declaration->properties[position];
    data.values[position] = valueOf(
        assignment.value, property.type, property.isArray,
        [&](const Literal& literal, ECIMType type) { return resolve(literal, type, depth); });
  }

  /// An alias stands for the path of its instance in a reference, and for the instance itself
  /// elsewhere.
  TCIMValue resolve(const Literal& literal, ECIMType type, int depth) {
    const bool isReference = type == ECIMType::eReference;
    if (literal.kind == LiteralKind::eString) {
      return isReference ? referenceIn(literal) : embedded(parsed(literal), depth);
    }
    if (literal.kind == LiteralKind::eInstance && !isReference) {
      return embedded(*literal.instance, depth);
    }
    if (literal.kind == LiteralKind::eAlias) {
      const auto found = m_aliases.find(literal.text);
      if (found == m_aliases.end()) {
        throw SyntaxError{literal.at, "the alias $" + literal.text + " is not declared"};
      }
      if (!isReference) return embedded(*found->second, depth);
      return TCIMValue(referenceTo(build(*found->second, depth + 1)->path, m_namespace));
    }
    throw SyntaxError{literal.at, isReference ? "expected a path or an alias"
                                              : "expected an instance or an alias"};
  }

  TCIMValue referenceIn(const Literal& literal) {
    try {
      return TCIMValue(referenceTo(ObjectPath::parse(literal.text), m_namespace));
    } catch (const NZELVOR20::TVORException& error) {
      throw SyntaxError{literal.at, error.what()};
    }
  }

  static InstanceSyntax parsed(const Literal& literal) {
    try {
      return parseInstance(literal.text);
    } catch (const NZELVOR20::TVORException& error) {
      throw SyntaxError{literal.at, error.what()};
    }
  }

  TCIMValue embedded(const InstanceSyntax& syntax, int depth) {
    return TCIMValue::Instance(makeInstance(build(syntax, depth + 1), m_namespace));
  }

  const ClassRepository& m_classes;
  boost::shared_ptr<NZELVOR20::ICIMNamespace> m_namespace;
  std::unordered_map<std::string, const InstanceSyntax*, NameHash, NameEqual> m_aliases;
};

}  // namespace

const std::vector<InstanceDataPtr>& StaticInstances::of(const std::string& className) const {
  static const std::vector<InstanceDataPtr> kNone;
  const auto found = m_byClass.find(className);
  return found == m_byClass.end() ? kNone : found->second;
}

void StaticInstances::add(const InstanceDataPtr& instance) {
  m_byClass[instance->path.className].push_back(instance);
}

StaticInstances buildStaticInstances(const std::vector<CompilationUnit>& units,
                                     const ClassRepository& classes,
                                     const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns,
                                     std::vector<substitute::Problem>& problems) {
  StaticInstances instances;
  for (const CompilationUnit& unit : units) {
    UnitBuilder builder(unit, classes, ns);
    for (const InstanceSyntax& syntax : unit.instances) {
      if (isRegistrationClass(syntax.className)) continue;
      try {
        instances.add(builder.build(syntax));
      } catch (const SyntaxError& error) {
        problems.push_back({unit.file, error.at.line, error.at.column, error.message});
      }
    }
  }
  return instances;
}

}  // namespace cmpinsp
