#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "framework/ECIMType.h"
#include "framework/Export.h"
#include "framework/TCIMValue.h"

/// What a class is made of, as plain data: the in-memory classes and the CMPI class repository both
/// stand on it.
namespace vorcore {

struct Qualifier {
  std::string name;
  NZELVOR20::TCIMValue value;
};

struct PropertyDeclaration {
  std::string name;
  NZELVOR20::ECIMType type = NZELVOR20::ECIMType::eString;
  bool isArray = false;
  bool isKey = false;
  std::string referenceClass;  ///< for references: the class pointed at
  std::string originClass;     ///< the class that introduced the property
  NZELVOR20::TCIMValue defaultValue;
  std::vector<Qualifier> qualifiers;
};

struct ParameterDeclaration {
  std::string name;
  NZELVOR20::ECIMType type = NZELVOR20::ECIMType::eString;
  bool isArray = false;
  bool isIn = true;
  bool isOut = false;
  std::string referenceClass;
  std::vector<Qualifier> qualifiers;
};

struct MethodDeclaration {
  std::string name;
  NZELVOR20::ECIMType returnType = NZELVOR20::ECIMType::eUint32;
  std::string originClass;
  std::vector<ParameterDeclaration> parameters;
  std::vector<Qualifier> qualifiers;
};

/// Finds a name's position among a class's properties. It belongs to the vector that it was built
/// from: for a copy, or after a property was added, it answers that it does not know.
class VORCORE_API PropertyIndex {
 public:
  void build(const std::vector<PropertyDeclaration>& properties);
  /// True when the index was built from `properties` as they are now.
  bool covers(const std::vector<PropertyDeclaration>& properties) const noexcept;
  /// The position of `name`, or `properties.size()`.
  std::size_t find(const std::vector<PropertyDeclaration>& properties,
                   const std::string& name) const noexcept;

 private:
  std::vector<std::uint16_t> m_slots;  ///< an open hash table of positions + 1
  const PropertyDeclaration* m_first = nullptr;
  std::size_t m_count = 0;
};

/// A class with everything it inherits: properties and methods are flattened, the superclass's
/// first. Immutable once it is shared.
struct VORCORE_API ClassDeclaration {
  static constexpr std::size_t kNoProperty = static_cast<std::size_t>(-1);

  std::string name;
  std::string superclass;  ///< empty for a root class
  bool isAssociation = false;
  bool isAbstract = false;
  std::vector<Qualifier> qualifiers;
  std::vector<PropertyDeclaration> properties;
  std::vector<MethodDeclaration> methods;
  PropertyIndex propertyIndex;

  /// Makes `findProperty` fast; to be called once the properties are complete and before the
  /// declaration is shared. Look-ups work without it too.
  void buildIndex() { propertyIndex.build(properties); }

  /// The position of the property `propertyName` (case-insensitive), or `kNoProperty`.
  std::size_t findProperty(const std::string& propertyName) const;
  /// The method (case-insensitive), or null.
  const MethodDeclaration* findMethod(const std::string& methodName) const;
};

using ClassDeclarationPtr = boost::shared_ptr<const ClassDeclaration>;

/// The value of the qualifier `name` (case-insensitive) among `qualifiers`, or null.
VORCORE_API const NZELVOR20::TCIMValue* findQualifier(const std::vector<Qualifier>& qualifiers,
                                                      const std::string& name);

/// `value` rendered for display: through the `ValueMap` and `Values` among `qualifiers` where they
/// give it a name (ranges such as "10..20", "..", "32768.." too), element by element for an array
/// (between braces, joined with ","); else `value.ToString(10)`.
VORCORE_API std::string renderValue(const NZELVOR20::TCIMValue& value,
                                    const std::vector<Qualifier>& qualifiers);

/// `value` as a value of `type` where that loses nothing (another integer width, digits in a
/// string); throws `TVORException` (type mismatch) otherwise. Null becomes the null of `type`.
VORCORE_API NZELVOR20::TCIMValue convertTo(const NZELVOR20::TCIMValue& value,
                                           NZELVOR20::ECIMType type, bool isArray);

/// Equality of CIM names: ASCII letters without case.
VORCORE_API bool equalNames(const std::string& left, const std::string& right) noexcept;

/// The order of CIM names: ASCII letters without case.
VORCORE_API bool lessName(const std::string& left, const std::string& right) noexcept;

/// `name` in lower case, for use as a key.
VORCORE_API std::string nameKey(const std::string& name);

}  // namespace vorcore
