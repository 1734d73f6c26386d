#include "substitute/cmpi.nsp/model/ObjectPath.h"

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/model/PathReference.h"
#include "substitute/vorcore/values/ClassDeclaration.h"
#include "substitute/vorcore/values/PathText.h"
#include "substitute/vorcore/values/TypeNames.h"

namespace cmpinsp {
namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

bool isInteger(const TCIMValue& value) {
  return !value.IsNull() && !value.IsArray() &&
         (vorcore::isUnsignedType(value.GetType()) || vorcore::isSignedType(value.GetType()));
}

bool isNegative(const TCIMValue& value) {
  return vorcore::isSignedType(value.GetType()) && value.ToSint64() < 0;
}

bool sameIntegers(const TCIMValue& left, const TCIMValue& right) {
  if (isNegative(left) != isNegative(right)) return false;
  if (isNegative(left)) return left.ToSint64() == right.ToSint64();
  return left.ToUint64() == right.ToUint64();
}

/// The path that a reference, or the text of one, names.
ObjectPath pathIn(const TCIMValue& value) {
  if (value.GetType() == ECIMType::eReference) return pathOf(value.ToReference());
  return ObjectPath::parse(value.GetText());
}

bool samePaths(const TCIMValue& left, const TCIMValue& right) {
  try {
    return pathIn(left) == pathIn(right);
  } catch (const NZELVOR20::TVORException&) {
    return false;
  }
}

bool sameKeyValues(const TCIMValue& left, const TCIMValue& right) {
  if (isInteger(left) && isInteger(right)) return sameIntegers(left, right);
  const bool comparable = !left.IsNull() && !right.IsNull() && !left.IsArray() && !right.IsArray();
  const bool oneRefers =
      left.GetType() == ECIMType::eReference || right.GetType() == ECIMType::eReference;
  // A path that was read from text holds its references as texts.
  if (comparable && oneRefers) return samePaths(left, right);
  return left == right;
}

}  // namespace

const TCIMValue* ObjectPath::findKey(const std::string& name) const {
  for (const auto& key : keys) {
    if (vorcore::equalNames(key.first, name)) return &key.second;
  }
  return nullptr;
}

void ObjectPath::setKey(const std::string& name, TCIMValue value) {
  for (auto& key : keys) {
    if (!vorcore::equalNames(key.first, name)) continue;
    key.second = std::move(value);
    return;
  }
  keys.emplace_back(name, std::move(value));
}

std::string ObjectPath::toText() const {
  std::vector<vorcore::KeyView> views;
  views.reserve(keys.size());
  for (const auto& key : keys) views.emplace_back(&key.first, &key.second);
  return vorcore::pathText(nameSpace, className, std::move(views));
}

bool ObjectPath::operator==(const ObjectPath& other) const {
  if (keys.size() != other.keys.size()) return false;
  if (!vorcore::equalNames(className, other.className)) return false;
  if (!vorcore::equalNames(nameSpace, other.nameSpace)) return false;
  for (const auto& key : keys) {
    const TCIMValue* counterpart = other.findKey(key.first);
    if (counterpart == nullptr || !sameKeyValues(key.second, *counterpart)) return false;
  }
  return true;
}

}  // namespace cmpinsp
