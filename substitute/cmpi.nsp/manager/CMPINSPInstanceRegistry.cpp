#include "framework/CMPINSPInstanceRegistry.h"

#include <mutex>
#include <utility>
#include <vector>

#include "framework/ICIMInstance.h"

namespace NZELVOR20 {

struct CMPINSPInstanceRegistry::Impl {
  mutable std::mutex mutex;
  std::vector<boost::shared_ptr<ICIMInstance>> instances;
};

CMPINSPInstanceRegistry::CMPINSPInstanceRegistry() : m_impl(std::make_unique<Impl>()) {}

CMPINSPInstanceRegistry::~CMPINSPInstanceRegistry() = default;

/// Never destroyed: threads may still hand instances out while the process ends.
CMPINSPInstanceRegistry* CMPINSPInstanceRegistry::GetRegistrySingleton() {
  static CMPINSPInstanceRegistry* const registry = new CMPINSPInstanceRegistry();
  return registry;
}

/// The handles are released outside the lock: what goes with them may come back here.
void CMPINSPInstanceRegistry::ClearInstances() {
  std::vector<boost::shared_ptr<ICIMInstance>> released;
  const std::lock_guard<std::mutex> lock(m_impl->mutex);
  released.swap(m_impl->instances);
}

void CMPINSPInstanceRegistry::AddInstance(boost::shared_ptr<ICIMInstance> instance) {
  const std::lock_guard<std::mutex> lock(m_impl->mutex);
  m_impl->instances.push_back(std::move(instance));
}

std::size_t CMPINSPInstanceRegistry::GetInstanceCount() const {
  const std::lock_guard<std::mutex> lock(m_impl->mutex);
  return m_impl->instances.size();
}

}  // namespace NZELVOR20
