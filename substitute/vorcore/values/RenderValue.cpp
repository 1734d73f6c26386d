#include "substitute/vorcore/values/ClassDeclaration.h"
#include "substitute/vorcore/values/TypeNames.h"
#include "substitute/vorcore/values/ValueMap.h"

namespace vorcore {
namespace {

using NZELVOR20::TCIMValue;

const std::string kValues = "Values";
const std::string kValueMap = "ValueMap";

const std::vector<TCIMValue>* elementsOf(const TCIMValue* value) {
  return value != nullptr && value->IsArray() && !value->IsNull() ? &value->GetElements() : nullptr;
}

/// Where `Values` has no `ValueMap` beside it, its names belong to the numbers from 0 on.
std::size_t positionOf(const TCIMValue& value) {
  if (isUnsignedType(value.GetType())) return static_cast<std::size_t>(value.ToUint64());
  if (isSignedType(value.GetType()) && value.ToSint64() >= 0) {
    return static_cast<std::size_t>(value.ToSint64());
  }
  return kUnmapped;
}

std::string renderScalar(const TCIMValue& value, const std::vector<TCIMValue>& names,
                         const std::vector<TCIMValue>* valueMap) {
  if (value.IsNull()) return std::string();
  const std::size_t position =
      valueMap != nullptr ? findInValueMap(*valueMap, value) : positionOf(value);
  const bool isNamed = position < names.size() && !names[position].IsNull();
  return isNamed ? names[position].ToString(10) : value.ToString(10);
}

}  // namespace

std::string renderValue(const TCIMValue& value, const std::vector<Qualifier>& qualifiers) {
  if (value.IsNull()) return std::string();
  const std::vector<TCIMValue>* names = elementsOf(findQualifier(qualifiers, kValues));
  if (names == nullptr) return value.ToString(10);
  const std::vector<TCIMValue>* valueMap = elementsOf(findQualifier(qualifiers, kValueMap));
  if (!value.IsArray()) return renderScalar(value, *names, valueMap);
  std::string text = "{";
  const std::vector<TCIMValue>& elements = value.GetElements();
  for (std::size_t position = 0; position < elements.size(); ++position) {
    if (position > 0) text += ',';
    text += renderScalar(elements[position], *names, valueMap);
  }
  return text + "}";
}

}  // namespace vorcore
