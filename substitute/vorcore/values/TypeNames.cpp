#include "substitute/vorcore/values/TypeNames.h"

namespace vorcore {

using NZELVOR20::ECIMType;

const char* typeName(ECIMType type) noexcept {
  switch (type) {
    case ECIMType::eNone:
      return "untyped";
    case ECIMType::eBoolean:
      return "boolean";
    case ECIMType::eChar16:
      return "char16";
    case ECIMType::eUint8:
      return "uint8";
    case ECIMType::eUint16:
      return "uint16";
    case ECIMType::eUint32:
      return "uint32";
    case ECIMType::eUint64:
      return "uint64";
    case ECIMType::eSint8:
      return "sint8";
    case ECIMType::eSint16:
      return "sint16";
    case ECIMType::eSint32:
      return "sint32";
    case ECIMType::eSint64:
      return "sint64";
    case ECIMType::eReal32:
      return "real32";
    case ECIMType::eReal64:
      return "real64";
    case ECIMType::eString:
      return "string";
    case ECIMType::eDateTime:
      return "datetime";
    case ECIMType::eReference:
      return "reference";
    case ECIMType::eInstance:
      return "instance";
  }
  return "unknown type";
}

}  // namespace vorcore
