#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/Callbacks.h"
#include "framework/Export.h"
#include "framework/Options.h"

namespace NZELVOR20 {

class ICIMNamespace;

/// A class of the object model. Shared, immutable; may be used from several threads.
class NZELVOR20_INTERFACE ICIMClass {
 public:
  virtual ~ICIMClass() = default;

  virtual std::string GetName() const = 0;

  /// The namespace that serves the class. May be empty.
  virtual boost::shared_ptr<ICIMNamespace> GetNamespace(TOptionsMap options) = 0;

  /// Hands each instance to `callback`, those of subclasses too when `deep`.
  virtual void EnumerateInstances(TInstanceCallback callback, bool deep, TOptionsMap options) = 0;

  /// Hands the path of each instance to `callback`, those of subclasses too when `deep`.
  virtual void EnumerateInstanceNames(TReferenceCallback callback, bool deep,
                                      TOptionsMap options) = 0;

  /// The superclass; empty for a root class.
  virtual boost::shared_ptr<ICIMClass> GetSuperclass(TOptionsMap options) = 0;

  /// Hands each subclass to `callback`, indirect ones too when `deep`.
  virtual void EnumerateSubclasses(TClassCallback callback, bool deep, TOptionsMap options) = 0;

  /// Hands each property declaration to `callback`, inherited ones included; the values are the
  /// declared defaults.
  virtual void EnumerateProperties(TPropertyCallback callback, TOptionsMap options) = 0;

  /// The value of a qualifier of the class; null where it has none.
  virtual TCIMValue GetQualifier(std::string name, TOptionsMap options) = 0;

  /// Makes an instance with the declared defaults, not yet stored anywhere.
  virtual boost::shared_ptr<class ICIMInstance> AllocateInstance(TOptionsMap options) = 0;
};

}  // namespace NZELVOR20
