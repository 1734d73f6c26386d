#include <boost/shared_ptr.hpp>

#include "framework/CMPINSPInstanceRegistry.h"
#include "framework/ICIMInstance.h"
#include "tests/support/Script.h"

/// A registry that holds nothing and records what is asked of it.
namespace NZELVOR20 {

struct CMPINSPInstanceRegistry::Impl {};

CMPINSPInstanceRegistry::CMPINSPInstanceRegistry() = default;
CMPINSPInstanceRegistry::~CMPINSPInstanceRegistry() = default;

CMPINSPInstanceRegistry* CMPINSPInstanceRegistry::GetRegistrySingleton() {
  static CMPINSPInstanceRegistry registry;
  return &registry;
}

void CMPINSPInstanceRegistry::ClearInstances() {
  support::Script::current().enter("registry.ClearInstances()");
}

void CMPINSPInstanceRegistry::AddInstance(boost::shared_ptr<ICIMInstance>) {
  support::Script::current().enter("registry.AddInstance(...)");
}

std::size_t CMPINSPInstanceRegistry::GetInstanceCount() const {
  support::Script::current().enter("registry.GetInstanceCount()");
  return 0;
}

}  // namespace NZELVOR20
