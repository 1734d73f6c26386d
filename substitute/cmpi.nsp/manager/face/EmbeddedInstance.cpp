#include "substitute/cmpi.nsp/broker/objects/EmbeddedInstance.h"

#include <boost/make_shared.hpp>

#include "framework/ICIMClass.h"
#include "framework/ICIMProperty.h"
#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/manager/face/CmpiInstance.h"
#include "substitute/cmpi.nsp/model/PathReference.h"

namespace cmpinsp {

using namespace NZELVOR20;

boost::shared_ptr<ICIMInstance> makeInstance(const InstanceDataPtr& data,
                                             const boost::weak_ptr<ICIMNamespace>& ns) {
  return boost::make_shared<CmpiInstance>(data, ns);
}

namespace {

ObjectPath pathOrNothing(ICIMInstance& instance) {
  try {
    return pathOf(instance.GetObjectPath(TOptionsMap()));
  } catch (const TVORException&) {
    return ObjectPath();  // An embedded instance need not have a path.
  }
}

}  // namespace

/// The interface's readers are not const, though reading is all they do.
InstanceDataPtr dataOf(const ICIMInstance& instance) {
  if (const auto* own = dynamic_cast<const CmpiInstance*>(&instance)) return own->data();
  auto& readable = const_cast<ICIMInstance&>(instance);
  InstanceDataPtr data = boost::make_shared<InstanceData>();
  data->path = pathOrNothing(readable);
  if (data->path.className.empty()) {
    const boost::shared_ptr<ICIMClass> instanceClass = readable.GetClass(TOptionsMap());
    if (instanceClass) data->path.className = instanceClass->GetName();
  }
  readable.EnumerateProperties(
      [&](const boost::shared_ptr<ICIMProperty>& property) {
        data->extras.emplace_back(property->GetName(), property->GetValue(TOptionsMap()));
        return true;
      },
      TOptionsMap());
  return data;
}

}  // namespace cmpinsp
