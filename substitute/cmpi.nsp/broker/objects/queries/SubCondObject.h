#pragma once

#include <memory>
#include <utility>

#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "substitute/cmpi.nsp/query/NormalForm.h"

namespace cmpinsp::broker {

/// One group of comparisons of a normal form.
class SubCondBody final : public Body {
 public:
  using Object = CMPISubCond;
  static constexpr Kind kKind = Kind::kSubCond;

  explicit SubCondBody(std::shared_ptr<const query::Group> theGroup) : group(std::move(theGroup)) {}
  SubCondBody(const SubCondBody& other) : Body(), group(other.group) {}

  std::shared_ptr<const query::Group> group;
};

}  // namespace cmpinsp::broker
