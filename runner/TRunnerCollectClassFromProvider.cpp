#include "runner/TRunnerCollectClassFromProvider.h"

#include <exception>
#include <utility>

#include "framework/ICIMClass.h"
#include "framework/ICIMNamespace.h"
#include "runner/CoreLog.h"
#include "runner/Handles.h"
#include "runner/TRunnerCollectClassInstances.h"

TRunnerCollectClassFromProvider::TRunnerCollectClassFromProvider(std::string className,
                                                                 bool onlyFirst)
    : m_className(std::move(className)), m_onlyFirst(onlyFirst) {}

bool TRunnerCollectClassFromProvider::operator()(
    boost::shared_ptr<NZELVOR20::INamespaceProvider> provider) const {
  if (!provider) {
    return true;
  }
  const std::string text = "TRunnerCollectClassFromProvider for: " + provider->GetName();
  diagsrunner::logTrace(text);
  try {
    return !(inspect(*provider) && m_onlyFirst);
  } catch (...) {
    diagsrunner::logError(text, " threw exception ");
  }
  return true;
}

bool TRunnerCollectClassFromProvider::inspect(NZELVOR20::INamespaceProvider& provider) const {
  const auto ns = diagsrunner::required(provider.GetNamespace({}), "namespace of the provider");
  const auto offered = ns->GetClass(m_className, {});
  if (!offered) {
    return false;
  }
  offered->EnumerateInstances(TRunnerCollectClassInstances(), true, {});
  return true;
}
