#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <utility>

#include "framework/ICIMNamespace.h"

namespace vorcore {

/// A namespace that is no in-memory one for whoever asks, but keeps everything in one.
class ForeignNamespace final : public NZELVOR20::ICIMNamespace {
 public:
  using Options = NZELVOR20::TOptionsMap;

  explicit ForeignNamespace(boost::shared_ptr<NZELVOR20::ICIMNamespace> inner)
      : m_inner(std::move(inner)) {}
  using ICIMNamespace::operator=;

  boost::shared_ptr<NZELVOR20::INamespaceProvider> GetNamespaceProvider(Options options) override {
    return m_inner->GetNamespaceProvider(options);
  }
  void SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> upcall) override {
    m_inner->SetUpcallNamespace(upcall);
  }
  void AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> underlying) override {
    m_inner->AddUnderlyingNamespace(underlying);
  }
  boost::shared_ptr<NZELVOR20::ICIMClass> AllocateClass(std::string name, std::string superclass,
                                                        Options options) override {
    return m_inner->AllocateClass(name, superclass, options);
  }
  boost::shared_ptr<NZELVOR20::ICIMClass> GetClass(std::string name, Options options) override {
    return m_inner->GetClass(name, options);
  }
  void EnumerateRootClasses(NZELVOR20::TClassCallback callback, Options options) override {
    m_inner->EnumerateRootClasses(callback, options);
  }
  void EnumerateProviders(NZELVOR20::TProviderCallback callback, Options options) override {
    m_inner->EnumerateProviders(callback, options);
  }
  boost::shared_ptr<NZELVOR20::TCIMQualifierDecl> AllocateQualifierDecl(std::string name,
                                                                        Options options) override {
    return m_inner->AllocateQualifierDecl(name, options);
  }
  boost::shared_ptr<NZELVOR20::TCIMQualifierDecl> GetQualifierDecl(std::string name,
                                                                   Options options) override {
    return m_inner->GetQualifierDecl(name, options);
  }
  void EnumerateQualifierDecls(NZELVOR20::TQualifierDeclCallback callback,
                               Options options) override {
    m_inner->EnumerateQualifierDecls(callback, options);
  }
  void Subscribe(std::string language, std::string query,
                 boost::shared_ptr<NZELVOR20::INamespaceConsumer> consumer,
                 Options options) override {
    m_inner->Subscribe(language, query, consumer, options);
  }
  boost::shared_ptr<NZELVOR20::ICIMInstance> GetInstance(NZELVOR20::TCIMReference reference,
                                                         Options options) override {
    return m_inner->GetInstance(reference, options);
  }
  void DeleteInstance(NZELVOR20::TCIMReference reference, Options options) override {
    m_inner->DeleteInstance(reference, options);
  }
  void ModifyInstance(boost::shared_ptr<NZELVOR20::ICIMInstance> instance,
                      Options options) override {
    m_inner->ModifyInstance(instance, options);
  }
  void ExecuteQuery(std::string language, std::string query, NZELVOR20::TInstanceCallback callback,
                    Options options) override {
    m_inner->ExecuteQuery(language, query, callback, options);
  }
  void ClearInstances(Options options) override { m_inner->ClearInstances(options); }

 private:
  boost::shared_ptr<NZELVOR20::ICIMNamespace> m_inner;
};

}  // namespace vorcore
