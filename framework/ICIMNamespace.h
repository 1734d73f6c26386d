#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/Callbacks.h"
#include "framework/Export.h"
#include "framework/Options.h"
#include "framework/TCIMReference.h"

namespace NZELVOR20 {

class INamespaceConsumer;

/// A place where classes and instances live. Handles are shared; operations report failure by
/// `TVORException` or a standard exception, and what an implementation does not support by
/// `TVORException` (not supported). The order of the virtual operations is part of the interface.
///
/// An implementation may be called from several threads unless it says otherwise.
class NZELVOR20_INTERFACE ICIMNamespace {
 public:
  virtual ~ICIMNamespace() = default;

  /// What serves this namespace.
  virtual boost::shared_ptr<INamespaceProvider> GetNamespaceProvider(TOptionsMap options) = 0;

  /// Sets the namespace through which this one reaches the rest of the object manager. It is held
  /// weakly: the object manager owns its namespaces, not the other way round.
  virtual void SetUpcallNamespace(boost::shared_ptr<ICIMNamespace> upcall) = 0;

  /// Adds a namespace that answers what this one does not know itself.
  virtual void AddUnderlyingNamespace(boost::shared_ptr<ICIMNamespace> underlying) = 0;

  /// Makes a class named `name` below `superclass` (empty for a root class); throws (already
  /// exists) when there is one.
  virtual boost::shared_ptr<ICIMClass> AllocateClass(std::string name, std::string superclass,
                                                     TOptionsMap options) = 0;

  /// The class named `name` (case-insensitive, DSP0004, 7.2). Throws `TVORException` or returns
  /// an empty handle when it is unknown.
  virtual boost::shared_ptr<ICIMClass> GetClass(std::string name, TOptionsMap options) = 0;

  /// Hands each class that has no superclass to `callback`.
  virtual void EnumerateRootClasses(TClassCallback callback, TOptionsMap options) = 0;

  /// Hands each provider to `callback`.
  virtual void EnumerateProviders(TProviderCallback callback, TOptionsMap options) = 0;

  virtual boost::shared_ptr<TCIMQualifierDecl> AllocateQualifierDecl(std::string name,
                                                                     TOptionsMap options) = 0;
  virtual boost::shared_ptr<TCIMQualifierDecl> GetQualifierDecl(std::string name,
                                                                TOptionsMap options) = 0;
  virtual void EnumerateQualifierDecls(TQualifierDeclCallback callback, TOptionsMap options) = 0;

  /// Delivers to `consumer` the events that `query` (in `language`) selects.
  virtual void Subscribe(std::string language, std::string query,
                         boost::shared_ptr<INamespaceConsumer> consumer, TOptionsMap options) = 0;

  /// The instance that `reference` names. Throws `TVORException` (not found) or returns an empty
  /// handle when there is none.
  virtual boost::shared_ptr<ICIMInstance> GetInstance(TCIMReference reference,
                                                      TOptionsMap options) = 0;
  virtual void DeleteInstance(TCIMReference reference, TOptionsMap options) = 0;

  /// Writes the properties of `instance` to the instance of the same path.
  virtual void ModifyInstance(boost::shared_ptr<ICIMInstance> instance, TOptionsMap options) = 0;

  /// Hands each instance that `query` (in `language`) selects to `callback`.
  virtual void ExecuteQuery(std::string language, std::string query, TInstanceCallback callback,
                            TOptionsMap options) = 0;

  /// Drops the instances that the namespace itself holds.
  virtual void ClearInstances(TOptionsMap options) = 0;

  virtual ICIMNamespace& operator=(const ICIMNamespace&) { return *this; }

 protected:
  ICIMNamespace() = default;
  ICIMNamespace(const ICIMNamespace&) = default;
};

}  // namespace NZELVOR20
