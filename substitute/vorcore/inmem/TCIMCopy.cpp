#include "framework/TCIMCopy.h"

#include "framework/ICIMNamespace.h"
#include "framework/ICIMProperty.h"
#include "framework/TVORException.h"
#include "substitute/vorcore/inmem/ClassImport.h"
#include "substitute/vorcore/inmem/InmemNamespace.h"

namespace NZELVOR20 {
namespace {

using InstancePtr = boost::shared_ptr<ICIMInstance>;

/// The class in `target`; an empty handle where it does not know one.
boost::shared_ptr<ICIMClass> findClass(ICIMNamespace& target, const std::string& name) {
  try {
    return target.GetClass(name, TOptionsMap());
  } catch (const TVORException&) {
    return boost::shared_ptr<ICIMClass>();
  }
}

/// Copies with what every namespace offers, which does not include making a class with properties.
InstancePtr copyThroughInterface(ICIMInstance& instance, ICIMNamespace& target) {
  const boost::shared_ptr<ICIMClass> source = vorcore::classOf(instance);
  const std::string name =
      source ? source->GetName() : instance.GetObjectPath(TOptionsMap()).GetClassName();
  const boost::shared_ptr<ICIMClass> known = findClass(target, name);
  if (!known) {
    throw TVORException(TVORStatusCode(eVORNotSupported,
                                       "copying to a namespace that does not know class " + name));
  }
  const InstancePtr copy = known->AllocateInstance(TOptionsMap());
  if (!copy) throw TVORException(TVORStatusCode(eVORFailed, "no new instance of class " + name));
  instance.EnumerateProperties(
      [&](const boost::shared_ptr<ICIMProperty>& property) {
        if (property) {
          copy->SetProperty(property->GetName(), property->GetValue(TOptionsMap()), TOptionsMap());
        }
        return true;
      },
      TOptionsMap());
  target.ModifyInstance(copy, TOptionsMap());
  return copy;
}

}  // namespace

InstancePtr TCIMCopy::CopyInstance(InstancePtr instance, boost::shared_ptr<ICIMNamespace> target) {
  if (!instance || !target) {
    throw TVORException(TVORStatusCode(eVORInvalidParameter, "copying with an empty handle"));
  }
  auto* const inMemory = dynamic_cast<TInmemNamespace*>(target.get());
  if (inMemory == nullptr) return copyThroughInterface(*instance, *target);
  vorcore::importClassOf(*instance, *inMemory);
  return inMemory->storeInstance(*instance);
}

}  // namespace NZELVOR20
