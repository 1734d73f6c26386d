#include "substitute/cmpi.nsp/manager/providers/Router.h"

#include <algorithm>
#include <iterator>

namespace cmpinsp {

namespace {

/// The namespace to ask a provider in.
std::string namespaceFor(const Registration& registration, const std::string& wanted) {
  return wanted.empty() ? namespaceOf(registration) : wanted;
}

void append(std::vector<Route>& routes, std::vector<Route> more) {
  routes.insert(routes.end(), std::make_move_iterator(more.begin()),
                std::make_move_iterator(more.end()));
}

bool isNamed(const std::vector<Route>& routes, const ManagedProviderPtr& provider) {
  return std::any_of(routes.begin(), routes.end(),
                     [&](const Route& route) { return route.provider == provider; });
}

/// A provider that is registered for a class and for its superclass is asked once.
void removeRepeats(std::vector<Route>& routes) {
  std::vector<Route> once;
  for (Route& route : routes) {
    if (!isNamed(once, route.provider)) once.push_back(std::move(route));
  }
  routes = std::move(once);
}

}  // namespace

Router::Router(const ClassRepository& classes, const std::vector<ManagedProviderPtr>& providers)
    : m_classes(classes) {
  for (const ManagedProviderPtr& provider : providers) {
    if (provider->registration().isLeftOut) continue;
    m_providers.push_back(provider);
    for (const Registration& registration : provider->registration().classes) {
      m_byClass[registration.className].push_back({provider, registration});
    }
  }
}

std::vector<Route> Router::direct(const std::string& className, const std::string& nameSpace,
                                  unsigned interfaces) const {
  std::vector<Route> routes;
  const auto found = m_byClass.find(className);
  if (found == m_byClass.end()) return routes;
  for (const Served& served : found->second) {
    const Registration& registration = served.registration;
    if ((registration.interfaces & interfaces) == 0) continue;
    if (!servesNamespace(registration, nameSpace)) continue;
    routes.push_back(
        {served.provider, registration.className, namespaceFor(registration, nameSpace)});
  }
  return routes;
}

std::vector<Route> Router::downwards(const std::string& className, const std::string& nameSpace,
                                     unsigned interfaces) const {
  std::vector<Route> routes = direct(className, nameSpace, interfaces);
  for (const std::string& subclass : m_classes.subclasses(className, true)) {
    append(routes, direct(subclass, nameSpace, interfaces));
  }
  return routes;
}

std::vector<Route> Router::upwards(const std::string& className, const std::string& nameSpace,
                                   unsigned interfaces) const {
  std::vector<Route> routes = direct(className, nameSpace, interfaces);
  for (std::string above = m_classes.superclassOf(className); !above.empty();
       above = m_classes.superclassOf(above)) {
    append(routes, direct(above, nameSpace, interfaces));
  }
  for (Route& route : routes) route.className = className;
  removeRepeats(routes);
  return routes;
}

std::vector<Route> Router::towardsInstance(const std::string& className,
                                           const std::string& nameSpace,
                                           unsigned interfaces) const {
  std::vector<Route> routes = upwards(className, nameSpace, interfaces);
  for (const std::string& subclass : m_classes.subclasses(className, true)) {
    append(routes, direct(subclass, nameSpace, interfaces));
  }
  return routes;
}

std::vector<Route> Router::associations(const std::string& className,
                                        const std::string& nameSpace) const {
  std::vector<Route> all;
  if (className.empty()) {
    for (const ManagedProviderPtr& provider : m_providers) {
      for (const Registration& registration : provider->registration().classes) {
        const bool serves = (registration.interfaces & kAssociationInterface) != 0 &&
                            servesNamespace(registration, nameSpace);
        if (serves) all.push_back({provider, className, namespaceFor(registration, nameSpace)});
      }
    }
  } else {
    all = downwards(className, nameSpace, kAssociationInterface);
  }
  for (Route& route : all) route.className = className;
  removeRepeats(all);
  return all;
}

bool Router::isRegistered(const std::string& className) const {
  return m_byClass.find(className) != m_byClass.end();
}

}  // namespace cmpinsp
