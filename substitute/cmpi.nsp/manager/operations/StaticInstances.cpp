#include "substitute/cmpi.nsp/manager/operations/StaticInstances.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <memory>
#include <utility>

#include "framework/TCIMReference.h"
#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/broker/objects/EmbeddedInstance.h"
#include "substitute/cmpi.nsp/manager/operations/PathSet.h"
#include "substitute/cmpi.nsp/manager/providers/Router.h"
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

/// An alias, and the file that declares it.
struct Alias {
  const InstanceSyntax* instance;
  const std::string* file;
};

/// Of two instances with one path; their keys may be spelt in different ways. Embedded instances
/// are taken for equal.
bool saysTheSame(const InstanceData& one, const InstanceData& other) {
  for (std::size_t position = 0; position < one.values.size(); ++position) {
    const TCIMValue& left = one.values[position];
    const TCIMValue& right = other.values[position];
    const bool areEmbedded =
        left.GetType() == ECIMType::eInstance && right.GetType() == ECIMType::eInstance;
    const bool isKey = one.declaration->properties[position].isKey;
    if (!isKey && !areEmbedded && left != right) return false;
  }
  return true;
}

bool isNamed(const ObjectPath& path) {
  return !path.keys.empty() && std::none_of(path.keys.begin(), path.keys.end(),
                                            [](const auto& key) { return key.second.IsNull(); });
}

/// Instances that are passed over, by their class.
struct Skipped {
  std::string className;
  std::string file;
  Position at;
  std::size_t count = 0;
};

/// Other servers keep what they know of providers and profiles in classes of their own.
bool isOfAnotherServer(const std::string& className) {
  constexpr std::size_t kLength = 3;
  return vorcore::equalNames(className.substr(0, kLength), "PG_");
}

substitute::Problem noteOf(const Skipped& skipped) {
  const bool isOne = skipped.count == 1;
  return {skipped.file, skipped.at.line, skipped.at.column,
          "note: " + (isOne ? "an instance" : std::to_string(skipped.count) + " instances") +
              " of " + skipped.className + (isOne ? " is" : " are") +
              " passed over: the class is undeclared, and of another server's own registration"};
}

/// Builds the instances of the files that share their aliases, which may be used before they are
/// declared.
class ScopeBuilder {
 public:
  ScopeBuilder(const ClassRepository& classes,
               const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns, std::vector<Skipped>& skipped,
               std::vector<substitute::Problem>& problems)
      : m_classes(classes), m_namespace(ns), m_skipped(skipped), m_problems(problems) {}

  /// Every file comes before the first instance is built.
  void addAliases(const CompilationUnit& unit) {
    for (const InstanceSyntax& instance : unit.instances) {
      if (instance.alias.empty()) continue;
      const auto [known, isNew] = m_aliases.emplace(instance.alias, Alias{&instance, &unit.file});
      if (isNew) continue;
      const Alias& first = known->second;
      m_problems.push_back({unit.file, instance.at.line, instance.at.column,
                            "the alias $" + instance.alias + " is that of the instance at " +
                                *first.file + ":" + std::to_string(first.instance->at.line) +
                                " already, which keeps it"});
    }
  }

  /// Builds the instances of one file; faulty ones are reported and left out.
  void build(const CompilationUnit& unit, StaticInstances& instances) {
    m_file = &unit.file;
    for (const InstanceSyntax& syntax : unit.instances) {
      if (isRegistrationClass(syntax.className) || skips(syntax)) continue;
      try {
        const InstanceDataPtr built = build(syntax);
        const InstanceDataPtr stays = instances.add(built);
        if (!saysTheSame(*built, *stays)) {
          throw SyntaxError{syntax.at, "another instance has the path " + built->path.toText() +
                                           " already, which stays"};
        }
      } catch (const SyntaxError& error) {
        m_problems.push_back({unit.file, error.at.line, error.at.column, error.message});
      }
    }
  }

 private:
  bool skips(const InstanceSyntax& syntax) {
    if (!isOfAnotherServer(syntax.className) || m_classes.find(syntax.className)) return false;
    auto known = std::find_if(m_skipped.begin(), m_skipped.end(), [&](const Skipped& one) {
      return vorcore::equalNames(one.className, syntax.className);
    });
    if (known == m_skipped.end()) {
      known = m_skipped.insert(known, {syntax.className, *m_file, syntax.at, 0});
    }
    ++known->count;
    return true;
  }

  InstanceDataPtr build(const InstanceSyntax& syntax) {
    m_keyChain = 0;
    return build(syntax, 0);
  }

  InstanceDataPtr build(const InstanceSyntax& syntax, int depth) {
    const auto known = m_built.find(&syntax);
    if (known != m_built.end()) return known->second;
    if (depth > kDeepestEmbedding) {
      throw SyntaxError{syntax.at, "instances are embedded in each other too deeply"};
    }
    InstanceDataPtr data = boost::make_shared<InstanceData>();
    data->path = path(syntax);
    data->declaration = declarationOf(syntax);
    const auto& properties = data->declaration->properties;
    data->values.reserve(properties.size());
    for (const vorcore::PropertyDeclaration& property : properties) {
      data->values.push_back(property.defaultValue);
    }
    for (const AssignmentSyntax& assignment : syntax.assignments) {
      const std::size_t position = data->declaration->findProperty(assignment.name);
      const bool isUndeclared = position == vorcore::ClassDeclaration::kNoProperty;
      if (isUndeclared && data->declaration->isOpen) {
        data->extras.emplace_back(assignment.name, undeclaredValue(assignment, depth));
        continue;
      }
      if (isUndeclared) {
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
    ObjectPath path{
        syntax.nameSpace.empty() ? kDefaultNamespace : syntax.nameSpace, declaration->name, {}};
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

  /// Of the type that the way of writing shows.
  TCIMValue undeclaredValue(const AssignmentSyntax& assignment, int depth) {
    const Initializer& initializer = assignment.value;
    const LiteralKind kind =
        initializer.elements.empty() ? LiteralKind::eNull : initializer.elements.front().kind;
    if (kind != LiteralKind::eAlias && kind != LiteralKind::eInstance) {
      return guessedValueOf(initializer);
    }
    vorcore::PropertyDeclaration property;
    property.type = kind == LiteralKind::eAlias ? ECIMType::eReference : ECIMType::eInstance;
    property.isArray = initializer.isArray;
    return value(assignment, property, depth);
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
      return resolve(found->second, literal, isReference, depth);
    }
    throw SyntaxError{literal.at, isReference ? "expected a path or an alias"
                                              : "expected an instance or an alias"};
  }

  /// A fault in another file's instance is told at the place where its alias is used: the place of
  /// the fault itself would be taken for one in this file.
  TCIMValue resolve(const Alias& alias, const Literal& literal, bool isReference, int depth) {
    try {
      if (!isReference) return embedded(*alias.instance, depth);
      return TCIMValue(referenceTo(path(*alias.instance), m_namespace));
    } catch (const SyntaxError& error) {
      if (alias.file == m_file) throw;
      throw SyntaxError{literal.at, "the instance $" + literal.text + " in " + *alias.file +
                                        " is faulty: " + error.message};
    }
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
  std::vector<Skipped>& m_skipped;
  std::vector<substitute::Problem>& m_problems;
  const std::string* m_file = nullptr;  ///< whose instances are being built
  std::unordered_map<std::string, Alias, NameHash, NameEqual> m_aliases;
  std::vector<std::unique_ptr<InstanceSyntax>> m_parsed;
  int m_keyChain = 0;  ///< paths being read, one for the other's key
  std::unordered_map<const InstanceSyntax*, ObjectPath> m_paths;
  std::unordered_map<const InstanceSyntax*, InstanceDataPtr> m_built;
};

}  // namespace

const std::vector<InstanceDataPtr>& StaticInstances::of(const std::string& className) const {
  // Never destroyed: a host's own static objects may still ask while the process ends.
  static const auto* const none = new std::vector<InstanceDataPtr>();
  const auto found = m_byClass.find(className);
  return found == m_byClass.end() ? *none : found->second;
}

bool isIn(const InstanceDataPtr& instance, const std::string& nameSpace) {
  return nameSpace.empty() || vorcore::equalNames(instance->path.nameSpace, nameSpace);
}

InstanceDataPtr StaticInstances::add(const InstanceDataPtr& instance) {
  if (isNamed(instance->path)) {
    const auto [known, isNew] = m_byPath.emplace(PathSet::keyOf(instance->path), instance);
    if (!isNew) return known->second;
  }
  m_byClass[instance->path.className].push_back(instance);
  return instance;
}

StaticInstances buildStaticInstances(const std::vector<CompilationUnit>& units,
                                     const ClassRepository& classes,
                                     const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns,
                                     std::vector<substitute::Problem>& problems,
                                     std::vector<substitute::Problem>& notes) {
  StaticInstances instances;
  std::vector<Skipped> skipped;
  for (auto first = units.begin(); first != units.end();) {
    const auto last = std::find_if(first + 1, units.end(), [&](const CompilationUnit& unit) {
      return unit.aliasScope == 0 || unit.aliasScope != first->aliasScope;
    });
    ScopeBuilder builder(classes, ns, skipped, problems);
    std::for_each(first, last, [&](const CompilationUnit& unit) { builder.addAliases(unit); });
    std::for_each(first, last,
                  [&](const CompilationUnit& unit) { builder.build(unit, instances); });
    first = last;
  }
  for (const Skipped& one : skipped) notes.push_back(noteOf(one));
  return instances;
}

}  // namespace cmpinsp
