#pragma once

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "framework/ICIMNamespace.h"
#include "framework/TCMPINamespace.h"
#include "tests/support/LiveObject.h"
#include "tests/support/ScriptedClass.h"
#include "tests/support/ScriptedInstance.h"

namespace support {

/// A namespace as a test writes it. `handle()` is what the code under test gets; it is recorded as
/// `ns NAME.GetClass("CIM_X", {nspID="cmpi"})`. Two kinds: one that CMPI providers serve (a
/// `TCMPINamespace`), and a plain one, for which that downcast fails. Operations that the runner
/// has no use for are recorded and throw `TVORException` (not supported).
class ScriptedNamespace : public LiveObject,
                          public boost::enable_shared_from_this<ScriptedNamespace> {
 public:
  static boost::shared_ptr<ScriptedNamespace> makeCmpi(const std::string& name);
  static boost::shared_ptr<ScriptedNamespace> makePlain(const std::string& name);

  explicit ScriptedNamespace(std::string name);
  virtual ~ScriptedNamespace() = default;

  virtual boost::shared_ptr<NZELVOR20::ICIMNamespace> handle() = 0;
  const std::string& name() const { return m_name; }

  /// Makes `GetClass` find the class by its name.
  void addClass(const ClassPtr& theClass);
  /// `GetClass` returns an empty handle for `name`.
  void setEmptyClass(const std::string& name);
  /// `GetClass` throws `TVORException` (invalid class), as for any class never added.
  void removeClass(const std::string& name) { m_classes.erase(name); }

  /// Makes `GetInstance` find the instance by its path.
  void addInstance(const InstancePtr& instance);
  /// Gives successive `GetInstance` calls for `path` successive instances; the last one stays. An
  /// empty pointer is an empty handle.
  void setInTurn(const std::string& path, const std::vector<InstancePtr>& instances);
  /// `GetInstance` throws `TVORException` (not found).
  void removeInstance(const std::string& path) { m_instances.erase(path); }

  /// What `GetUpcallNamespace` answers; held weakly.
  void setUpcall(const boost::shared_ptr<ScriptedNamespace>& upcall) { m_upcall = upcall; }
  /// What `EnumerateProviders` hands out: a provider named `provider` that leads to `ns`.
  void addProvider(const std::string& provider, const boost::shared_ptr<ScriptedNamespace>& ns);

 protected:
  boost::shared_ptr<NZELVOR20::ICIMClass> getClass(const std::string& className,
                                                   const NZELVOR20::TOptionsMap& options);
  boost::shared_ptr<NZELVOR20::ICIMInstance> getInstance(const NZELVOR20::TCIMReference& reference,
                                                         const NZELVOR20::TOptionsMap& options);
  void enumerateProviders(const NZELVOR20::TProviderCallback& callback,
                          const NZELVOR20::TOptionsMap& options);
  boost::shared_ptr<NZELVOR20::ICIMNamespace> getUpcallNamespace();
  [[noreturn]] void refuse(const std::string& operation) const;

 private:
  struct Provider {
    std::string name;
    boost::weak_ptr<ScriptedNamespace> ns;
  };

  std::string call(const std::string& operation, const std::string& arguments) const;

  std::string m_name;
  std::map<std::string, ClassPtr> m_classes;
  std::map<std::string, std::deque<InstancePtr>> m_instances;
  std::vector<Provider> m_providers;
  boost::weak_ptr<ScriptedNamespace> m_upcall;
};

using NamespacePtr = boost::shared_ptr<ScriptedNamespace>;

}  // namespace support
