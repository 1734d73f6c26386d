#pragma once

#include <boost/shared_ptr.hpp>
#include <map>
#include <string>

#include "framework/Export.h"
#include "framework/TCIMValue.h"

// windows.h gives this name to a function of its own, by a macro.
#if defined(GetClassName)
#undef GetClassName
#endif

namespace NZELVOR20 {

class ICIMClass;
class ICIMNamespace;

/// What stands behind a `TCIMReference`. A namespace supplies its own body where it can answer
/// more cheaply than from a key map (an object path that a provider handed out is read on demand).
/// Bodies are immutable and are shared between threads.
class NZELVOR20_INTERFACE ICIMReferenceBody {
 public:
  virtual ~ICIMReferenceBody() = default;
  virtual boost::shared_ptr<ICIMClass> GetClass() const = 0;
  virtual std::string GetPath() const = 0;
  virtual boost::shared_ptr<ICIMNamespace> GetNamespace() const = 0;
  virtual std::string GetNamespaceName() const = 0;
  virtual std::string GetClassName() const = 0;
  virtual std::map<std::string, TCIMValue> GetKeys() const = 0;
};

}  // namespace NZELVOR20
