#pragma once

#include <string>
#include <utility>
#include <vector>

#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "substitute/cmpi.nsp/broker/objects/NamedValues.h"

namespace cmpinsp::broker {

class ContextBody final : public Body {
 public:
  using Object = CMPIContext;
  static constexpr Kind kKind = Kind::kContext;

  /// The entries that every call has.
  explicit ContextBody(const std::string& nameSpace);
  ContextBody(const ContextBody& other)
      : Body(), entries(other.entries), pointers(other.pointers) {}

  NamedValues entries;
  /// Entries of the provider's own that are plain memory; they come after the others.
  std::vector<std::pair<std::string, CMPIValuePtr>> pointers;
  /// How many threads are attached with it and own it together; see `addAttached`.
  int attachedThreads = 0;
};

}  // namespace cmpinsp::broker
