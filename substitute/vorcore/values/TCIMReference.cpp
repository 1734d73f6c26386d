#include "framework/TCIMReference.h"

#include <boost/make_shared.hpp>
#include <utility>

#include "framework/ICIMNamespace.h"
#include "substitute/vorcore/values/InmemReferenceBody.h"

namespace NZELVOR20 {
namespace {

/// Never destroyed: a host's own static objects may still be at work while the process ends.
const boost::shared_ptr<const ICIMReferenceBody>& emptyBody() {
  static const auto* const body = new boost::shared_ptr<const ICIMReferenceBody>(
      boost::make_shared<vorcore::InmemReferenceBody>(boost::shared_ptr<ICIMNamespace>(),
                                                      std::string(), std::string(),
                                                      std::map<std::string, TCIMValue>()));
  return *body;
}

}  // namespace

TCIMReference::TCIMReference(boost::shared_ptr<ICIMNamespace> ns,
                             std::map<std::string, TCIMValue> keys)
    : m_body(emptyBody()) {
  if (ns || !keys.empty()) {
    m_body = boost::make_shared<vorcore::InmemReferenceBody>(ns, std::string(), std::string(),
                                                             std::move(keys));
  }
}

TCIMReference::TCIMReference(boost::shared_ptr<ICIMNamespace> ns, std::string namespaceName,
                             std::string className, std::map<std::string, TCIMValue> keys)
    : m_body(boost::make_shared<vorcore::InmemReferenceBody>(
          ns, std::move(namespaceName), std::move(className), std::move(keys))) {}

TCIMReference::TCIMReference(boost::shared_ptr<const ICIMReferenceBody> body)
    : m_body(body ? std::move(body) : emptyBody()) {}

boost::shared_ptr<ICIMClass> TCIMReference::GetClass() const { return m_body->GetClass(); }

std::string TCIMReference::GetPath() const { return m_body->GetPath(); }

boost::shared_ptr<ICIMNamespace> TCIMReference::GetNamespace() const {
  return m_body->GetNamespace();
}

std::string TCIMReference::GetNamespaceName() const { return m_body->GetNamespaceName(); }

std::string TCIMReference::GetClassName() const { return m_body->GetClassName(); }

std::map<std::string, TCIMValue> TCIMReference::GetKeys() const { return m_body->GetKeys(); }

}  // namespace NZELVOR20
