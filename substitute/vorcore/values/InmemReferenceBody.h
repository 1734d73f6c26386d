#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <map>
#include <string>

#include "framework/ICIMReferenceBody.h"

namespace vorcore {

/// The body of a reference that was built from a key map.
class InmemReferenceBody final : public NZELVOR20::ICIMReferenceBody {
 public:
  InmemReferenceBody(const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns,
                     std::string namespaceName, std::string className,
                     std::map<std::string, NZELVOR20::TCIMValue> keys);

  boost::shared_ptr<NZELVOR20::ICIMClass> GetClass() const override;
  std::string GetPath() const override;
  boost::shared_ptr<NZELVOR20::ICIMNamespace> GetNamespace() const override;
  std::string GetNamespaceName() const override { return m_namespaceName; }
  std::string GetClassName() const override { return m_className; }
  std::map<std::string, NZELVOR20::TCIMValue> GetKeys() const override { return m_keys; }

 private:
  boost::weak_ptr<NZELVOR20::ICIMNamespace> m_namespace;
  std::string m_namespaceName;
  std::string m_className;
  std::map<std::string, NZELVOR20::TCIMValue> m_keys;
};

}  // namespace vorcore
