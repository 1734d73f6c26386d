#pragma once

#include <memory>
#include <string>

#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "substitute/cmpi.nsp/query/Query.h"

namespace cmpinsp::broker {

/// What a provider picks the instances of an enumeration with.
class EnumerationFilterBody final : public Body {
 public:
  using Object = CMPIEnumerationFilter;
  static constexpr Kind kKind = Kind::kEnumerationFilter;

  /// Throws `QueryError`.
  EnumerationFilterBody(const std::string& language, const std::string& text);
  EnumerationFilterBody(const EnumerationFilterBody& other) : Body(), query(other.query) {}

  std::shared_ptr<const query::Query> query;
};

}  // namespace cmpinsp::broker
