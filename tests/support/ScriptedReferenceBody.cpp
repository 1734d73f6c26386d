#include "tests/support/ScriptedReferenceBody.h"

#include <utility>

#include "tests/support/Script.h"
#include "tests/support/ScriptedClass.h"
#include "tests/support/ScriptedNamespace.h"

namespace support {

namespace {
constexpr char kNamespaceName[] = "root/cimv2";
}  // namespace

std::string Path::text() const {
  return std::string(kNamespaceName) + ":" + className + "." + keyName + "=\"" + keyValue + "\"";
}

ScriptedReferenceBody::ScriptedReferenceBody(Path path)
    : m_path(std::move(path)), m_text(m_path.text()) {}

boost::shared_ptr<NZELVOR20::ICIMClass> ScriptedReferenceBody::GetClass() const {
  if (Script::current().enter(call("GetClass"), Returns::handle)) {
    return {};
  }
  return m_path.theClass.lock();
}

std::string ScriptedReferenceBody::GetPath() const {
  Script::current().enter(call("GetPath"));
  return m_text;
}

boost::shared_ptr<NZELVOR20::ICIMNamespace> ScriptedReferenceBody::GetNamespace() const {
  if (Script::current().enter(call("GetNamespace"), Returns::handle)) {
    return {};
  }
  const boost::shared_ptr<ScriptedClass> theClass = m_path.theClass.lock();
  const boost::shared_ptr<ScriptedNamespace> server =
      theClass ? theClass->servedBy() : boost::shared_ptr<ScriptedNamespace>();
  return server ? server->handle() : boost::shared_ptr<NZELVOR20::ICIMNamespace>();
}

std::string ScriptedReferenceBody::GetNamespaceName() const {
  Script::current().enter(call("GetNamespaceName"));
  return kNamespaceName;
}

std::string ScriptedReferenceBody::GetClassName() const {
  Script::current().enter(call("GetClassName"));
  return m_path.className;
}

std::map<std::string, NZELVOR20::TCIMValue> ScriptedReferenceBody::GetKeys() const {
  Script::current().enter(call("GetKeys"));
  return {{m_path.keyName, NZELVOR20::TCIMValue(m_path.keyValue)}};
}

std::string ScriptedReferenceBody::call(const std::string& operation) const {
  return "ref " + m_text + "." + operation + "()";
}

}  // namespace support
