#pragma once

#include <utility>

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"
#include "substitute/cmpi.nsp/broker/text/CimDateTime.h"

namespace cmpinsp::broker {

class DateTimeBody final : public Body {
 public:
  using Object = CMPIDateTime;
  static constexpr Kind kKind = Kind::kDateTime;

  explicit DateTimeBody(CimDateTime aTime)
      : time(std::move(aTime)), value(NZELVOR20::TCIMValue::DateTime(time.text)) {}
  explicit DateTimeBody(const NZELVOR20::TCIMValue& aValue)
      : time(CimDateTime::parse(aValue.GetText())), value(aValue) {}
  DateTimeBody(const DateTimeBody& other) : Body(), time(other.time), value(other.value) {}

  const CimDateTime time;
  const NZELVOR20::TCIMValue value;  ///< the same, to be shared by what it is stored in
};

}  // namespace cmpinsp::broker
