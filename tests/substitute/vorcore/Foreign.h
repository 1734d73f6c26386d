#pragma once

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <string>
#include <utility>

#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "framework/ICIMNamespace.h"
#include "framework/TVORException.h"

/// In-memory objects behind nothing but their framework interfaces: what a namespace of somebody
/// else's would hand out.
namespace vorcore {

class ForeignClass final : public NZELVOR20::ICIMClass {
 public:
  explicit ForeignClass(boost::shared_ptr<NZELVOR20::ICIMClass> inner)
      : m_inner(std::move(inner)) {}

  std::string GetName() const override { return m_inner->GetName(); }
  boost::shared_ptr<NZELVOR20::ICIMNamespace> GetNamespace(NZELVOR20::TOptionsMap) override {
    throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(NZELVOR20::eVORNotSupported));
  }
  void EnumerateInstances(NZELVOR20::TInstanceCallback callback, bool deep,
                          NZELVOR20::TOptionsMap options) override {
    m_inner->EnumerateInstances(callback, deep, options);
  }
  void EnumerateInstanceNames(NZELVOR20::TReferenceCallback callback, bool deep,
                              NZELVOR20::TOptionsMap options) override {
    m_inner->EnumerateInstanceNames(callback, deep, options);
  }
  boost::shared_ptr<NZELVOR20::ICIMClass> GetSuperclass(NZELVOR20::TOptionsMap options) override {
    const auto superclass = m_inner->GetSuperclass(options);
    return superclass ? boost::make_shared<ForeignClass>(superclass) : nullptr;
  }
  void EnumerateSubclasses(NZELVOR20::TClassCallback callback, bool deep,
                           NZELVOR20::TOptionsMap options) override {
    m_inner->EnumerateSubclasses(callback, deep, options);
  }
  void EnumerateProperties(NZELVOR20::TPropertyCallback callback,
                           NZELVOR20::TOptionsMap options) override {
    m_inner->EnumerateProperties(callback, options);
  }
  NZELVOR20::TCIMValue GetQualifier(std::string name, NZELVOR20::TOptionsMap options) override {
    return m_inner->GetQualifier(name, options);
  }
  boost::shared_ptr<NZELVOR20::ICIMInstance> AllocateInstance(
      NZELVOR20::TOptionsMap options) override {
    return m_inner->AllocateInstance(options);
  }

 private:
  boost::shared_ptr<NZELVOR20::ICIMClass> m_inner;
};

/// With `knowsItsClass` false, its class cannot be found.
class ForeignInstance final : public NZELVOR20::ICIMInstance {
 public:
  ForeignInstance(boost::shared_ptr<NZELVOR20::ICIMInstance> inner, bool knowsItsClass)
      : m_inner(std::move(inner)), m_knowsItsClass(knowsItsClass) {}

  NZELVOR20::TCIMReference GetObjectPath(NZELVOR20::TOptionsMap options) override {
    return m_inner->GetObjectPath(options);
  }
  boost::shared_ptr<NZELVOR20::ICIMProperty> GetProperty(std::string name,
                                                         NZELVOR20::TOptionsMap options) override {
    return m_inner->GetProperty(name, options);
  }
  void SetProperty(std::string name, NZELVOR20::TCIMValue value,
                   NZELVOR20::TOptionsMap options) override {
    m_inner->SetProperty(name, value, options);
  }
  std::string GetPegasusNSPStr() override { return std::string(); }
  boost::shared_ptr<NZELVOR20::ICIMClass> GetClass(NZELVOR20::TOptionsMap options) override {
    if (!m_knowsItsClass) {
      throw NZELVOR20::TVORException(NZELVOR20::TVORStatusCode(NZELVOR20::eVORInvalidClass));
    }
    return boost::make_shared<ForeignClass>(m_inner->GetClass(options));
  }
  void EnumerateProperties(NZELVOR20::TPropertyCallback callback,
                           NZELVOR20::TOptionsMap options) override {
    m_inner->EnumerateProperties(callback, options);
  }

 private:
  boost::shared_ptr<NZELVOR20::ICIMInstance> m_inner;
  bool m_knowsItsClass;
};

}  // namespace vorcore
