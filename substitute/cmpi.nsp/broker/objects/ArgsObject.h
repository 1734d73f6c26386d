#pragma once

#include <utility>

#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "substitute/cmpi.nsp/broker/objects/NamedValues.h"

namespace cmpinsp::broker {

class ArgsBody final : public Body {
 public:
  using Object = CMPIArgs;
  static constexpr Kind kKind = Kind::kArgs;

  ArgsBody() = default;
  explicit ArgsBody(NamedValues theValues) : values(std::move(theValues)) {}
  ArgsBody(const ArgsBody& other) : Body(), values(other.values) {}

  NamedValues values;
};

}  // namespace cmpinsp::broker
