#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "substitute/cmpi.nsp/broker/IUpcalls.h"
#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"

namespace cmpinsp::broker {

/// The answers of an upcall, either instances or paths, and how far the provider has read.
class EnumerationBody final : public Body {
 public:
  using Object = CMPIEnumeration;
  static constexpr Kind kKind = Kind::kEnumeration;

  EnumerationBody(std::vector<InstanceDataPtr> theInstances, PropertyNames names)
      : instances(std::move(theInstances)), isOfInstances(true), hasNames(names != nullptr) {
    if (hasNames) propertyNames = *names;
  }
  explicit EnumerationBody(std::vector<ObjectPath> thePaths) : paths(std::move(thePaths)) {}
  EnumerationBody(const EnumerationBody& other)
      : Body(),
        instances(other.instances),
        paths(other.paths),
        next(other.next),
        isOfInstances(other.isOfInstances),
        hasNames(other.hasNames),
        propertyNames(other.propertyNames) {}

  std::size_t size() const { return isOfInstances ? instances.size() : paths.size(); }
  PropertyNames names() const { return hasNames ? &propertyNames : nullptr; }

  std::vector<InstanceDataPtr> instances;
  std::vector<ObjectPath> paths;
  std::size_t next = 0;
  bool isOfInstances = false;
  bool hasNames = false;
  std::vector<std::string> propertyNames;  ///< what was asked for, where something was
};

}  // namespace cmpinsp::broker
