#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/INamespaceProvider.h"

/// Looks each provider that it receives up in the log and writes the instances of one class that
/// the provider offers to standard output.
class TRunnerCollectClassFromProvider {
 public:
  /// `onlyFirst` ends the enumeration after the first provider that offers the class.
  TRunnerCollectClassFromProvider(std::string className, bool onlyFirst);

  /// A provider that throws is logged and passed over.
  bool operator()(boost::shared_ptr<NZELVOR20::INamespaceProvider> provider) const;

 private:
  /// True when the provider offers the class.
  bool inspect(NZELVOR20::INamespaceProvider& provider) const;

  std::string m_className;
  bool m_onlyFirst;
};
