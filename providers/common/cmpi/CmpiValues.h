#pragma once

#include <string>

#include "cmpi/cmpi.h"
#include "providers/common/values/Value.h"

namespace providers {

/// Turns values into the broker's objects and back, within one call from the broker. The objects
/// that are made belong to that call: the broker sweeps them when it ends, so nothing here is
/// released. Every function throws `ProviderError` when the broker refuses.
class CmpiValues {
 public:
  /// `nameSpace` is that of the call.
  CmpiValues(const CMPIBroker* broker, std::string nameSpace)
      : m_broker(broker), m_nameSpace(std::move(nameSpace)) {}

  CMPIObjectPath* makePath(const ObjectPath& path) const;
  /// With `names`, a list ended by NULL, only these properties and the keys.
  CMPIInstance* makeInstance(const Instance& instance, const char** names) const;
  void addArguments(CMPIArgs* args, const Properties& properties) const;

  ObjectPath readPath(const CMPIObjectPath* path) const;
  Instance readInstance(const CMPIInstance* instance) const;
  Properties readArguments(const CMPIArgs* args) const;

  const std::string& nameSpace() const noexcept { return m_nameSpace; }

 private:
  Value read(const CMPIData& data) const;
  Value readArray(const CMPIArray* array, CMPIType type) const;

  const CMPIBroker* m_broker;
  std::string m_nameSpace;
};

/// The text of a string of the broker; empty for NULL.
std::string textOf(const CMPIString* string);

/// Throws `ProviderError` unless the status is good.
void check(const CMPIStatus& status, const char* operation);

}  // namespace providers
