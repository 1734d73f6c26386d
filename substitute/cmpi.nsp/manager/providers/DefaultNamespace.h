#pragma once

#include <string>

#include "substitute/cmpi.nsp/registration/RegistrationTable.h"

namespace cmpinsp {

/// The namespace that stands for no particular one.
constexpr const char* kDefaultNamespace = "root/cimv2";

/// The namespace to name to a provider where none is wanted: the default one if it is registered
/// there, else the first that it is registered in.
inline std::string namespaceOf(const Registration& registration) {
  if (registration.namespaces.empty() || servesNamespace(registration, kDefaultNamespace)) {
    return kDefaultNamespace;
  }
  return registration.namespaces.front();
}

}  // namespace cmpinsp
