#include "substitute/cmpi.nsp/broker/objects/ErrorObject.h"

#include "substitute/cmpi.nsp/broker/objects/ArrayObject.h"
#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/broker/objects/Values.h"
#include "substitute/cmpi.nsp/broker/text/Text.h"

namespace cmpinsp::broker {
namespace {

/// What the member pointer `member` names.
template <auto member, typename Number>
Number getNumber(const CMPIError* err, CMPIStatus* st) noexcept {
  return answer(st, Number{}, [&] { return static_cast<Number>(bodyOf<ErrorBody>(err).*member); });
}

template <auto member, typename Number>
CMPIStatus setNumber(const CMPIError* err, Number number) noexcept {
  return perform([&] { bodyOf<ErrorBody>(err).*member = numberOf(number); });
}

template <ErrorBody::Text which>
CMPIString* getText(const CMPIError* err, CMPIStatus* st) noexcept {
  return answer(st, static_cast<CMPIString*>(nullptr), [&] {
    Handle& handle = handleOf(err, Kind::kError);
    const auto& text = bodyOf<ErrorBody>(handle).texts[which];
    return text ? childString(handle, *text) : nullptr;
  });
}

template <ErrorBody::Text which>
CMPIStatus setText(const CMPIError* err, const char* text) noexcept {
  return perform([&] {
    auto& own = bodyOf<ErrorBody>(err).texts[which];
    own.reset();
    if (text != nullptr) own = repaired(text);
  });
}

template <ErrorBody::Array ErrorBody::*member>
CMPIArray* getArray(const CMPIError* err, CMPIStatus* st) noexcept {
  return answer(st, static_cast<CMPIArray*>(nullptr), [&]() -> CMPIArray* {
    Handle& handle = handleOf(err, Kind::kError);
    const ErrorBody::Array& elements = bodyOf<ErrorBody>(handle).*member;
    if (!elements) return nullptr;
    return makeChild(handle, std::make_unique<ArrayBody>(NZELVOR20::ECIMType::eString, *elements));
  });
}

template <ErrorBody::Array ErrorBody::*member>
CMPIStatus setArray(const CMPIError* err, const CMPIArray* array) noexcept {
  return perform([&] {
    ErrorBody& body = bodyOf<ErrorBody>(err);
    const ArrayBody& source = bodyOf<ArrayBody>(array);
    if (source.type != NZELVOR20::ECIMType::eString) {
      throw Failure(CMPI_RC_ERR_TYPE_MISMATCH, "the array holds no strings");
    }
    body.*member = source.elements;
  });
}

}  // namespace

const CMPIErrorFT kErrorTable = {CMPICurrentVersion,
                                 release<ErrorBody>,
                                 clone<ErrorBody>,
                                 getNumber<&ErrorBody::type, CMPIErrorType>,
                                 getText<ErrorBody::kOtherErrorType>,
                                 getText<ErrorBody::kOwningEntity>,
                                 getText<ErrorBody::kMessageId>,
                                 getText<ErrorBody::kMessage>,
                                 getNumber<&ErrorBody::severity, CMPIErrorSeverity>,
                                 getNumber<&ErrorBody::cause, CMPIErrorProbableCause>,
                                 getText<ErrorBody::kProbableCauseDescription>,
                                 getArray<&ErrorBody::recommendedActions>,
                                 getText<ErrorBody::kErrorSource>,
                                 getNumber<&ErrorBody::sourceFormat, CMPIErrorSrcFormat>,
                                 getText<ErrorBody::kOtherErrorSourceFormat>,
                                 getNumber<&ErrorBody::code, CMPIrc>,
                                 getText<ErrorBody::kStatusCodeDescription>,
                                 getArray<&ErrorBody::messageArguments>,
                                 setNumber<&ErrorBody::type, CMPIErrorType>,
                                 setText<ErrorBody::kOtherErrorType>,
                                 setText<ErrorBody::kProbableCauseDescription>,
                                 setArray<&ErrorBody::recommendedActions>,
                                 setText<ErrorBody::kErrorSource>,
                                 setNumber<&ErrorBody::sourceFormat, CMPIErrorSrcFormat>,
                                 setText<ErrorBody::kOtherErrorSourceFormat>,
                                 setText<ErrorBody::kStatusCodeDescription>,
                                 setArray<&ErrorBody::messageArguments>};

}  // namespace cmpinsp::broker
