#include "execution/TestLocator.h"

#include <cstddef>

#include "framework/TVORException.h"
#include "runner/InstanceLookup.h"
#include "runner/Properties.h"

namespace diagsrunner {

using NZELVOR20::TCIMReference;
using NZELVOR20::TOptionsMap;
using NZELVOR20::TVORException;

namespace {

/// The instance, directly or, when the framework fails or knows none, through the upcall namespace.
InstanceHandle fetchWithRetry(const TCIMReference& reference, ClassHandle instanceClass,
                              const TOptionsMap& options) {
  try {
    InstanceHandle instance = fetchInstance(reference, instanceClass, {{}, options});
    if (instance) {
      return instance;
    }
  } catch (const TVORException&) {
    // The providers may know the instance all the same.
  }
  return fetchThroughUpcall(reference, instanceClass, {{}, familyOptions("plugin")});
}

/// False when the framework cannot tell the element's path: the element is not there any more.
bool hasPath(const InstanceHandle& element) {
  try {
    element->GetObjectPath({}).GetPath();
    return true;
  } catch (const TVORException&) {
    return false;
  }
}

}  // namespace

TestLocator::TestLocator(const std::vector<InstanceHandle>& associations,
                         std::map<std::string, int>& index, const TOptionsMap& options)
    : m_associations(associations), m_index(index), m_options(options) {}

Location TestLocator::locate(const std::string& testID, const std::string& serviceName,
                             const std::string& deviceID, ResolvedTest& test) {
  const auto indexed = m_index.find(testID);
  if (indexed == m_index.end()) {
    return search(testID, serviceName, deviceID, test);
  }
  return resolve(m_associations.at(static_cast<std::size_t>(indexed->second)), true, test);
}

Location TestLocator::search(const std::string& testID, const std::string& serviceName,
                             const std::string& deviceID, ResolvedTest& test) {
  for (std::size_t i = 0; i < m_associations.size(); ++i) {
    const Location location = resolve(m_associations[i], false, test);
    if (location == Location::elementGoneInSearch) {
      return location;
    }
    if (location == Location::found && propertyText(test.service, "Name") == serviceName &&
        propertyText(test.element, "DeviceID") == deviceID) {
      m_index.emplace(testID, static_cast<int>(i));
      return Location::found;
    }
  }
  return Location::notFound;
}

/// A service whose position is only being searched for is not worth the detour of a retry.
Location TestLocator::resolve(const InstanceHandle& association, bool isIndexed,
                              ResolvedTest& test) const {
  const TCIMReference serviceReference = referenceProperty(association, "ServiceProvided");
  test.elementReference = referenceProperty(association, "UserOfService");
  const ClassHandle elementClass = test.elementReference.GetClass();
  const ClassHandle serviceClass = serviceReference.GetClass();
  test.element = fetchWithRetry(test.elementReference, elementClass, m_options);
  if (!test.element) {
    return Location::notFound;
  }
  if (!hasPath(test.element)) {
    return isIndexed ? Location::elementGoneWhenIndexed : Location::elementGoneInSearch;
  }
  test.service = isIndexed ? fetchWithRetry(serviceReference, serviceClass, m_options)
                           : fetchInstance(serviceReference, serviceClass, {{}, m_options});
  return test.service ? Location::found : Location::notFound;
}

}  // namespace diagsrunner
