#include "tests/support/ScriptedNamespace.h"

#include <utility>

#include "framework/TVORException.h"
#include "tests/support/NamespaceFace.h"
#include "tests/support/Script.h"
#include "tests/support/ScriptedProvider.h"
#include "tests/support/Text.h"

namespace support {

using NZELVOR20::ICIMClass;
using NZELVOR20::ICIMInstance;
using NZELVOR20::ICIMNamespace;
using NZELVOR20::TOptionsMap;
using NZELVOR20::TVORException;
using NZELVOR20::TVORStatusCode;

NamespacePtr ScriptedNamespace::makeCmpi(const std::string& name) {
  return NamespacePtr(new CmpiNamespaceFace(name));
}

NamespacePtr ScriptedNamespace::makePlain(const std::string& name) {
  return NamespacePtr(new NamespaceFace<ICIMNamespace>(name));
}

ScriptedNamespace::ScriptedNamespace(std::string name) : m_name(std::move(name)) {}

void ScriptedNamespace::addClass(const ClassPtr& theClass) {
  m_classes[theClass->name()] = theClass;
}

void ScriptedNamespace::setEmptyClass(const std::string& name) { m_classes[name].reset(); }

void ScriptedNamespace::addInstance(const InstancePtr& instance) {
  setInTurn(instance->path().text(), {instance});
}

void ScriptedNamespace::setInTurn(const std::string& path,
                                  const std::vector<InstancePtr>& instances) {
  m_instances[path].assign(instances.begin(), instances.end());
}

void ScriptedNamespace::addProvider(const std::string& provider, const NamespacePtr& ns) {
  m_providers.push_back({provider, ns});
}

boost::shared_ptr<ICIMClass> ScriptedNamespace::getClass(const std::string& className,
                                                         const TOptionsMap& options) {
  if (Script::current().enter(call("GetClass", quoted(className) + ", " + describe(options)),
                              Returns::handle)) {
    return {};
  }
  const auto found = m_classes.find(className);
  if (found == m_classes.end()) {
    throw TVORException(TVORStatusCode(NZELVOR20::eVORInvalidClass, className));
  }
  return found->second;
}

boost::shared_ptr<ICIMInstance> ScriptedNamespace::getInstance(
    const NZELVOR20::TCIMReference& reference, const TOptionsMap& options) {
  const std::string path = describe(reference);
  if (Script::current().enter(call("GetInstance", path + ", " + describe(options)),
                              Returns::handle)) {
    return {};
  }
  const auto found = m_instances.find(path);
  if (found == m_instances.end()) {
    throw TVORException(TVORStatusCode(NZELVOR20::eVORNotFound, path));
  }
  const InstancePtr instance = found->second.front();
  if (found->second.size() > 1) {
    found->second.pop_front();
  }
  return instance ? instance->handle() : boost::shared_ptr<ICIMInstance>();
}

void ScriptedNamespace::enumerateProviders(const NZELVOR20::TProviderCallback& callback,
                                           const TOptionsMap& options) {
  Script::current().enter(call("EnumerateProviders", describe(options)));
  for (const Provider& provider : m_providers) {
    const boost::shared_ptr<ScriptedProvider> handed(
        new ScriptedProvider(provider.name, provider.ns));
    if (!callback(handed)) {
      return;
    }
  }
}

boost::shared_ptr<ICIMNamespace> ScriptedNamespace::getUpcallNamespace() {
  if (Script::current().enter(call("GetUpcallNamespace", ""), Returns::handle)) {
    return {};
  }
  const NamespacePtr upcall = m_upcall.lock();
  return upcall ? upcall->handle() : boost::shared_ptr<ICIMNamespace>();
}

void ScriptedNamespace::refuse(const std::string& operation) const {
  Script::current().refuse(call(operation, "..."));
}

std::string ScriptedNamespace::call(const std::string& operation,
                                    const std::string& arguments) const {
  return "ns " + m_name + "." + operation + "(" + arguments + ")";
}

}  // namespace support
