#pragma once

#include <optional>
#include <string>

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/query/Comparison.h"
#include "substitute/cmpi.nsp/query/Query.h"

namespace cmpinsp::query {

/// The object that a condition is held against.
class IObject {
 public:
  virtual ~IObject() = default;

  /// Its property of that name; nothing where its value is not to be had here. Throws where the
  /// object can have no such property.
  virtual std::optional<NZELVOR20::TCIMValue> property(const std::string& name) const = 0;

  /// The name of its class; empty where nobody knows.
  virtual std::string className() const = 0;

  /// Whether the class is the other one or a subclass of it.
  virtual bool isA(const std::string& className, const std::string& ancestor) const = 0;
};

/// Throws `QueryError` (types) for values that cannot be compared, and what `object` throws.
Truth evaluate(const Predicate& predicate, const IObject& object);
Truth evaluate(const Node& condition, const IObject& object);

/// Whether the object satisfies the query's condition, if there is one. The class that is selected
/// from is not looked at.
Truth evaluate(const Query& query, const IObject& object);

}  // namespace cmpinsp::query
