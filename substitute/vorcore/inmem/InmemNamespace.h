#pragma once

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <memory>
#include <string>

#include "framework/Export.h"
#include "framework/ICIMNamespace.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace NZELVOR20 {

/// A namespace that keeps classes and instances in memory. Safe to use from several threads;
/// enumerations walk what was there when they began. What it hands out are copies: an instance that
/// is changed has no effect here before `ModifyInstance`.
///
/// Classes, references and instances do not keep the namespace alive.
class VORCORE_API TInmemNamespace : public ICIMNamespace,
                                    public boost::enable_shared_from_this<TInmemNamespace> {
 public:
  /// An empty namespace that paths show as `name`, for instance "root/report".
  static boost::shared_ptr<TInmemNamespace> make(std::string name);

  TInmemNamespace(const TInmemNamespace&) = delete;
  ~TInmemNamespace() override;
  using ICIMNamespace::operator=;

  const std::string& name() const noexcept;

  /// Makes a class from its whole declaration, inherited properties included. Throws
  /// `TVORException`: already exists, or invalid class when the superclass is not in this
  /// namespace.
  boost::shared_ptr<ICIMClass> addClass(vorcore::ClassDeclaration declaration);

  /// True when the class is in this namespace itself.
  bool hasClass(const std::string& className) const;

  /// Stores a copy of `instance`, of whatever kind it is, in the place of one with the same path,
  /// and returns that copy. Its class must be in this namespace, else throws (invalid class);
  /// properties that the class does not declare are left out.
  boost::shared_ptr<ICIMInstance> storeInstance(ICIMInstance& instance);

  /// The namespace that was set; empty where none was, or where it is gone.
  boost::shared_ptr<ICIMNamespace> GetUpcallNamespace() const;

  boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(TOptionsMap options) override;
  void SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> upcall) override;
  void AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> underlying) override;
  /// The superclass may come from an underlying namespace; it is then made here too.
  boost::shared_ptr<ICIMClass> AllocateClass(std::string name, std::string superclass,
                                             TOptionsMap options) override;
  /// Empty where neither this namespace nor an underlying one knows the class: who looks for
  /// instances in a namespace that nothing was copied to yet finds none, which is no failure.
  boost::shared_ptr<ICIMClass> GetClass(std::string name, TOptionsMap options) override;
  void EnumerateRootClasses(TClassCallback callback, TOptionsMap options) override;
  /// The namespace's own store first, then the providers of the underlying namespaces.
  void EnumerateProviders(TProviderCallback callback, TOptionsMap options) override;
  boost::shared_ptr<TCIMQualifierDecl> AllocateQualifierDecl(std::string name,
                                                             TOptionsMap options) override;
  boost::shared_ptr<TCIMQualifierDecl> GetQualifierDecl(std::string name,
                                                        TOptionsMap options) override;
  void EnumerateQualifierDecls(TQualifierDeclCallback callback, TOptionsMap options) override;
  /// Throws (not supported): nothing raises events here.
  void Subscribe(std::string language, std::string query,
                 boost::shared_ptr<INamespaceConsumer> consumer, TOptionsMap options) override;
  boost::shared_ptr<ICIMInstance> GetInstance(TCIMReference reference,
                                              TOptionsMap options) override;
  /// Deletes from this namespace itself only.
  void DeleteInstance(TCIMReference reference, TOptionsMap options) override;
  /// Stores the instance, whether or not there is one of its path already.
  void ModifyInstance(boost::shared_ptr<ICIMInstance> instance, TOptionsMap options) override;
  /// Throws (not supported).
  void ExecuteQuery(std::string language, std::string query, TInstanceCallback callback,
                    TOptionsMap options) override;
  void ClearInstances(TOptionsMap options) override;

 private:
  struct Impl;

  explicit TInmemNamespace(std::string name);
  template <typename Result, typename Lookup>
  boost::shared_ptr<Result> askUnderlying(Lookup lookup) const;

  std::unique_ptr<Impl> m_impl;
};

}  // namespace NZELVOR20
