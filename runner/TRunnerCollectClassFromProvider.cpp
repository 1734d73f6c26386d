#include "runner/TRunnerCollectClassFromProvider.h"

#include <algorithm>
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
  std::string text = "TRunnerCollectClassFromProvider for: ";
  try {
    text += provider->GetName();
    diagsrunner::logTrace(text);
    inspect(*provider);
    return !(m_onlyFirst && m_seen->isClassFound);
  } catch (...) {
    diagsrunner::logError(text, " threw exception ");
  }
  return true;
}

void TRunnerCollectClassFromProvider::inspect(NZELVOR20::INamespaceProvider& provider) const {
  const auto ns = diagsrunner::required(provider.GetNamespace({}), "namespace of the provider");
  auto& known = m_seen->namespaces;
  if (std::find(known.begin(), known.end(), ns) != known.end()) {
    return;
  }
  const auto offered = ns->GetClass(m_className, {});
  known.push_back(ns);
  if (!offered) {
    return;
  }
  m_seen->isClassFound = true;
  offered->EnumerateInstances(TRunnerCollectClassInstances(), true, {});
}
