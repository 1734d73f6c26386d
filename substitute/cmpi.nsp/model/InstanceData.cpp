#include "substitute/cmpi.nsp/model/InstanceData.h"

namespace cmpinsp {

const NZELVOR20::TCIMValue* InstanceData::find(const std::string& name) const {
  if (declaration) {
    const std::size_t position = declaration->findProperty(name);
    if (position < values.size()) return &values[position];
  }
  for (const auto& extra : extras) {
    if (vorcore::equalNames(extra.first, name)) return &extra.second;
  }
  return nullptr;
}

}  // namespace cmpinsp
