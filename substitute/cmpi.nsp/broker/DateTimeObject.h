#pragma once

#include <string>
#include <utility>

#include "substitute/cmpi.nsp/broker/CimDateTime.h"
#include "substitute/cmpi.nsp/broker/Objects.h"

namespace cmpinsp::broker {

class DateTimeBody final : public Body {
 public:
  using Object = CMPIDateTime;
  static constexpr Kind kKind = Kind::kDateTime;

  explicit DateTimeBody(CimDateTime aTime) : time(std::move(aTime)) {}
  explicit DateTimeBody(const std::string& text) : time(CimDateTime::parse(text)) {}
  DateTimeBody(const DateTimeBody& other) : Body(), time(other.time) {}

  const CimDateTime time;
};

}  // namespace cmpinsp::broker
