#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/ICIMInstance.h"
#include "framework/ICIMProperty.h"
#include "framework/Options.h"

/// Reading the properties of an instance. An instance or property that comes back empty counts as
/// null where a null is asked about; elsewhere it throws `std::runtime_error`.
namespace diagsrunner {

using InstanceHandle = boost::shared_ptr<NZELVOR20::ICIMInstance>;
using PropertyHandle = boost::shared_ptr<NZELVOR20::ICIMProperty>;

/// Throw that there is no instance to read the property `name` of, or no such property.
[[noreturn]] void failWithoutInstance(const char* name);
[[noreturn]] void failWithoutProperty(const char* name);

/// The property, which must be there.
PropertyHandle requiredProperty(const InstanceHandle& instance, const char* name,
                                const NZELVOR20::TOptionsMap& options);

/// The property's value; null when there is no such property.
NZELVOR20::TCIMValue valueOrNull(const InstanceHandle& instance, const char* name,
                                 const NZELVOR20::TOptionsMap& options);

/// The text by which identifiers, names and matches are compared.
inline std::string identifierText(const NZELVOR20::TCIMValue& value) { return value.ToString(10); }

/// The `identifierText` of a property that must be there.
std::string propertyText(const InstanceHandle& instance, const char* name,
                         const NZELVOR20::TOptionsMap& options);

// The same without options. Records are searched by the hundred thousand, and beside instances that
// lie in memory calls with copies of an empty map show: here the compiler sees that it is one.

inline PropertyHandle requiredProperty(const InstanceHandle& instance, const char* name) {
  if (!instance) {
    failWithoutInstance(name);
  }
  PropertyHandle property = instance->GetProperty(name, {});
  if (!property) {
    failWithoutProperty(name);
  }
  return property;
}

inline NZELVOR20::TCIMValue valueOrNull(const InstanceHandle& instance, const char* name) {
  const PropertyHandle property = instance ? instance->GetProperty(name, {}) : PropertyHandle();
  return property ? property->GetValue({}) : NZELVOR20::TCIMValue();
}

inline std::string propertyText(const InstanceHandle& instance, const char* name) {
  return identifierText(requiredProperty(instance, name)->GetValue({}));
}

/// The property's own rendering for display, in which verdicts are found.
std::string renderedProperty(const InstanceHandle& instance, const char* name);

/// The reference that a property which must be there holds.
NZELVOR20::TCIMReference referenceProperty(const InstanceHandle& instance, const char* name);

}  // namespace diagsrunner
