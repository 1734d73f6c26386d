#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <string>

#include "framework/ICIMClass.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace cmpinsp {

class CmpiNamespace;

/// A class of the repository, served by CMPI providers. It holds its namespace weakly.
class CmpiClass final : public NZELVOR20::ICIMClass {
 public:
  CmpiClass(vorcore::ClassDeclarationPtr declaration, boost::weak_ptr<CmpiNamespace> ns) noexcept
      : m_declaration(std::move(declaration)), m_namespace(std::move(ns)) {}

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
  /// Throws `TVORException` (invalid namespace) when the namespace is gone.
  boost::shared_ptr<CmpiNamespace> requireNamespace() const;

  vorcore::ClassDeclarationPtr m_declaration;
  boost::weak_ptr<CmpiNamespace> m_namespace;
};

}  // namespace cmpinsp
