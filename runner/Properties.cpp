#include "runner/Properties.h"

#include <stdexcept>

namespace diagsrunner {

using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;
using NZELVOR20::TOptionsMap;

void failWithoutInstance(const char* name) {
  throw std::runtime_error("diagsrunner: no instance to read property " + std::string(name) +
                           " of");
}

void failWithoutProperty(const char* name) {
  throw std::runtime_error("diagsrunner: no property " + std::string(name));
}

PropertyHandle requiredProperty(const InstanceHandle& instance, const char* name,
                                const TOptionsMap& options) {
  if (!instance) {
    failWithoutInstance(name);
  }
  PropertyHandle property = instance->GetProperty(name, options);
  if (!property) {
    failWithoutProperty(name);
  }
  return property;
}

TCIMValue valueOrNull(const InstanceHandle& instance, const char* name,
                      const TOptionsMap& options) {
  const PropertyHandle property =
      instance ? instance->GetProperty(name, options) : PropertyHandle();
  return property ? property->GetValue(options) : TCIMValue();
}

std::string propertyText(const InstanceHandle& instance, const char* name,
                         const TOptionsMap& options) {
  return identifierText(requiredProperty(instance, name, options)->GetValue(options));
}

std::string renderedProperty(const InstanceHandle& instance, const char* name) {
  return requiredProperty(instance, name)->ToString();
}

TCIMReference referenceProperty(const InstanceHandle& instance, const char* name) {
  return requiredProperty(instance, name)->GetValue({}).ToReference();
}

}  // namespace diagsrunner
