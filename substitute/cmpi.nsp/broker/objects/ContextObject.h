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

/// Takes a clone of a context away from the provider, whose `release` leaves it alone from now on.
/// It belongs to all the threads that are attached with it. False for the context of a call, which
/// ends with that.
bool addAttached(Handle& context) noexcept;
/// Takes one of these threads off; the last one ends the context.
void removeAttached(Handle& context) noexcept;

}  // namespace cmpinsp::broker
