#include "substitute/vorcore/inmem/ClassImport.h"

#include <algorithm>
#include <array>
#include <boost/make_shared.hpp>
#include <utility>

#include "framework/ICIMProperty.h"
#include "framework/TVORException.h"
#include "substitute/vorcore/inmem/DeclaredClass.h"
#include "substitute/vorcore/inmem/InmemNamespace.h"

namespace vorcore {

using namespace NZELVOR20;

namespace {

/// A chain of superclasses that is longer than this has no end.
constexpr int kDeepestClass = 64;

constexpr std::array<const char*, 13> kPropertyQualifiers = {
    "Key",         "ValueMap",    "Values",           "BitMap",         "BitValues",
    "Description", "DisplayName", "EmbeddedInstance", "EmbeddedObject", "Units",
    "PUnit",       "ArrayType",   "Required"};
constexpr std::array<const char*, 4> kClassQualifiers = {"Association", "Abstract", "Description",
                                                         "DisplayName"};

bool isTrue(const TCIMValue& value) {
  return !value.IsNull() && !value.IsArray() && value.GetType() == ECIMType::eBoolean &&
         value.ToBoolean();
}

template <typename Names, typename Described>
std::vector<Qualifier> qualifiersOf(Described& described, const Names& names) {
  std::vector<Qualifier> qualifiers;
  for (const char* name : names) {
    TCIMValue value = described.GetQualifier(name, TOptionsMap());
    if (!value.IsNull()) qualifiers.push_back({name, std::move(value)});
  }
  return qualifiers;
}

bool hasTrue(const std::vector<Qualifier>& qualifiers, const char* name) {
  const TCIMValue* const found = findQualifier(qualifiers, name);
  return found != nullptr && isTrue(*found);
}

PropertyDeclaration propertyDeclarationOf(ICIMProperty& described) {
  PropertyDeclaration property;
  property.name = described.GetName();
  property.type = described.GetType();
  property.isArray = described.IsArray();
  property.qualifiers = qualifiersOf(described, kPropertyQualifiers);
  property.isKey = hasTrue(property.qualifiers, "Key");
  return property;
}

/// Empty too where the class cannot tell: a copy is worth more than its place in the hierarchy.
boost::shared_ptr<ICIMClass> superclassOf(ICIMClass& described) {
  try {
    return described.GetSuperclass(TOptionsMap());
  } catch (const TVORException&) {
    return boost::shared_ptr<ICIMClass>();
  }
}

ClassDeclaration askedDeclarationOf(ICIMClass& described) {
  ClassDeclaration declaration;
  declaration.name = described.GetName();
  if (const auto superclass = superclassOf(described))
    declaration.superclass = superclass->GetName();
  declaration.qualifiers = qualifiersOf(described, kClassQualifiers);
  declaration.isAssociation = hasTrue(declaration.qualifiers, "Association");
  declaration.isAbstract = hasTrue(declaration.qualifiers, "Abstract");
  described.EnumerateProperties(
      [&](const boost::shared_ptr<ICIMProperty>& each) {
        if (!each) return true;
        PropertyDeclaration property = propertyDeclarationOf(*each);
        property.defaultValue = each->GetValue(TOptionsMap());
        declaration.properties.push_back(std::move(property));
        return true;
      },
      TOptionsMap());
  return declaration;
}

/// Adds the class; that another thread was quicker does not matter.
void addIfNew(TInmemNamespace& target, ClassDeclaration declaration) {
  try {
    target.addClass(std::move(declaration));
  } catch (const TVORException& exception) {
    if (exception.GetStatus().GetStatusCode() != eVORAlreadyExists) throw;
  }
}

/// Adds what the instance has and its class does not say, as far as the first one of it tells.
void addUndeclared(ClassDeclaration& declaration, ICIMInstance& instance) {
  for (const PropertyDeclaration& property : vorcore::declarationOf(instance).properties) {
    if (declaration.findProperty(property.name) == ClassDeclaration::kNoProperty) {
      declaration.properties.push_back(property);
    }
  }
}

/// Makes the class and what stands above it. The `instance` of it, if any, tells the keys where the
/// class does not.
void importChain(ICIMClass& imported, ICIMInstance* instance, TInmemNamespace& target, int depth) {
  if (target.hasClass(imported.GetName())) return;
  if (depth == kDeepestClass) {
    throw TVORException(
        TVORStatusCode(eVORInvalidClass, imported.GetName() + " has too many superclasses"));
  }
  ClassDeclaration declaration = *vorcore::declarationOf(imported);
  const boost::shared_ptr<ICIMClass> superclass = superclassOf(imported);
  if (superclass) {
    importChain(*superclass, nullptr, target, depth + 1);
    declaration.superclass = superclass->GetName();
  } else if (!target.hasClass(declaration.superclass)) {
    declaration.superclass.clear();
  }
  if (instance != nullptr) {
    addUndeclared(declaration, *instance);
    markKeys(declaration, instance->GetObjectPath(TOptionsMap()));
  }
  addIfNew(target, std::move(declaration));
}

}  // namespace

ClassDeclarationPtr declarationOf(ICIMClass& described) {
  const auto* const declared = dynamic_cast<const IDeclaredClass*>(&described);
  if (declared != nullptr) return declared->GetDeclaration();
  return boost::make_shared<ClassDeclaration>(askedDeclarationOf(described));
}

ClassDeclaration declarationOf(ICIMInstance& instance) {
  ClassDeclaration declaration;
  declaration.name = instance.GetObjectPath(TOptionsMap()).GetClassName();
  instance.EnumerateProperties(
      [&](const boost::shared_ptr<ICIMProperty>& each) {
        if (each) declaration.properties.push_back(propertyDeclarationOf(*each));
        return true;
      },
      TOptionsMap());
  return declaration;
}

void markKeys(ClassDeclaration& declaration, const TCIMReference& path) {
  NamedList<PropertyDeclaration>& properties = declaration.properties;
  if (std::any_of(properties.begin(), properties.end(),
                  [](const PropertyDeclaration& property) { return property.isKey; })) {
    return;
  }
  for (const auto& key : path.GetKeys()) {
    const std::size_t position = declaration.findProperty(key.first);
    if (position == ClassDeclaration::kNoProperty) continue;
    properties.change(position).isKey = true;
  }
}

boost::shared_ptr<ICIMClass> classOf(ICIMInstance& instance) {
  try {
    return instance.GetClass(TOptionsMap());
  } catch (const TVORException&) {
    return boost::shared_ptr<ICIMClass>();
  }
}

void importClassOf(ICIMInstance& instance, TInmemNamespace& target) {
  const TCIMReference path = instance.GetObjectPath(TOptionsMap());
  if (const auto instanceClass = classOf(instance)) {
    importChain(*instanceClass, &instance, target, 0);
    return;
  }
  if (path.GetClassName().empty()) {
    throw TVORException(TVORStatusCode(eVORInvalidClass, "the instance names no class"));
  }
  if (target.hasClass(path.GetClassName())) return;
  ClassDeclaration declaration = declarationOf(instance);
  markKeys(declaration, path);
  addIfNew(target, std::move(declaration));
}

void importClass(ICIMClass& imported, TInmemNamespace& target) {
  importChain(imported, nullptr, target, 0);
}

}  // namespace vorcore
