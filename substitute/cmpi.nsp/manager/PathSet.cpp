#include "substitute/cmpi.nsp/manager/PathSet.h"

#include <map>

#include "substitute/vorcore/ClassDeclaration.h"

namespace cmpinsp {

/// Lengths keep the pieces apart, whatever is in them.
std::string PathSet::keyOf(const ObjectPath& path) {
  std::map<std::string, std::string> keys;
  for (const auto& key : path.keys) keys[vorcore::nameKey(key.first)] = key.second.ToString(10);
  std::string text = vorcore::nameKey(path.nameSpace) + ":" + vorcore::nameKey(path.className);
  for (const auto& key : keys) {
    text += "." + key.first + "=" + std::to_string(key.second.size()) + ":" + key.second;
  }
  return text;
}

}  // namespace cmpinsp
