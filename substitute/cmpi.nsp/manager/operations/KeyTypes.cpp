#include "substitute/cmpi.nsp/manager/operations/KeyTypes.h"

#include "framework/TCIMReference.h"
#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/model/PathReference.h"

namespace cmpinsp {

namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::TCIMValue;

TCIMValue converted(const TCIMValue& value, const vorcore::PropertyDeclaration& property,
                    const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns) {
  const bool isPathText = property.type == ECIMType::eReference && !value.IsNull() &&
                          !value.IsArray() && value.GetType() == ECIMType::eString;
  if (isPathText) return TCIMValue(referenceTo(ObjectPath::parse(value.GetText()), ns));
  return vorcore::convertTo(value, property.type, property.isArray);
}

}  // namespace

ObjectPath withDeclaredKeyTypes(ObjectPath path, const vorcore::ClassDeclaration* declaration,
                                const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns) {
  if (declaration == nullptr) return path;
  for (auto& key : path.keys) {
    const std::size_t position = declaration->findProperty(key.first);
    if (position == vorcore::ClassDeclaration::kNoProperty) continue;
    const vorcore::PropertyDeclaration& property = declaration->properties[position];
    if (key.second.GetType() == property.type) continue;
    try {
      key.second = converted(key.second, property, ns);
    } catch (const NZELVOR20::TVORException&) {
      continue;  // The provider decides what to make of it.
    }
  }
  return path;
}

}  // namespace cmpinsp
