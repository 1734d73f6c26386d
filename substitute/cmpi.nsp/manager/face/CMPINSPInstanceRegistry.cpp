#include "framework/CMPINSPInstanceRegistry.h"

#include <algorithm>
#include <boost/weak_ptr.hpp>
#include <mutex>
#include <vector>

#include "framework/ICIMInstance.h"

namespace NZELVOR20 {

namespace {

using Handles = std::vector<boost::weak_ptr<ICIMInstance>>;

constexpr std::size_t kForgetAt = 1024;

std::size_t countOfLiving(const Handles& handles) {
  return static_cast<std::size_t>(std::count_if(handles.begin(), handles.end(),
                                                [](const auto& one) { return !one.expired(); }));
}

}  // namespace

struct CMPINSPInstanceRegistry::Impl {
  mutable std::mutex mutex;
  Handles instances;
  /// When so many have gathered, those that are gone are forgotten.
  std::size_t forgetAt = kForgetAt;
};

CMPINSPInstanceRegistry::CMPINSPInstanceRegistry() : m_impl(std::make_unique<Impl>()) {}

CMPINSPInstanceRegistry::~CMPINSPInstanceRegistry() = default;

/// Never destroyed: threads may still hand instances out while the process ends.
CMPINSPInstanceRegistry* CMPINSPInstanceRegistry::GetRegistrySingleton() {
  static CMPINSPInstanceRegistry* const registry = new CMPINSPInstanceRegistry();
  return registry;
}

void CMPINSPInstanceRegistry::ClearInstances() {
  const std::lock_guard<std::mutex> lock(m_impl->mutex);
  m_impl->instances = Handles();
  m_impl->forgetAt = kForgetAt;
}

void CMPINSPInstanceRegistry::AddInstance(boost::shared_ptr<ICIMInstance> instance) {
  const std::lock_guard<std::mutex> lock(m_impl->mutex);
  Handles& handles = m_impl->instances;
  if (handles.size() >= m_impl->forgetAt) {
    const auto isGone = [](const auto& one) { return one.expired(); };
    handles.erase(std::remove_if(handles.begin(), handles.end(), isGone), handles.end());
    m_impl->forgetAt = std::max(kForgetAt, 2 * handles.size());
  }
  handles.emplace_back(instance);
}

std::size_t CMPINSPInstanceRegistry::GetInstanceCount() const {
  const std::lock_guard<std::mutex> lock(m_impl->mutex);
  return countOfLiving(m_impl->instances);
}

}  // namespace NZELVOR20
