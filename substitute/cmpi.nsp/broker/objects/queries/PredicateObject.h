#pragma once

#include <memory>
#include <utility>

#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "substitute/cmpi.nsp/query/Query.h"

namespace cmpinsp::broker {

/// One comparison of a query.
class PredicateBody final : public Body {
 public:
  using Object = CMPIPredicate;
  static constexpr Kind kKind = Kind::kPredicate;

  explicit PredicateBody(std::shared_ptr<const query::Predicate> thePredicate)
      : predicate(std::move(thePredicate)) {}
  PredicateBody(const PredicateBody& other) : Body(), predicate(other.predicate) {}

  std::shared_ptr<const query::Predicate> predicate;
};

}  // namespace cmpinsp::broker
