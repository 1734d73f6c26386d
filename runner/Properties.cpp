#include "runner/Properties.h"

#include <stdexcept>

namespace diagsrunner {

using NZELVOR20::TCIMReference;

void failWithoutInstance(const char* name) {
  throw std::runtime_error("diagsrunner: no instance to read property " + std::string(name) +
                           " of");
}

void failWithoutProperty(const char* name) {
  throw std::runtime_error("diagsrunner: no property " + std::string(name));
}

std::string renderedProperty(const InstanceHandle& instance, const char* name) {
  return requiredProperty(instance, name)->ToString();
}

TCIMReference referenceProperty(const InstanceHandle& instance, const char* name) {
  return requiredProperty(instance, name)->GetValue({}).ToReference();
}

}  // namespace diagsrunner
