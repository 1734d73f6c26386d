#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <string>
#include <vector>

#include "substitute/cmpi.nsp/broker/IUpcalls.h"
#include "substitute/cmpi.nsp/manager/operations/Attempts.h"
#include "substitute/cmpi.nsp/manager/operations/Refusals.h"
#include "substitute/cmpi.nsp/manager/operations/StaticInstances.h"
#include "substitute/cmpi.nsp/manager/providers/Router.h"
#include "substitute/cmpi.nsp/repository/ClassTable.h"

namespace cmpinsp {

class Merge;

/// Sends each operation to the providers that serve the class in question and puts their answers
/// together. A path without a namespace reaches providers of every namespace; an unknown class is
/// refused (invalid class), a class that nobody serves has no instances.
///
/// Filled by `setStaticInstances` and `setNamespaceHandle` before other threads use it; from then
/// on safe to use from several threads. Its destruction cleans the providers up.
class ObjectManager final : public IUpcalls {
 public:
  /// The libraries of the registered `providers` are looked for in `providersFolder`.
  ObjectManager(boost::shared_ptr<const ClassTable> classes,
                std::vector<RegisteredProvider> providers, const std::string& providersFolder);
  ObjectManager(const ObjectManager&) = delete;
  ObjectManager& operator=(const ObjectManager&) = delete;
  ~ObjectManager() override;

  void setStaticInstances(StaticInstances instances) { m_static = std::move(instances); }
  void setNamespaceHandle(const boost::shared_ptr<NZELVOR20::ICIMNamespace>& handle) {
    m_namespace = handle;
  }

  const std::vector<ManagedProviderPtr>& providers() const noexcept { return m_providers; }

  /// The declaration of a class; one without features for a class that a provider is registered for
  /// and nobody declared; empty for an unknown class.
  vorcore::ClassDeclarationPtr findClass(const std::string& className) const;

  /// Why classes looked empty that nobody who serves them enumerates: one text each, those that
  /// came since the last call. The core log has them too.
  std::vector<std::string> takeRefusals() { return m_refusals.take(); }

  /// The references of `end` that the provider has, by way of their names where it does not support
  /// them otherwise.
  void referencesOf(Provider& provider, const ObjectPath& end, const AssociationFilter& filter,
                    PropertyNames properties, const InstanceSink& sink);

  /// As the upcalls of these names, with the instances of subclasses only when `deep`.
  void enumerate(const ObjectPath& classPath, bool deep, PropertyNames properties,
                 const InstanceSink& sink);
  void enumerateNames(const ObjectPath& classPath, bool deep, const PathSink& sink);

  void enumerateInstances(const ObjectPath& classPath, PropertyNames properties,
                          const InstanceSink& sink) override;
  void enumerateInstanceNames(const ObjectPath& classPath, const PathSink& sink) override;
  InstanceDataPtr getInstance(const ObjectPath& path, PropertyNames properties) override;
  ObjectPath createInstance(const ObjectPath& path, const InstanceDataPtr& instance) override;
  void modifyInstance(const ObjectPath& path, const InstanceDataPtr& instance,
                      PropertyNames properties) override;
  void deleteInstance(const ObjectPath& path) override;
  void executeQuery(const ObjectPath& classPath, const std::string& query,
                    const std::string& language, const InstanceSink& sink) override;
  void associators(const ObjectPath& path, const AssociationFilter& filter,
                   PropertyNames properties, const InstanceSink& sink) override;
  void associatorNames(const ObjectPath& path, const AssociationFilter& filter,
                       const PathSink& sink) override;
  void references(const ObjectPath& path, const AssociationFilter& filter, PropertyNames properties,
                  const InstanceSink& sink) override;
  void referenceNames(const ObjectPath& path, const AssociationFilter& filter,
                      const PathSink& sink) override;
  NZELVOR20::TCIMValue invokeMethod(const ObjectPath& path, const std::string& method,
                                    const Arguments& in, Arguments& out) override;
  void setProperty(const ObjectPath& path, const std::string& name,
                   const NZELVOR20::TCIMValue& value) override;
  NZELVOR20::TCIMValue getProperty(const ObjectPath& path, const std::string& name) override;

  const ClassRepository& classes() const override { return *m_classes; }
  boost::shared_ptr<NZELVOR20::ICIMNamespace> namespaceHandle() const override {
    return m_namespace.lock();
  }

 private:
  boost::shared_ptr<const Router> router() const;
  void requireClass(const std::string& className) const;
  struct OtherSource;
  std::vector<OtherSource> otherSources(const ObjectPath& classPath, bool deep,
                                        const std::vector<Route>& refused) const;
  ObjectPath typed(const ObjectPath& path) const;
  InstanceDataPtr findStatic(const ObjectPath& path) const;
  std::vector<Route> instanceRoutes(const ObjectPath& path) const;
  template <typename Answers>
  void enumerateInto(const ObjectPath& classPath, bool deep, const Answers& answers);
  void passQueryOn(const ObjectPath& classPath, const std::string& query,
                   const std::string& language, const InstanceSink& sink,
                   const std::exception_ptr& refusal);
  template <typename Answers>
  void giveFrom(const OtherSource& source, const std::string& nameSpace, const Answers& answers,
                Merge& merge, Attempts& attempts, Refusals& refusals);
  void tell(const Refusals& refusals);
  using InstanceSource = boost::function<void(const InstanceSink&)>;
  using NameSource = boost::function<void(const PathSink&)>;
  /// The answers of `instances`; where that is not supported, what `names` names.
  void giveInstancesOrNamed(const InstanceSource& instances, const NameSource& names,
                            PropertyNames properties, const InstanceSink& sink);
  void giveNamed(const NameSource& names, PropertyNames properties, const InstanceSink& sink);
  InstanceDataPtr searchAssociation(const ObjectPath& path, PropertyNames properties);
  /// What a provider is asked about the path that it knows the instance by; true: answered.
  using Question = boost::function<bool(Provider&, const ObjectPath&)>;
  /// Asks the providers in turn, until one answers.
  Attempts askInTurn(const ObjectPath& path, const std::vector<Route>& routes,
                     const Question& question) const;
  void askForInstance(const ObjectPath& path, const std::vector<Route>& routes,
                      const Question& question) const;
  std::string declaredName(const std::string& className, const std::string& property) const;
  bool askForProperty(const ObjectPath& path, const Question& question) const;
  static void requireServed(bool served, const ObjectPath& path);
  template <typename Sink, typename Call>
  void associate(const ObjectPath& path, const std::string& associationClass,
                 const std::string& wantedClass, const Sink& sink, Call call);

  boost::shared_ptr<const ClassTable> m_classes;
  StaticInstances m_static;
  KeptRefusals m_refusals;
  boost::weak_ptr<NZELVOR20::ICIMNamespace> m_namespace;
  LibraryTrust m_trust;
  std::vector<ManagedProviderPtr> m_providers;
  /// Replaced by an empty one at the end, when providers may still make upcalls.
  boost::shared_ptr<const Router> m_router;
};

}  // namespace cmpinsp
