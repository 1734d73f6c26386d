#pragma once

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <string>

#include "framework/TCMPINamespace.h"
#include "substitute/cmpi.nsp/manager/operations/ObjectManager.h"
#include "substitute/cmpi.nsp/repository/QualifierTable.h"

namespace cmpinsp {

/// The namespace that CMPI providers serve. Its classes come from the schema files, so none can be
/// made here; events are not delivered. Both are refused (not supported). Safe to use from several
/// threads once the upcall namespace is set.
class CmpiNamespace final : public NZELVOR20::TCMPINamespace,
                            public boost::enable_shared_from_this<CmpiNamespace> {
 public:
  CmpiNamespace(boost::shared_ptr<ObjectManager> manager, QualifierTable qualifiers);

  ObjectManager& manager() const noexcept { return *m_manager; }

  /// The framework's view of `data`, which the instance registry keeps from now on.
  boost::shared_ptr<NZELVOR20::ICIMInstance> handOut(const InstanceDataPtr& data);

  boost::shared_ptr<NZELVOR20::ICIMNamespace> GetUpcallNamespace() override {
    return m_upcall.lock();
  }

  boost::shared_ptr<NZELVOR20::INamespaceProvider> GetNamespaceProvider(
      NZELVOR20::TOptionsMap options) override;
  /// To be called before other threads use the namespace: references ask this one for their class.
  void SetUpcallNamespace(boost::shared_ptr<NZELVOR20::ICIMNamespace> upcall) override;
  void AddUnderlyingNamespace(boost::shared_ptr<NZELVOR20::ICIMNamespace> underlying) override;
  boost::shared_ptr<NZELVOR20::ICIMClass> AllocateClass(std::string name, std::string superclass,
                                                        NZELVOR20::TOptionsMap options) override;
  boost::shared_ptr<NZELVOR20::ICIMClass> GetClass(std::string name,
                                                   NZELVOR20::TOptionsMap options) override;
  void EnumerateRootClasses(NZELVOR20::TClassCallback callback,
                            NZELVOR20::TOptionsMap options) override;
  void EnumerateProviders(NZELVOR20::TProviderCallback callback,
                          NZELVOR20::TOptionsMap options) override;
  boost::shared_ptr<NZELVOR20::TCIMQualifierDecl> AllocateQualifierDecl(
      std::string name, NZELVOR20::TOptionsMap options) override;
  boost::shared_ptr<NZELVOR20::TCIMQualifierDecl> GetQualifierDecl(
      std::string name, NZELVOR20::TOptionsMap options) override;
  void EnumerateQualifierDecls(NZELVOR20::TQualifierDeclCallback callback,
                               NZELVOR20::TOptionsMap options) override;
  void Subscribe(std::string language, std::string query,
                 boost::shared_ptr<NZELVOR20::INamespaceConsumer> consumer,
                 NZELVOR20::TOptionsMap options) override;
  boost::shared_ptr<NZELVOR20::ICIMInstance> GetInstance(NZELVOR20::TCIMReference reference,
                                                         NZELVOR20::TOptionsMap options) override;
  void DeleteInstance(NZELVOR20::TCIMReference reference, NZELVOR20::TOptionsMap options) override;
  void ModifyInstance(boost::shared_ptr<NZELVOR20::ICIMInstance> instance,
                      NZELVOR20::TOptionsMap options) override;
  void ExecuteQuery(std::string language, std::string query, NZELVOR20::TInstanceCallback callback,
                    NZELVOR20::TOptionsMap options) override;
  /// Empties the instance registry.
  void ClearInstances(NZELVOR20::TOptionsMap options) override;
  void Consume(boost::shared_ptr<NZELVOR20::ICIMInstance> event) override;

 private:
  boost::shared_ptr<ObjectManager> m_manager;
  QualifierTable m_qualifiers;
  boost::weak_ptr<NZELVOR20::ICIMNamespace> m_upcall;
};

/// The CMPI namespace that serves the class `className` of `ns`. Throws `TVORException` (not
/// supported) where another kind of namespace does.
boost::shared_ptr<CmpiNamespace> cmpiNamespaceOf(
    const boost::shared_ptr<NZELVOR20::ICIMNamespace>& ns, const std::string& className);

}  // namespace cmpinsp
