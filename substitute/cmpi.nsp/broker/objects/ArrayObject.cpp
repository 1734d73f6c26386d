#include "substitute/cmpi.nsp/broker/objects/ArrayObject.h"

#include "substitute/cmpi.nsp/broker/objects/NamedValues.h"
#include "substitute/cmpi.nsp/broker/objects/Release.h"
#include "substitute/cmpi.nsp/broker/objects/Values.h"
#include "substitute/cmpi.nsp/model/ClassShape.h"

namespace cmpinsp::broker {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

namespace {

/// More elements than any provider has a use for: a size that was computed wrongly.
constexpr CMPICount kElementsAtMost = 64U * 1024 * 1024;

ECIMType elementType(CMPIType type) {
  const ECIMType result = cimTypeOf(type);
  if ((type & CMPI_ARRAY) != 0) {
    throw Failure(CMPI_RC_ERR_INVALID_DATA_TYPE,
                  "type code " + std::to_string(type) + " is no element type");
  }
  return result;
}

}  // namespace

ArrayBody::ArrayBody(CMPICount size, CMPIType aType) : type(elementType(aType)) {
  if (size > kElementsAtMost) {
    throw Failure(CMPI_RC_ERR_INVALID_PARAMETER,
                  "an array of " + std::to_string(size) + " elements is too large");
  }
  elements.assign(size, TCIMValue::Null(type));
}

TCIMValue ArrayBody::toValue() const { return TCIMValue::Array(type, elements); }

namespace {

CMPICount getSize(const CMPIArray* array, CMPIStatus* st) noexcept {
  return answer(st, CMPICount{0},
                [&] { return static_cast<CMPICount>(bodyOf<ArrayBody>(array).elements.size()); });
}

CMPIType getSimpleType(const CMPIArray* array, CMPIStatus* st) noexcept {
  return answer(st, CMPIType{CMPI_null}, [&] { return cmpiTypeOf(bodyOf<ArrayBody>(array).type); });
}

CMPIData getElementAt(const CMPIArray* array, CMPICount index, CMPIStatus* st) noexcept {
  return answer(st, kNoData, [&] {
    Handle& handle = handleOf(array, Kind::kArray);
    const ArrayBody& body = bodyOf<ArrayBody>(handle);
    if (index >= body.elements.size()) noSuchIndex(index);
    return dataOf(handle, body.elements[index]);
  });
}

CMPIStatus setElementAt(const CMPIArray* array, CMPICount index, const CMPIValue* value,
                        CMPIType type) noexcept {
  return perform([&] {
    ArrayBody& body = bodyOf<ArrayBody>(array);
    if (index >= body.elements.size()) noSuchIndex(index);
    TCIMValue element = readValue(value, type);
    if (element.IsArray() || (!element.IsNull() && element.GetType() != body.type)) {
      throw Failure(CMPI_RC_ERR_TYPE_MISMATCH, "the element is not of the array's type");
    }
    if (element.IsNull()) element = TCIMValue::Null(body.type);
    body.elements[index] = std::move(element);
  });
}

}  // namespace

const CMPIArrayFT kArrayTable = {CMPICurrentVersion, release<ArrayBody>, clone<ArrayBody>, getSize,
                                 getSimpleType,      getElementAt,       setElementAt};

}  // namespace cmpinsp::broker
