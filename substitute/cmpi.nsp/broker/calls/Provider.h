#pragma once

#include <memory>
#include <string>
#include <vector>

#include "substitute/cmpi.nsp/broker/IUpcalls.h"
#include "substitute/cmpi.nsp/broker/calls/OfferedInterface.h"

namespace cmpinsp {

/// One CMPI provider: a provider name within a library, with the interfaces that it offers. Loaded
/// at the first call, cleaned up once when it is destroyed. Each call pins the provider, runs on
/// the caller's thread, and turns what the provider answers into plain data; a failing status, an
/// exception through the C boundary, or garbage becomes a `TVORException` whose text names the
/// provider and the operation. Safe to call from several threads at once.
class Provider {
 public:
  /// `providerName` is the prefix of the factory symbols; `libraryPath` the file to load, UTF-8.
  /// `upcalls` outlives the provider; `nameSpace`, one that it serves, is what its factories and
  /// its clean-up are told. Nothing is loaded yet.
  Provider(std::string providerName, std::string libraryPath, IUpcalls& upcalls,
           std::string nameSpace = "root/cimv2");
  Provider(const Provider&) = delete;
  Provider& operator=(const Provider&) = delete;
  ~Provider();

  const std::string& name() const noexcept;
  const std::string& libraryPath() const noexcept;

  /// Loads the library and looks for its factories. Throws `TVORException` (provider failed) with
  /// the loader's reason; the next call tries again.
  void load();

  /// Whether anything was asked of it that needs its library. Throws what loading failed with the
  /// first time that it did.
  bool wasTried() const;

  /// The interfaces that were made, each with its edition, and those whose factory failed; none
  /// before it was loaded.
  std::vector<OfferedInterface> offered() const;

  void enumerateInstances(const ObjectPath& classPath, PropertyNames properties,
                          const InstanceSink& sink);
  void enumerateInstanceNames(const ObjectPath& classPath, const PathSink& sink);
  InstanceDataPtr getInstance(const ObjectPath& path, PropertyNames properties);
  ObjectPath createInstance(const ObjectPath& path, const InstanceDataPtr& instance);
  void modifyInstance(const ObjectPath& path, const InstanceDataPtr& instance,
                      PropertyNames properties);
  void deleteInstance(const ObjectPath& path);
  void executeQuery(const ObjectPath& classPath, const std::string& query,
                    const std::string& language, const InstanceSink& sink);
  void associators(const ObjectPath& path, const AssociationFilter& filter,
                   PropertyNames properties, const InstanceSink& sink);
  void associatorNames(const ObjectPath& path, const AssociationFilter& filter,
                       const PathSink& sink);
  void references(const ObjectPath& path, const AssociationFilter& filter, PropertyNames properties,
                  const InstanceSink& sink);
  void referenceNames(const ObjectPath& path, const AssociationFilter& filter,
                      const PathSink& sink);
  NZELVOR20::TCIMValue invokeMethod(const ObjectPath& path, const std::string& method,
                                    const Arguments& in, Arguments& out);

  /// Through the property interface: not supported where the provider has none, which other
  /// interfaces may make up for.
  void setProperty(const ObjectPath& path, const std::string& name,
                   const NZELVOR20::TCIMValue& value);
  /// In the declared type. Throws (no such property) where the provider delivers nothing.
  NZELVOR20::TCIMValue getProperty(const ObjectPath& path, const std::string& name);

 private:
  class Impl;
  std::unique_ptr<Impl> m_impl;
};

}  // namespace cmpinsp
