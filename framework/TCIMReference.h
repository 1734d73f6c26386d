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
class ICIMReferenceBody;

/// An object path: the namespace it lives in, the class and the key values. A value type; copies
/// share one immutable body.
class VORCORE_API TCIMReference {
 public:
  /// A reference that names no class yet; one to assign into.
  TCIMReference(boost::shared_ptr<ICIMNamespace> ns, std::map<std::string, TCIMValue> keys);

  /// A reference to the instance of `className` with `keys` in `ns`, which prints as
  /// `namespaceName` (for instance "root/cimv2"; may be empty). The namespace is held weakly: a
  /// reference does not keep it alive.
  TCIMReference(boost::shared_ptr<ICIMNamespace> ns, std::string namespaceName,
                std::string className, std::map<std::string, TCIMValue> keys);

  /// A reference with a namespace's own body; an empty handle gives an empty reference.
  explicit TCIMReference(boost::shared_ptr<const ICIMReferenceBody> body);

  // Moving copies, so that a reference always has a body.
  TCIMReference(const TCIMReference& other) noexcept = default;
  TCIMReference& operator=(const TCIMReference& other) noexcept = default;
  ~TCIMReference() = default;

  /// The class that the reference names, asked for in its namespace with an empty options map.
  /// Throws `TVORException` when the reference is empty, its namespace is gone, or the class is
  /// unknown.
  boost::shared_ptr<ICIMClass> GetClass() const;

  /// The path as text, `root/cimv2:Class.Key="value",...` (DSP0004, 8.5): keys in name order,
  /// quotes and backslashes in strings escaped. Throws `TVORException` (invalid parameter) for a
  /// reference that names no class.
  std::string GetPath() const;

  /// The namespace's handle; empty where there is none, or where it is gone.
  boost::shared_ptr<ICIMNamespace> GetNamespace() const;
  std::string GetNamespaceName() const;
  std::string GetClassName() const;
  std::map<std::string, TCIMValue> GetKeys() const;

  /// The body, for a namespace that wants to recognise its own; never empty.
  const boost::shared_ptr<const ICIMReferenceBody>& GetBody() const noexcept { return m_body; }

 private:
  boost::shared_ptr<const ICIMReferenceBody> m_body;
};

}  // namespace NZELVOR20
