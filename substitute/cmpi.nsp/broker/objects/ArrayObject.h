#pragma once

#include <utility>
#include <vector>

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"

namespace cmpinsp::broker {

/// Elements of one type, each of them possibly null.
class ArrayBody final : public Body {
 public:
  using Object = CMPIArray;
  static constexpr Kind kKind = Kind::kArray;

  /// `size` nulls. Throws `Failure` for what is no element type and for an absurd size.
  ArrayBody(CMPICount size, CMPIType type);
  ArrayBody(NZELVOR20::ECIMType aType, std::vector<NZELVOR20::TCIMValue> theElements)
      : type(aType), elements(std::move(theElements)) {}
  ArrayBody(const ArrayBody& other) : Body(), type(other.type), elements(other.elements) {}

  NZELVOR20::TCIMValue toValue() const;

  NZELVOR20::ECIMType type;
  std::vector<NZELVOR20::TCIMValue> elements;
};

}  // namespace cmpinsp::broker
