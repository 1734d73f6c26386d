#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <unordered_map>
#include <vector>

#include "substitute/cmpi.nsp/manager/providers/DefaultNamespace.h"
#include "substitute/cmpi.nsp/manager/providers/ManagedProvider.h"
#include "substitute/cmpi.nsp/repository/ClassTable.h"

namespace cmpinsp {

using ManagedProviderPtr = boost::shared_ptr<ManagedProvider>;

/// A provider to ask, and the class and namespace to name when asking.
struct Route {
  ManagedProviderPtr provider;
  std::string className;
  std::string nameSpace;
};

/// Knows who serves what, of those that are not left out. Built once, read-only afterwards.
class Router {
 public:
  /// `classes` outlives the router.
  Router(const ClassRepository& classes, const std::vector<ManagedProviderPtr>& providers);

  /// Who is registered for the class itself.
  std::vector<Route> direct(const std::string& className, const std::string& nameSpace,
                            unsigned interfaces) const;

  /// Who serves instances of the class or of its subclasses: the class first, then the subclasses
  /// in name order.
  std::vector<Route> downwards(const std::string& className, const std::string& nameSpace,
                               unsigned interfaces) const;

  /// Who serves instances of exactly the class: those of the class, then of its superclasses from
  /// the nearest on; all of them are asked with the class as given.
  std::vector<Route> upwards(const std::string& className, const std::string& nameSpace,
                             unsigned interfaces) const;

  /// Who may serve an instance whose path names the class: those of `upwards`, then of the
  /// subclasses, since some paths name a superclass of their instance.
  std::vector<Route> towardsInstance(const std::string& className, const std::string& nameSpace,
                                     unsigned interfaces) const;

  /// The association providers for a class and its subclasses, or all of them for an empty name;
  /// each provider once, with the name as given.
  std::vector<Route> associations(const std::string& className, const std::string& nameSpace) const;

  /// True when some provider is registered for the class, in whatever namespace.
  bool isRegistered(const std::string& className) const;

 private:
  struct Served {
    ManagedProviderPtr provider;
    Registration registration;
  };

  const ClassRepository& m_classes;
  std::vector<ManagedProviderPtr> m_providers;
  std::unordered_map<std::string, std::vector<Served>, NameHash, NameEqual> m_byClass;
};

}  // namespace cmpinsp
