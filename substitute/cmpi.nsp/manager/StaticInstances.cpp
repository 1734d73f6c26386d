#include "substitute/cmpi.nsp/manager/StaticInstances.h"

#include <boost/make_shared.hpp>
#include <memory>
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

/// How deep instances may be embedded in each other.
constexpr int kDeepestEmbedding = 32;
/// How many instances may refer to each other by their keys: an association between associations is
/// rare enough, and each level doubles the length of a path's text more than once.
constexpr int kLongestKeyChain = 4;

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

  InstanceDataPtr build(const InstanceSyntax& syntax) {
    m_keyChain = 0;
    return build(syntax, 0);
  }

 private:
  InstanceDataPtr build(const InstanceSyntax& syntax, int depth) {
    const auto known = m_built.find(&syntax);
    if (known != m_built.end()) return known->second;
    if (depth > kDeepestEmbedding) {
      throw SyntaxError{syntax.at, "instances are embedded in each other too deeply"};
    }
    InstanceDataPtr data = boost::make_shared<InstanceData>();
    data->path = path(syntax);
    data->declaration = declarationOf(syntax);
    const std::vector<vorcore::PropertyDeclaration>& properties = data->declaration->properties;
    data->values.reserve(properties.size());
    for (const vorcore::PropertyDeclaration& property : properties) {
      data->values.push_back(property.defaultValue);
    }
    for (const AssignmentSyntax& assignment : syntax.assignments) {
      const std::size_t position = data->declaration->findProperty(assignment.name);
      if (position == vorcore::ClassDeclaration::kNoProperty) {
        throw SyntaxError{assignment.at, "class " + data->declaration->name + " has no property " +
                                             assignment.name};
      }
      data->values[position] = value(assignment, properties[position], depth);
    }
    m_built.emplace(&syntax, data);
    return data;
  }

  vorcore::ClassDeclarationPtr declarationOf(const InstanceSyntax& syntax) const {
    vorcore::ClassDeclarationPtr declaration = m_classes.find(syntax.className);
    if (declaration) return declaration;
    throw SyntaxError{syntax.at, "instance of the unknown class " + syntax.className};
  }

  /// The path, for which the keys alone are read: instances may refer to each other in circles by
  /// their other properties.
  ObjectPath path(const InstanceSyntax& syntax) {
    const auto known = m_paths.find(&syntax);
    if (known != m_paths.end()) return known->second;
    if (m_keyChain == kLongestKeyChain) {
      throw SyntaxError{syntax.at, "too many instances refer to each other by their keys"};
    }
    ++m_keyChain;
    const vorcore::ClassDeclarationPtr declaration = declarationOf(syntax);
    ObjectPath path{kDefaultNamespace, declaration->name, {}};
    for (const vorcore::PropertyDeclaration& property : declaration->properties) {
      if (!property.isKey) continue;
      const AssignmentSyntax* assignment = syntax.find(property.name);
      path.setKey(property.name,
                  assignment == nullptr ? property.defaultValue : value(*assignment, property, 0));
    }
    --m_keyChain;
    m_paths.emplace(&syntax, path);
    return path;
  }

  TCIMValue value(const AssignmentSyntax& assignment, const vorcore::PropertyDeclaration& property,
                  int depth) {
    return valueOf(
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
      return TCIMValue(referenceTo(path(*found->second), m_namespace));
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

  /// Kept as long as the builder, which knows instances by their place.
  const InstanceSyntax& parsed(const Literal& literal) {
    try {
      m_parsed.push_back(std::make_unique<InstanceSyntax>(parseInstance(literal.text)));
      return *m_parsed.back();
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
  std::vector<std::unique_ptr<InstanceSyntax>> m_parsed;
  int m_keyChain = 0;  ///< paths being read, one for the other's key
  std::unordered_map<const InstanceSyntax*, ObjectPath> m_paths;
  std::unordered_map<const InstanceSyntax*, InstanceDataPtr> m_built;
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
