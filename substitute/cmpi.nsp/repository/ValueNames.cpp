#include "substitute/cmpi.nsp/repository/ValueNames.h"

#include <set>
#include <string>
#include <utility>

namespace cmpinsp {

namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;
using vorcore::Qualifier;
using Qualifiers = std::vector<Qualifier>;
using Elements = std::vector<TCIMValue>;

/// The qualifier with the values, and the one with their names.
struct NamePair {
  const char* map;
  const char* names;
};

constexpr NamePair kPairs[] = {{"ValueMap", "Values"}, {"BitMap", "BitValues"}};

/// The elements of a list of texts; null where there is none.
const Elements* textsOf(const Qualifiers& qualifiers, const char* name) {
  const TCIMValue* value = vorcore::findQualifier(qualifiers, name);
  const bool isList = value != nullptr && value->IsArray() && !value->IsNull() &&
                      value->GetType() == ECIMType::eString;
  return isList ? &value->GetElements() : nullptr;
}

void put(Qualifiers& qualifiers, const char* name, const Elements& elements) {
  TCIMValue value = TCIMValue::Array(ECIMType::eString, elements);
  for (Qualifier& qualifier : qualifiers) {
    if (!vorcore::equalNames(qualifier.name, name)) continue;
    qualifier.value = std::move(value);
    return;
  }
  qualifiers.push_back({name, std::move(value)});
}

/// Adds the entries whose values the map does not have.
bool join(Qualifiers& qualifiers, const NamePair& pair, const Elements& map,
          const Elements& otherMap, const Elements& otherNames) {
  Elements joinedMap = map;
  Elements joinedNames = *textsOf(qualifiers, pair.names);
  if (joinedMap.size() != joinedNames.size() || otherMap.size() != otherNames.size()) {
    return false;
  }
  std::set<std::string> known;
  for (const TCIMValue& value : map) known.insert(value.ToString(10));
  for (std::size_t at = 0; at < otherMap.size(); ++at) {
    if (!known.insert(otherMap[at].ToString(10)).second) continue;
    joinedMap.push_back(otherMap[at]);
    joinedNames.push_back(otherNames[at]);
  }
  if (joinedMap.size() == map.size()) return false;
  put(qualifiers, pair.map, joinedMap);
  put(qualifiers, pair.names, joinedNames);
  return true;
}

}  // namespace

bool completeNames(Qualifiers& qualifiers, const Qualifiers& others) {
  bool isChanged = false;
  for (const NamePair& pair : kPairs) {
    const Elements* names = textsOf(qualifiers, pair.names);
    const Elements* map = textsOf(qualifiers, pair.map);
    const Elements* otherNames = textsOf(others, pair.names);
    const Elements* otherMap = textsOf(others, pair.map);
    if (otherNames == nullptr) continue;
    if (names == nullptr && (map == nullptr || otherMap != nullptr)) {
      if (otherMap != nullptr) put(qualifiers, pair.map, *otherMap);
      put(qualifiers, pair.names, *otherNames);
      isChanged = true;
    } else if (names != nullptr && map != nullptr && otherMap != nullptr) {
      const Elements ownMap = *map;
      isChanged = join(qualifiers, pair, ownMap, *otherMap, *otherNames) || isChanged;
    }
  }
  return isChanged;
}

}  // namespace cmpinsp
