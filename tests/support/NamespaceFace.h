#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/TCIMQualifierDecl.h"
#include "tests/support/ScriptedNamespace.h"

namespace support {

/// The framework's face of a scripted namespace; `Base` is `ICIMNamespace` or `TCMPINamespace`.
template <typename Base>
class NamespaceFace : public Base, public ScriptedNamespace {
  using Options = NZELVOR20::TOptionsMap;

 public:
  using Base::operator=;
  using ScriptedNamespace::ScriptedNamespace;

  boost::shared_ptr<NZELVOR20::ICIMNamespace> handle() override {
    return boost::shared_ptr<NZELVOR20::ICIMNamespace>(shared_from_this(), this);
  }

  boost::shared_ptr<NZELVOR20::ICIMClass> GetClass(std::string name, Options options) override {
    return getClass(name, options);
  }
  void EnumerateProviders(NZELVOR20::TProviderCallback callback, Options options) override {
    enumerateProviders(callback, options);
  }
  boost::shared_ptr<NZELVOR20::ICIMInstance> GetInstance(NZELVOR20::TCIMReference reference,
                                                         Options options) override {
    return getInstance(reference, options);
  }

  boost::shared_ptr<NZELVOR20::INamespaceProvider> GetNamespaceProvider(Options) override {
    refuse("GetNamespaceProvider");
  }
  void SetUpcallNamespace(boost::shared_ptr<NZELVOR20::ICIMNamespace>) override {
    refuse("SetUpcallNamespace");
  }
  void AddUnderlyingNamespace(boost::shared_ptr<NZELVOR20::ICIMNamespace>) override {
    refuse("AddUnderlyingNamespace");
  }
  boost::shared_ptr<NZELVOR20::ICIMClass> AllocateClass(std::string, std::string,
                                                        Options) override {
    refuse("AllocateClass");
  }
  void EnumerateRootClasses(NZELVOR20::TClassCallback, Options) override {
    refuse("EnumerateRootClasses");
  }
  boost::shared_ptr<NZELVOR20::TCIMQualifierDecl> AllocateQualifierDecl(std::string,
                                                                        Options) override {
    refuse("AllocateQualifierDecl");
  }
  boost::shared_ptr<NZELVOR20::TCIMQualifierDecl> GetQualifierDecl(std::string, Options) override {
    refuse("GetQualifierDecl");
  }
  void EnumerateQualifierDecls(NZELVOR20::TQualifierDeclCallback, Options) override {
    refuse("EnumerateQualifierDecls");
  }
  void Subscribe(std::string, std::string, boost::shared_ptr<NZELVOR20::INamespaceConsumer>,
                 Options) override {
    refuse("Subscribe");
  }
  void DeleteInstance(NZELVOR20::TCIMReference, Options) override { refuse("DeleteInstance"); }
  void ModifyInstance(boost::shared_ptr<NZELVOR20::ICIMInstance>, Options) override {
    refuse("ModifyInstance");
  }
  void ExecuteQuery(std::string, std::string, NZELVOR20::TInstanceCallback, Options) override {
    refuse("ExecuteQuery");
  }
  void ClearInstances(Options) override { refuse("ClearInstances"); }
};

/// The face of a namespace that CMPI providers serve.
class CmpiNamespaceFace final : public NamespaceFace<NZELVOR20::TCMPINamespace> {
 public:
  using NamespaceFace::NamespaceFace;

  boost::shared_ptr<NZELVOR20::ICIMNamespace> GetUpcallNamespace() override {
    return getUpcallNamespace();
  }
  void Consume(boost::shared_ptr<NZELVOR20::ICIMInstance>) override { refuse("Consume"); }
};

}  // namespace support
