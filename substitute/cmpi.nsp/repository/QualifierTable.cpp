#include "substitute/cmpi.nsp/repository/QualifierTable.h"

#include <algorithm>
#include <utility>

namespace cmpinsp {

namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMQualifierDecl;
using NZELVOR20::TCIMValue;

/// The flavors and kinds of DSP0004, 5.6; without a flag a qualifier is an overridable text that
/// subclasses inherit.
enum Trait : unsigned {
  kText = 0,
  kBoolean = 1,
  kTrue = 2,  // a boolean whose default is true
  kNumber = 4,
  kList = 8,
  kRestricted = 16,
  kFixed = 32,  // DisableOverride
  kTranslatable = 64
};

struct Standard {
  const char* name;
  unsigned traits;
};

constexpr Standard kStandardQualifiers[] = {
    {"Abstract", kBoolean | kRestricted},
    {"Aggregate", kBoolean | kFixed},
    {"Aggregation", kBoolean | kFixed},
    {"ArrayType", kText | kFixed},
    {"Association", kBoolean | kFixed},
    {"BitMap", kList},
    {"BitValues", kList | kTranslatable},
    {"ClassConstraint", kList},
    {"Composition", kBoolean | kFixed},
    {"Correlatable", kList},
    {"Counter", kBoolean},
    {"Deprecated", kList | kRestricted},
    {"Description", kText | kTranslatable},
    {"DisplayName", kText | kTranslatable},
    {"DN", kBoolean | kFixed},
    {"EmbeddedInstance", kText},
    {"EmbeddedObject", kBoolean | kFixed},
    {"Exception", kBoolean | kFixed},
    {"Experimental", kBoolean | kRestricted},
    {"Gauge", kBoolean},
    {"In", kBoolean | kTrue | kFixed},
    {"Indication", kBoolean | kFixed},
    {"IsPUnit", kBoolean},
    {"Key", kBoolean | kFixed},
    {"MappingStrings", kList},
    {"Max", kNumber},
    {"MaxLen", kNumber},
    {"MaxValue", kNumber},
    {"MethodConstraint", kList},
    {"Min", kNumber},
    {"MinLen", kNumber},
    {"MinValue", kNumber},
    {"ModelCorrespondence", kList},
    {"NullValue", kText | kFixed},
    {"Octetstring", kBoolean | kFixed},
    {"Out", kBoolean | kFixed},
    {"Override", kText | kRestricted},
    {"Propagated", kText | kFixed},
    {"PropertyConstraint", kList},
    {"PUnit", kText},
    {"Read", kBoolean | kTrue},
    {"Reference", kText},
    {"Required", kBoolean | kFixed},
    {"Revision", kText | kTranslatable},
    {"Schema", kText | kFixed | kTranslatable},
    {"Static", kBoolean | kFixed},
    {"Structure", kBoolean | kFixed},
    {"Terminal", kBoolean},
    {"UMLPackagePath", kText},
    {"Units", kText | kTranslatable},
    {"ValueMap", kList},
    {"Values", kList | kTranslatable},
    {"Version", kText | kRestricted | kTranslatable},
    {"Weak", kBoolean | kFixed},
    {"Write", kBoolean},
    {"XMLNamespaceName", kText},
};

TCIMQualifierDecl declarationOf(const Standard& standard) {
  const auto has = [&](Trait trait) { return (standard.traits & trait) != 0; };
  TCIMQualifierDecl declaration;
  declaration.name = standard.name;
  declaration.type = has(kBoolean)  ? ECIMType::eBoolean
                     : has(kNumber) ? ECIMType::eSint64
                                    : ECIMType::eString;
  declaration.isArray = has(kList);
  declaration.defaultValue = has(kBoolean) ? TCIMValue::Boolean(has(kTrue))
                                           : TCIMValue::Null(declaration.type, declaration.isArray);
  declaration.overridable = !has(kFixed);
  declaration.toSubclass = !has(kRestricted);
  declaration.translatable = has(kTranslatable);
  return declaration;
}

}  // namespace

QualifierTable::QualifierTable() {
  for (const Standard& standard : kStandardQualifiers) declare(declarationOf(standard));
}

void QualifierTable::declare(TCIMQualifierDecl declaration) {
  std::string key = vorcore::nameKey(declaration.name);
  m_byKey[std::move(key)] = std::move(declaration);
}

const TCIMQualifierDecl* QualifierTable::find(const std::string& name) const {
  const auto found = m_byKey.find(vorcore::nameKey(name));
  return found == m_byKey.end() ? nullptr : &found->second;
}

std::vector<const TCIMQualifierDecl*> QualifierTable::all() const {
  std::vector<const TCIMQualifierDecl*> declarations;
  declarations.reserve(m_byKey.size());
  for (const auto& entry : m_byKey) declarations.push_back(&entry.second);
  std::sort(declarations.begin(), declarations.end(), [](const auto* left, const auto* right) {
    return vorcore::nameKey(left->name) < vorcore::nameKey(right->name);
  });
  return declarations;
}

}  // namespace cmpinsp
