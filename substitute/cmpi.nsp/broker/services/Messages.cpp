#include "substitute/cmpi.nsp/broker/services/Messages.h"

#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/broker/objects/Status.h"
#include "substitute/cmpi.nsp/broker/objects/StringObject.h"

namespace cmpinsp::broker {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

/// One value. The 32-bit types are passed as `long` or `int`; reading an `int` is right for both on
/// 64-bit systems.
std::string readInsert(CMPIType type, std::va_list& list) {
  switch (type) {
    case CMPI_sint32:
      return std::to_string(va_arg(list, int));
    case CMPI_uint32:
      return std::to_string(va_arg(list, unsigned));
    case CMPI_sint64:
      return std::to_string(va_arg(list, CMPISint64));
    case CMPI_uint64:
      return std::to_string(va_arg(list, CMPIUint64));
    case CMPI_real64:
      return TCIMValue::Real(ECIMType::eReal64, va_arg(list, double)).ToString(10);
    case CMPI_boolean:
      return va_arg(list, int) != 0 ? "true" : "false";
    case CMPI_chars: {
      const char* text = va_arg(list, const char*);
      return text == nullptr ? "" : text;
    }
    case CMPI_string:
      return textOrNothing(va_arg(list, const CMPIString*));
    default:
      throw Failure(CMPI_RC_ERR_TYPE_MISMATCH,
                    "type code " + std::to_string(type) + " cannot be inserted into a message");
  }
}

}  // namespace

Inserts readInserts(CMPICount count, std::va_list& list) {
  if (count > Inserts::kAtMost) {
    throw Failure(CMPI_RC_ERR_INVALID_PARAMETER, "a message takes 10 inserts at most");
  }
  Inserts inserts;
  for (; inserts.count < count; ++inserts.count) {
    const auto type = static_cast<CMPIType>(va_arg(list, int));
    inserts.texts[inserts.count] = readInsert(type, list);
  }
  return inserts;
}

std::string resolved(const char* format, const Inserts& inserts) {
  std::string text;
  for (; format != nullptr && *format != '\0'; ++format) {
    const bool isInsert = format[0] == '$' && format[1] >= '0' && format[1] <= '9';
    const auto index = isInsert ? static_cast<CMPICount>(format[1] - '0') : inserts.count;
    if (index >= inserts.count) {
      text += *format;
      continue;
    }
    text += inserts.texts[index];
    ++format;
  }
  return text;
}

}  // namespace cmpinsp::broker
