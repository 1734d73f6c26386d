#pragma once

#include <string>
#include <utility>

#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "substitute/cmpi.nsp/broker/objects/NamedValues.h"
#include "substitute/cmpi.nsp/model/ObjectPath.h"

namespace cmpinsp::broker {

class ObjectPathBody final : public Body {
 public:
  using Object = CMPIObjectPath;
  static constexpr Kind kKind = Kind::kObjectPath;

  explicit ObjectPathBody(ObjectPath aPath) : path(std::move(aPath)) {}
  ObjectPathBody(const ObjectPathBody& other) : Body(), path(other.path), host(other.host) {}

  ObjectPath path;
  std::string host;
};

/// A namespace as it is kept: without slashes at its start.
std::string namespaceText(const char* text);

}  // namespace cmpinsp::broker
