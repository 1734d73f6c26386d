#pragma once

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

#include "framework/ICIMNamespace.h"
#include "framework/INamespaceProvider.h"

/// Names each provider that it receives in the log and writes the instances of one class that the
/// provider offers to standard output. Providers may share a namespace; its instances are written
/// once. Copies of one object go on where the others are.
class TRunnerCollectClassFromProvider {
 public:
  /// `onlyFirst` ends the enumeration after the first provider that offers the class.
  TRunnerCollectClassFromProvider(std::string className, bool onlyFirst);

  /// A provider that throws is logged and passed over.
  bool operator()(boost::shared_ptr<NZELVOR20::INamespaceProvider> provider) const;

  /// Whether one of the providers so far offers the class.
  bool isClassFound() const noexcept { return m_seen->isClassFound; }

 private:
  struct Seen {
    std::vector<boost::shared_ptr<NZELVOR20::ICIMNamespace>> namespaces;
    bool isClassFound = false;
  };

  void inspect(NZELVOR20::INamespaceProvider& provider) const;

  std::string m_className;
  bool m_onlyFirst;
  boost::shared_ptr<Seen> m_seen = boost::make_shared<Seen>();
};
