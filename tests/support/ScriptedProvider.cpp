#include "tests/support/ScriptedProvider.h"

#include <utility>

#include "tests/support/Script.h"
#include "tests/support/ScriptedNamespace.h"
#include "tests/support/Text.h"

namespace support {

ScriptedProvider::ScriptedProvider(std::string name, boost::weak_ptr<ScriptedNamespace> ns)
    : m_name(std::move(name)), m_ns(std::move(ns)) {}

std::string ScriptedProvider::GetName() const {
  Script::current().enter("provider " + m_name + ".GetName()");
  return m_name;
}

boost::shared_ptr<NZELVOR20::ICIMNamespace> ScriptedProvider::GetNamespace(
    NZELVOR20::TOptionsMap options) {
  if (Script::current().enter("provider " + m_name + ".GetNamespace(" + describe(options) + ")",
                              Returns::handle)) {
    return {};
  }
  const NamespacePtr ns = m_ns.lock();
  return ns ? ns->handle() : boost::shared_ptr<NZELVOR20::ICIMNamespace>();
}

}  // namespace support
