#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/broker/lifetime/Objects.h"

namespace cmpinsp::broker {

/// The properties of CIM_Error.
class ErrorBody final : public Body {
 public:
  using Object = CMPIError;
  static constexpr Kind kKind = Kind::kError;

  enum Text : unsigned char {
    kOtherErrorType,
    kOwningEntity,
    kMessageId,
    kMessage,
    kProbableCauseDescription,
    kErrorSource,
    kOtherErrorSourceFormat,
    kStatusCodeDescription
  };
  static constexpr std::size_t kTextCount = 8;
  using Array = std::optional<std::vector<NZELVOR20::TCIMValue>>;

  ErrorBody() = default;
  ErrorBody(const ErrorBody& other)
      : Body(),
        texts(other.texts),
        recommendedActions(other.recommendedActions),
        messageArguments(other.messageArguments),
        type(other.type),
        severity(other.severity),
        cause(other.cause),
        sourceFormat(other.sourceFormat),
        code(other.code) {}

  std::array<std::optional<std::string>, kTextCount> texts;
  Array recommendedActions;
  Array messageArguments;
  // As they were passed, since they may be none of their enumerations.
  int type = UnknownErrorType;
  int severity = ErrorSevUnknown;
  int cause = ErrorProbCauseUnknown;
  int sourceFormat = CMPIErrorSrcFormatUnknown;
  int code = CMPI_RC_OK;
};

}  // namespace cmpinsp::broker
