#pragma once

#include <string>
#include <vector>

namespace substitute {

/// A class that a provider is registered for.
struct ServedClass {
  std::string name;
  std::vector<std::string> namespaces;  ///< "*" for every one
};

/// An interface that a provider is registered with.
struct ServedInterface {
  std::string name;     ///< "instance", "association", "method", ...
  std::string edition;  ///< of the standard, as its table announces it: "2.0"; empty where unknown
};

enum class ProviderState {
  kNotLoaded,   ///< nobody has asked whether its library can be loaded, or it is left out
  kUsable,      ///< every interface that it is registered with is there
  kIncomplete,  ///< an interface that it is registered with is not there; the others can be used
  kMissing,     ///< there is no library
  kRefused,     ///< others could change the library, one that it needs or a folder in which it is
                ///< looked for, or a needed one is nowhere: it is not loaded
  kBroken       ///< the library cannot be loaded, or makes none of the interfaces
};

/// What is known of one registered provider.
struct ProviderInfo {
  std::string name;
  std::string library;  ///< the path of the library file
  std::vector<ServedClass> classes;
  std::vector<ServedInterface> interfaces;
  ProviderState state = ProviderState::kNotLoaded;
  std::string reason;        ///< why it is incomplete or cannot be used, or "left out"; else empty
  bool lacksMemory = false;  ///< that is for want of memory, and nothing wrong with the provider
};

}  // namespace substitute
