#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <string>
#include <vector>

#include "framework/ECIMType.h"
#include "framework/Export.h"
#include "framework/TCIMValue.h"
#include "substitute/vorcore/values/NamedList.h"

/// What a class is made of, as plain data: the in-memory classes and the CMPI class repository both
/// stand on it.
namespace vorcore {

/// Whether subclasses inherit a qualifier.
enum class Reach : unsigned char { eAsDeclared, eClassAlone, eSubclasses };

struct Qualifier {
  std::string name;
  NZELVOR20::TCIMValue value;
  Reach reach = Reach::eAsDeclared;  ///< where it is written otherwise beside the qualifier
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

/// A class with everything it inherits: properties and methods are flattened, the superclass's
/// first. Immutable once it is shared.
struct VORCORE_API ClassDeclaration {
  static constexpr std::size_t kNoProperty = static_cast<std::size_t>(-1);

  std::string name;
  std::string superclass;  ///< empty for a root class; of an open one it may be undeclared
  bool isAssociation = false;
  bool isAbstract = false;
  /// True where a class above it is not declared: it may have more properties and methods than it
  /// says, and keys that nobody knows.
  bool isOpen = false;
  std::vector<Qualifier> qualifiers;
  NamedList<PropertyDeclaration> properties;
  NamedList<MethodDeclaration> methods;

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
