#pragma once

#include <boost/shared_ptr.hpp>

#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "framework/ICIMNamespace.h"
#include "framework/Options.h"
#include "framework/TCIMReference.h"

/// Fetching the instance that a reference names.
namespace diagsrunner {

using ClassHandle = boost::shared_ptr<NZELVOR20::ICIMClass>;

/// The options map that leaves a call to the provider family `family`.
NZELVOR20::TOptionsMap familyOptions(const NZELVOR20::TCIMValue& family);

/// What the calls of one lookup carry; for the length of a call only.
struct LookupOptions {
  const NZELVOR20::TOptionsMap& forNamespace;  ///< asking a class for the namespace that serves it
  const NZELVOR20::TOptionsMap& forInstance;   ///< fetching a class or an instance
};

/// The instance, from the namespace that serves `instanceClass`; may be empty. Throws what the
/// framework throws, and `std::runtime_error` when there is no class or no namespace.
boost::shared_ptr<NZELVOR20::ICIMInstance> fetchInstance(const NZELVOR20::TCIMReference& reference,
                                                         const ClassHandle& instanceClass,
                                                         const LookupOptions& options);

/// The instance by way of the upcall namespace: `instanceClass` is looked up there by name, which
/// replaces the handle, and the instance is fetched from the namespace that serves the class found.
/// May be empty. Throws what the framework throws, and `std::runtime_error` when a handle on the
/// way is empty or the class is not served by CMPI providers.
boost::shared_ptr<NZELVOR20::ICIMInstance> fetchThroughUpcall(
    const NZELVOR20::TCIMReference& reference, ClassHandle& instanceClass,
    const LookupOptions& options);

}  // namespace diagsrunner
