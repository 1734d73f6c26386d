#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <string>

#include "framework/INamespaceProvider.h"
#include "substitute/cmpi.nsp/manager/providers/Router.h"

namespace cmpinsp {

/// The name of the provider family that CMPI providers make up.
constexpr const char* kCmpiFamily = "cmpi";

/// One CMPI provider, or without one the family as a whole, as what serves the CMPI namespace.
class CmpiNamespaceProvider final : public NZELVOR20::INamespaceProvider {
 public:
  CmpiNamespaceProvider(boost::weak_ptr<NZELVOR20::ICIMNamespace> ns,
                        ManagedProviderPtr provider) noexcept
      : m_namespace(std::move(ns)), m_provider(std::move(provider)) {}

  std::string GetName() const override {
    return m_provider ? m_provider->registration().name : kCmpiFamily;
  }

  /// Loads the provider, so that one that cannot be used shows here.
  boost::shared_ptr<NZELVOR20::ICIMNamespace> GetNamespace(NZELVOR20::TOptionsMap) override {
    if (m_provider) m_provider->get().load();
    return m_namespace.lock();
  }

 private:
  boost::weak_ptr<NZELVOR20::ICIMNamespace> m_namespace;
  ManagedProviderPtr m_provider;
};

}  // namespace cmpinsp
