#include "substitute/cmpi.nsp/broker/objects/Values.h"

#include <cstring>
#include <utility>

#include "substitute/cmpi.nsp/broker/objects/ArrayObject.h"
#include "substitute/cmpi.nsp/broker/objects/DateTimeObject.h"
#include "substitute/cmpi.nsp/broker/objects/EmbeddedInstance.h"
#include "substitute/cmpi.nsp/broker/objects/InstanceObject.h"
#include "substitute/cmpi.nsp/broker/objects/ObjectPathObject.h"
#include "substitute/cmpi.nsp/broker/objects/StringObject.h"
#include "substitute/cmpi.nsp/broker/text/Text.h"
#include "substitute/cmpi.nsp/model/PathReference.h"
#include "substitute/vorcore/values/Utf8.h"

namespace cmpinsp::broker {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

struct TypePair {
  CMPIType code;
  ECIMType type;
};

/// Read in both directions, the first match counting.
constexpr TypePair kTypes[] = {
    {CMPI_null, ECIMType::eNone},         {CMPI_boolean, ECIMType::eBoolean},
    {CMPI_char16, ECIMType::eChar16},     {CMPI_uint8, ECIMType::eUint8},
    {CMPI_uint16, ECIMType::eUint16},     {CMPI_uint32, ECIMType::eUint32},
    {CMPI_uint64, ECIMType::eUint64},     {CMPI_sint8, ECIMType::eSint8},
    {CMPI_sint16, ECIMType::eSint16},     {CMPI_sint32, ECIMType::eSint32},
    {CMPI_sint64, ECIMType::eSint64},     {CMPI_real32, ECIMType::eReal32},
    {CMPI_real64, ECIMType::eReal64},     {CMPI_string, ECIMType::eString},
    {CMPI_dateTime, ECIMType::eDateTime}, {CMPI_ref, ECIMType::eReference},
    {CMPI_instance, ECIMType::eInstance}, {CMPI_chars, ECIMType::eString},
    {CMPI_charsptr, ECIMType::eString},
};

[[noreturn]] void throwNoValueType(CMPIType type) {
  throw Failure(CMPI_RC_ERR_INVALID_DATA_TYPE,
                "type code " + std::to_string(type) + " is not that of a value");
}

/// A variable at an address that need not be aligned for it.
template <typename Variable>
Variable load(const void* address) noexcept {
  Variable variable;
  std::memcpy(&variable, address, sizeof variable);
  return variable;
}

TCIMValue textOf(const char* text) {
  return text == nullptr ? TCIMValue::Null(ECIMType::eString) : TCIMValue(repaired(text));
}

TCIMValue readString(const CMPIString* string) {
  return TCIMValue(repaired(bodyOf<StringBody>(string).copy()));
}

TCIMValue readReference(const CMPIObjectPath* object) {
  const Handle& handle = handleOf(object, Kind::kObjectPath);
  ObjectPath path = bodyOf<ObjectPathBody>(handle).path;
  boost::shared_ptr<NZELVOR20::ICIMNamespace> ns;
  if (handle.broker != nullptr) {
    ns = handle.broker->namespaceHandle();
    const auto shape = handle.broker->shapeOf(path.className);
    if (shape) shape->spellKeysOf(path);
  }
  return TCIMValue(referenceTo(std::move(path), ns));
}

TCIMValue readInstance(const CMPIInstance* instance) {
  const Handle& handle = handleOf(instance, Kind::kInstance);
  boost::shared_ptr<NZELVOR20::ICIMNamespace> ns;
  if (handle.broker != nullptr) ns = handle.broker->namespaceHandle();
  return TCIMValue::Instance(makeInstance(bodyOf<InstanceBody>(handle).share(), ns));
}

/// An object that the pointer variable at `value` points at; `read` makes a value of it.
template <typename Object, typename Reader>
TCIMValue readObject(const CMPIValue* value, ECIMType type, bool isArray, Reader read) {
  const Object* object = load<const Object*>(value);
  return object == nullptr ? TCIMValue::Null(type, isArray) : read(object);
}

TCIMValue readScalar(const CMPIValue* value, CMPIType type) {
  switch (type) {
    case CMPI_boolean:
      return TCIMValue::Boolean(load<CMPIBoolean>(value) != 0);
    case CMPI_char16:
      return TCIMValue::Char16(load<CMPIChar16>(value));
    case CMPI_uint8:
      return TCIMValue::Unsigned(ECIMType::eUint8, load<CMPIUint8>(value));
    case CMPI_uint16:
      return TCIMValue::Uint16(load<CMPIUint16>(value));
    case CMPI_uint32:
      return TCIMValue::Uint32(load<CMPIUint32>(value));
    case CMPI_uint64:
      return TCIMValue::Uint64(load<CMPIUint64>(value));
    case CMPI_real32:
      return TCIMValue::Real(ECIMType::eReal32, static_cast<double>(load<CMPIReal32>(value)));
    case CMPI_real64:
      return TCIMValue::Real(ECIMType::eReal64, load<CMPIReal64>(value));
    case CMPI_sint8:
      return TCIMValue::Signed(ECIMType::eSint8, load<CMPISint8>(value));
    case CMPI_sint16:
      return TCIMValue::Signed(ECIMType::eSint16, load<CMPISint16>(value));
    case CMPI_sint32:
      return TCIMValue::Signed(ECIMType::eSint32, load<CMPISint32>(value));
    case CMPI_sint64:
      return TCIMValue::Signed(ECIMType::eSint64, load<CMPISint64>(value));
    default:
      throwNoValueType(type);
  }
}

CMPIValue valueOf(const TCIMValue& value) {
  CMPIValue result{};
  switch (value.GetType()) {
    case ECIMType::eBoolean:
      result.boolean = value.ToBoolean() ? CMPI_true : CMPI_false;
      break;
    case ECIMType::eChar16: {
      char16_t unit = 0xFFFD;
      vorcore::singleUnitOf(value.ToString(10), unit);
      result.char16 = unit;
      break;
    }
    case ECIMType::eReal32:
      result.real32 = static_cast<CMPIReal32>(value.ToReal());
      break;
    case ECIMType::eReal64:
      result.real64 = value.ToReal();
      break;
    case ECIMType::eSint8:
    case ECIMType::eSint16:
    case ECIMType::eSint32:
    case ECIMType::eSint64:
      // The narrower members overlay the low bytes.
      result.sint64 = value.ToSint64();
      break;
    default:
      result.uint64 = value.ToUint64();
  }
  return result;
}

CMPIValue objectIn(Handle& parent, const TCIMValue& value) {
  CMPIValue result{};
  switch (value.GetType()) {
    case ECIMType::eString:
      result.string = childString(parent, value.GetText());
      break;
    case ECIMType::eDateTime:
      result.dateTime = makeChild(parent, std::make_unique<DateTimeBody>(value));
      break;
    case ECIMType::eReference:
      result.ref = makeChild(parent, std::make_unique<ObjectPathBody>(pathOf(value.ToReference())));
      break;
    default:
      result.inst =
          makeChild(parent, std::make_unique<InstanceBody>(cmpinsp::dataOf(*value.ToInstance())));
  }
  return result;
}

}  // namespace

ECIMType cimTypeOf(CMPIType type) {
  for (const TypePair& pair : kTypes) {
    if (pair.code == (type & ~CMPI_ARRAY)) return pair.type;
  }
  throwNoValueType(type);
}

CMPIType cmpiTypeOf(ECIMType type) noexcept {
  for (const TypePair& pair : kTypes) {
    if (pair.type == type) return pair.code;
  }
  return CMPI_null;
}

TCIMValue readValue(const CMPIValue* value, CMPIType type) {
  const bool isScalar = (type & (CMPI_ARRAY | CMPI_ENC)) == 0;
  if (isScalar && value != nullptr && type != CMPI_null) return readScalar(value, type);
  if (type == CMPI_chars) return textOf(reinterpret_cast<const char*>(value));
  const bool isArray = (type & CMPI_ARRAY) != 0;
  const ECIMType cimType = cimTypeOf(type);
  if (value == nullptr || cimType == ECIMType::eNone) return TCIMValue::Null(cimType, isArray);
  if (isArray) {
    return readObject<CMPIArray>(value, cimType, true, [](const CMPIArray* array) {
      return bodyOf<ArrayBody>(array).toValue();
    });
  }
  switch (type) {
    case CMPI_charsptr:
      return textOf(load<const char*>(value));
    case CMPI_string:
      return readObject<CMPIString>(value, cimType, false, readString);
    case CMPI_dateTime:
      return readObject<CMPIDateTime>(value, cimType, false, [](const CMPIDateTime* time) {
        return bodyOf<DateTimeBody>(time).value;
      });
    case CMPI_ref:
      return readObject<CMPIObjectPath>(value, cimType, false, readReference);
    default:
      return readObject<CMPIInstance>(value, cimType, false, readInstance);
  }
}

CMPIData dataOf(Handle& parent, const TCIMValue& value, CMPIValueState state) {
  CMPIData data{};
  data.type = cmpiTypeOf(value.GetType());
  data.state = state;
  if (value.IsArray()) data.type = static_cast<CMPIType>(data.type | CMPI_ARRAY);
  if (value.IsNull()) {
    data.state = static_cast<CMPIValueState>(state | CMPI_nullValue);
  } else if (value.IsArray()) {
    data.value.array =
        makeChild(parent, std::make_unique<ArrayBody>(value.GetType(), value.GetElements()));
  } else if ((data.type & CMPI_ENC) != 0) {
    data.value = objectIn(parent, value);
  } else {
    data.value = valueOf(value);
  }
  return data;
}

CMPIString* childString(Handle& parent, const std::string& text) {
  return objectOf<StringBody>(makeChildString(parent, text.c_str(), text.size()));
}

}  // namespace cmpinsp::broker
