#pragma once

#include <memory>
#include <string>

#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "substitute/cmpi.nsp/query/Query.h"

namespace cmpinsp::broker {

/// A query that a provider holds objects against; its clones share it.
class SelectExpBody final : public Body {
 public:
  using Object = CMPISelectExp;
  static constexpr Kind kKind = Kind::kSelectExp;

  /// Throws `QueryError`.
  SelectExpBody(const std::string& language, const std::string& text);
  SelectExpBody(const SelectExpBody& other) : Body(), query(other.query) {}

  std::shared_ptr<const query::Query> query;
};

}  // namespace cmpinsp::broker
