#pragma once

#include <string>

namespace cmpinsp {

/// A management interface that a provider was found to have a factory for.
struct OfferedInterface {
  std::string name;    ///< "Instance", "Association", "Method", "Property" or "Indication"
  int edition = 0;     ///< of the standard, as the provider announces it: 100 for 1.0, 210 for 2.1
  std::string reason;  ///< why the factory failed; empty where it made the interface
};

}  // namespace cmpinsp
