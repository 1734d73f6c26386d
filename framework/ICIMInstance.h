#pragma once

#include <boost/shared_ptr.hpp>
#include <string>

#include "framework/Callbacks.h"
#include "framework/Export.h"
#include "framework/Options.h"
#include "framework/TCIMReference.h"

namespace NZELVOR20 {

class ICIMClass;

/// An instance: a snapshot of a class's properties. Shared; reading from several threads is safe
/// as long as nobody sets a property.
class NZELVOR20_INTERFACE ICIMInstance {
 public:
  virtual ~ICIMInstance() = default;

  /// The instance's own path.
  virtual TCIMReference GetObjectPath(TOptionsMap options) = 0;

  /// The property named `name` (case-insensitive). Throws `TVORException` (no such property) or
  /// returns an empty handle where the instance has none; a property without a value is null.
  virtual boost::shared_ptr<ICIMProperty> GetProperty(std::string name, TOptionsMap options) = 0;

  /// Sets the property named `name`; the value takes the property's declared type.
  virtual void SetProperty(std::string name, TCIMValue value, TOptionsMap options) = 0;

  /// The Pegasus namespace text of the instance; empty where it has none.
  virtual std::string GetPegasusNSPStr() = 0;

  /// The instance's class. Throws `TVORException` where it can no longer be found.
  virtual boost::shared_ptr<ICIMClass> GetClass(TOptionsMap options) = 0;

  /// Hands each property to `callback`, in the order of declaration.
  virtual void EnumerateProperties(TPropertyCallback callback, TOptionsMap options) = 0;
};

}  // namespace NZELVOR20
