#include "substitute/cmpi.nsp/manager/operations/PathSet.h"

#include <map>

#include "framework/TCIMReference.h"
#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/model/PathReference.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

/// Providers spell the paths in their references in different ways: without the namespace, if it is
/// that of the association itself.
std::string PathSet::textOf(const NZELVOR20::TCIMValue& key, const std::string& nameSpace) {
  const bool refers =
      key.GetType() == NZELVOR20::ECIMType::eReference && !key.IsNull() && !key.IsArray();
  if (!refers) return key.ToString(10);
  try {
    ObjectPath end = pathOf(key.ToReference());
    if (end.nameSpace.empty()) end.nameSpace = nameSpace;
    return keyOf(end);
  } catch (const NZELVOR20::TVORException&) {
    return key.ToString(10);
  }
}

/// Lengths keep the pieces apart, whatever is in them.
std::string PathSet::keyOf(const ObjectPath& path) {
  std::map<std::string, std::string> keys;
  for (const auto& key : path.keys)
    keys[vorcore::nameKey(key.first)] = textOf(key.second, path.nameSpace);
  std::string text = vorcore::nameKey(path.nameSpace) + ":" + vorcore::nameKey(path.className);
  for (const auto& key : keys) {
    text += "." + key.first + "=" + std::to_string(key.second.size()) + ":" + key.second;
  }
  return text;
}

}  // namespace cmpinsp
