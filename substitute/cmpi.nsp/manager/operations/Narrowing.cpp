#include "substitute/cmpi.nsp/manager/operations/Narrowing.h"

#include <algorithm>
#include <boost/make_shared.hpp>

namespace cmpinsp {

using NZELVOR20::TCIMValue;

InstanceDataPtr narrowed(const InstanceDataPtr& instance, PropertyNames wanted) {
  if (wanted == nullptr || !instance->declaration) return instance;
  InstanceDataPtr copy = boost::make_shared<InstanceData>(*instance);
  const auto& properties = copy->declaration->properties;
  for (std::size_t at = 0; at < copy->values.size(); ++at) {
    const bool isKeyOfPath =
        copy->declaration->isOpen && copy->path.findKey(properties[at].name) != nullptr;
    const bool isWanted = properties[at].isKey || isKeyOfPath ||
                          std::any_of(wanted->begin(), wanted->end(), [&](const std::string& name) {
                            return vorcore::equalNames(name, properties[at].name);
                          });
    if (!isWanted) copy->values[at] = TCIMValue::Null(properties[at].type, properties[at].isArray);
  }
  return copy;
}

}  // namespace cmpinsp
