#include "runner/InstanceLookup.h"

#include <boost/pointer_cast.hpp>
#include <string>

#include "framework/TCMPINamespace.h"
#include "runner/Handles.h"

namespace diagsrunner {

using NZELVOR20::ICIMInstance;
using NZELVOR20::ICIMNamespace;
using NZELVOR20::TCIMReference;
using NZELVOR20::TCIMValue;
using NZELVOR20::TCMPINamespace;
using NZELVOR20::TOptionsMap;

TOptionsMap familyOptions(const TCIMValue& family) { return TOptionsMap{{"nspID", family}}; }

boost::shared_ptr<ICIMInstance> fetchInstance(const TCIMReference& reference,
                                              const ClassHandle& instanceClass,
                                              const LookupOptions& options) {
  required(instanceClass, "class of the referenced instance");
  const boost::shared_ptr<ICIMNamespace> serving =
      instanceClass->GetNamespace(options.forNamespace);
  return required(serving, "namespace that serves the class")
      ->GetInstance(reference, options.forInstance);
}

boost::shared_ptr<ICIMInstance> fetchThroughUpcall(const TCIMReference& reference,
                                                   ClassHandle& instanceClass,
                                                   const LookupOptions& options) {
  const std::string className =
      required(instanceClass, "class of the referenced instance")->GetName();
  const auto serving = boost::dynamic_pointer_cast<TCMPINamespace>(
      instanceClass->GetNamespace(options.forNamespace));
  const boost::shared_ptr<ICIMNamespace> upcall =
      required(serving, "CMPI namespace that serves class " + className)->GetUpcallNamespace();
  instanceClass = required(upcall, "upcall namespace")->GetClass(className, options.forInstance);
  return fetchInstance(reference, instanceClass, options);
}

}  // namespace diagsrunner
