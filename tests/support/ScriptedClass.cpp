#include "tests/support/ScriptedClass.h"

#include <utility>

#include "tests/support/Script.h"
#include "tests/support/ScriptedNamespace.h"
#include "tests/support/Text.h"

namespace support {

namespace {

std::string deepAnd(bool deep, const NZELVOR20::TOptionsMap& options) {
  return std::string("deep=") + (deep ? "true" : "false") + ", " + describe(options);
}

}  // namespace

ScriptedClass::ScriptedClass(std::string name, std::string label)
    : m_name(std::move(name)), m_label(std::move(label)) {}

std::string ScriptedClass::GetName() const {
  Script::current().enter(call("GetName", ""));
  return m_name;
}

boost::shared_ptr<NZELVOR20::ICIMNamespace> ScriptedClass::GetNamespace(
    NZELVOR20::TOptionsMap options) {
  if (Script::current().enter(call("GetNamespace", describe(options)), Returns::handle)) {
    return {};
  }
  const boost::shared_ptr<ScriptedNamespace> server = m_servedBy.lock();
  return server ? server->handle() : boost::shared_ptr<NZELVOR20::ICIMNamespace>();
}

void ScriptedClass::EnumerateInstances(NZELVOR20::TInstanceCallback callback, bool deep,
                                       NZELVOR20::TOptionsMap options) {
  ++m_enumerations;
  Script::current().enter(call("EnumerateInstances", deepAnd(deep, options)));
  const int turn = m_enumerations;
  const std::vector<Entry> entries = m_entries;
  for (const Entry& entry : entries) {
    if (turn < entry.from || turn > entry.to) {
      continue;
    }
    const InstancePtr& instance = entry.instance;
    if (!callback(instance ? instance->handle() : boost::shared_ptr<NZELVOR20::ICIMInstance>())) {
      return;
    }
  }
}

void ScriptedClass::EnumerateInstanceNames(NZELVOR20::TReferenceCallback, bool deep,
                                           NZELVOR20::TOptionsMap options) {
  Script::current().refuse(call("EnumerateInstanceNames", deepAnd(deep, options)));
}

boost::shared_ptr<NZELVOR20::ICIMClass> ScriptedClass::GetSuperclass(
    NZELVOR20::TOptionsMap options) {
  Script::current().refuse(call("GetSuperclass", describe(options)));
}

void ScriptedClass::EnumerateSubclasses(NZELVOR20::TClassCallback, bool deep,
                                        NZELVOR20::TOptionsMap options) {
  Script::current().refuse(call("EnumerateSubclasses", deepAnd(deep, options)));
}

void ScriptedClass::EnumerateProperties(NZELVOR20::TPropertyCallback,
                                        NZELVOR20::TOptionsMap options) {
  Script::current().refuse(call("EnumerateProperties", describe(options)));
}

NZELVOR20::TCIMValue ScriptedClass::GetQualifier(std::string name, NZELVOR20::TOptionsMap options) {
  Script::current().refuse(call("GetQualifier", quoted(name) + ", " + describe(options)));
}

boost::shared_ptr<NZELVOR20::ICIMInstance> ScriptedClass::AllocateInstance(
    NZELVOR20::TOptionsMap options) {
  Script::current().refuse(call("AllocateInstance", describe(options)));
}

void ScriptedClass::add(const InstancePtr& instance, int from, int to) {
  m_entries.push_back({instance, from, to});
}

std::string ScriptedClass::call(const std::string& operation, const std::string& arguments) const {
  return "class " + m_label + "." + operation + "(" + arguments + ")";
}

}  // namespace support
