#pragma once

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

#include "framework/ICIMNamespace.h"

namespace cmpinsp {

/// The object manager's view of all namespaces, and the upcall namespace of each of them. The
/// option "nspID" chooses who answers: a family's name ("cmpi") the namespaces of that family,
/// which has to be there (else: not found); "plugin", null or no option the first namespace that
/// knows the answer. Namespaces are added before other threads use it; from then on it is as safe
/// as they are.
class ObjectManagerNamespace final : public NZELVOR20::ICIMNamespace,
                                     public boost::enable_shared_from_this<ObjectManagerNamespace> {
 public:
  boost::shared_ptr<NZELVOR20::INamespaceProvider> GetNamespaceProvider(
      NZELVOR20::TOptionsMap options) override;
  /// Not supported: nothing lies above the object manager.
  void SetUpcallNamespace(boost::shared_ptr<NZELVOR20::ICIMNamespace> upcall) override;
  /// Adds a namespace of the family that its provider names, and becomes its upcall namespace.
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
  void ClearInstances(NZELVOR20::TOptionsMap options) override;

 private:
  struct Underlying {
    std::string family;
    boost::shared_ptr<NZELVOR20::ICIMNamespace> handle;
  };

  std::vector<boost::shared_ptr<NZELVOR20::ICIMNamespace>> chosen(
      const NZELVOR20::TOptionsMap& options) const;
  template <typename Call>
  auto first(const NZELVOR20::TOptionsMap& options, Call call) const;

  std::vector<Underlying> m_underlying;
};

}  // namespace cmpinsp
