#include "substitute/vorcore/values/InmemReferenceBody.h"

#include <utility>

#include "framework/ICIMNamespace.h"
#include "framework/TVORException.h"
#include "substitute/vorcore/values/PathText.h"

namespace vorcore {

using namespace NZELVOR20;

namespace {

[[noreturn]] void throwNamesNoClass() {
  throw TVORException(TVORStatusCode(eVORInvalidParameter, "the reference names no class"));
}

}  // namespace

InmemReferenceBody::InmemReferenceBody(const boost::shared_ptr<ICIMNamespace>& ns,
                                       std::string namespaceName, std::string className,
                                       std::map<std::string, TCIMValue> keys)
    : m_namespace(ns),
      m_namespaceName(std::move(namespaceName)),
      m_className(std::move(className)),
      m_keys(std::move(keys)) {}

boost::shared_ptr<ICIMClass> InmemReferenceBody::GetClass() const {
  if (m_className.empty()) throwNamesNoClass();
  const boost::shared_ptr<ICIMNamespace> ns = m_namespace.lock();
  if (!ns) {
    throw TVORException(
        TVORStatusCode(eVORInvalidNamespace, "the namespace of " + GetPath() + " is gone"));
  }
  boost::shared_ptr<ICIMClass> found = ns->GetClass(m_className, TOptionsMap());
  if (!found) throw TVORException(TVORStatusCode(eVORInvalidClass, "class " + m_className));
  return found;
}

std::string InmemReferenceBody::GetPath() const {
  if (m_className.empty()) throwNamesNoClass();
  std::vector<KeyView> keys;
  keys.reserve(m_keys.size());
  for (const auto& key : m_keys) keys.emplace_back(&key.first, &key.second);
  return pathText(m_namespaceName, m_className, std::move(keys));
}

boost::shared_ptr<ICIMNamespace> InmemReferenceBody::GetNamespace() const {
  return m_namespace.lock();
}

}  // namespace vorcore
