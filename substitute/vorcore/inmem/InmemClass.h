#pragma once

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <string>

#include "framework/ICIMClass.h"
#include "substitute/vorcore/inmem/DeclaredClass.h"

namespace vorcore {

class InmemStore;

/// A class of an in-memory namespace. It does not keep the namespace alive; once that is gone, what
/// needs it throws `TVORException` (invalid namespace).
class InmemClass final : public NZELVOR20::ICIMClass,
                         public IDeclaredClass,
                         public boost::enable_shared_from_this<InmemClass> {
 public:
  InmemClass(ClassDeclarationPtr declaration, std::string namespaceName,
             boost::weak_ptr<NZELVOR20::ICIMNamespace> ns, boost::weak_ptr<InmemStore> store);

  ClassDeclarationPtr GetDeclaration() const override { return m_declaration; }
  std::string GetNamespaceName() const override { return m_namespaceName; }

  std::string GetName() const override { return m_declaration->name; }
  boost::shared_ptr<NZELVOR20::ICIMNamespace> GetNamespace(NZELVOR20::TOptionsMap options) override;
  void EnumerateInstances(NZELVOR20::TInstanceCallback callback, bool deep,
                          NZELVOR20::TOptionsMap options) override;
  void EnumerateInstanceNames(NZELVOR20::TReferenceCallback callback, bool deep,
                              NZELVOR20::TOptionsMap options) override;
  boost::shared_ptr<NZELVOR20::ICIMClass> GetSuperclass(NZELVOR20::TOptionsMap options) override;
  void EnumerateSubclasses(NZELVOR20::TClassCallback callback, bool deep,
                           NZELVOR20::TOptionsMap options) override;
  void EnumerateProperties(NZELVOR20::TPropertyCallback callback,
                           NZELVOR20::TOptionsMap options) override;
  NZELVOR20::TCIMValue GetQualifier(std::string name, NZELVOR20::TOptionsMap options) override;
  boost::shared_ptr<NZELVOR20::ICIMInstance> AllocateInstance(
      NZELVOR20::TOptionsMap options) override;

 private:
  boost::shared_ptr<InmemStore> store() const;

  ClassDeclarationPtr m_declaration;
  std::string m_namespaceName;
  boost::weak_ptr<NZELVOR20::ICIMNamespace> m_namespace;
  boost::weak_ptr<InmemStore> m_store;
};

}  // namespace vorcore
