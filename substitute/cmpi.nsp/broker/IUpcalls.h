#pragma once

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>
#include <string>
#include <utility>
#include <vector>

#include "framework/ICIMNamespace.h"
#include "framework/TCIMValue.h"
#include "substitute/cmpi.nsp/model/InstanceData.h"
#include "substitute/cmpi.nsp/model/ObjectPath.h"
#include "substitute/cmpi.nsp/repository/ClassRepository.h"

namespace cmpinsp {

/// Receives the answers of an operation; false stops it.
using InstanceSink = boost::function<bool(const InstanceDataPtr&)>;
using PathSink = boost::function<bool(const ObjectPath&)>;

/// Method parameters in declaration or call order.
using Arguments = std::vector<std::pair<std::string, NZELVOR20::TCIMValue>>;

/// The restrictions of an association operation; empty texts restrict nothing.
struct AssociationFilter {
  std::string associationClass;
  std::string resultClass;
  std::string role;
  std::string resultRole;
};

/// Which properties the caller wants; null where it wants all.
using PropertyNames = const std::vector<std::string>*;

/// The rest of the object manager, as the broker's upcalls reach it. Failures are reported by
/// `TVORException`. Safe to call from several threads.
class IUpcalls {
 public:
  virtual ~IUpcalls() = default;

  virtual void enumerateInstances(const ObjectPath& classPath, PropertyNames properties,
                                  const InstanceSink& sink) = 0;
  virtual void enumerateInstanceNames(const ObjectPath& classPath, const PathSink& sink) = 0;
  /// Throws (not found) where there is no such instance.
  virtual InstanceDataPtr getInstance(const ObjectPath& path, PropertyNames properties) = 0;
  virtual ObjectPath createInstance(const ObjectPath& path, const InstanceDataPtr& instance) = 0;
  virtual void modifyInstance(const ObjectPath& path, const InstanceDataPtr& instance,
                              PropertyNames properties) = 0;
  virtual void deleteInstance(const ObjectPath& path) = 0;
  virtual void executeQuery(const ObjectPath& classPath, const std::string& query,
                            const std::string& language, const InstanceSink& sink) = 0;
  virtual void associators(const ObjectPath& path, const AssociationFilter& filter,
                           PropertyNames properties, const InstanceSink& sink) = 0;
  virtual void associatorNames(const ObjectPath& path, const AssociationFilter& filter,
                               const PathSink& sink) = 0;
  virtual void references(const ObjectPath& path, const AssociationFilter& filter,
                          PropertyNames properties, const InstanceSink& sink) = 0;
  virtual void referenceNames(const ObjectPath& path, const AssociationFilter& filter,
                              const PathSink& sink) = 0;
  /// Returns the method's return value; `out` receives the output parameters.
  virtual NZELVOR20::TCIMValue invokeMethod(const ObjectPath& path, const std::string& method,
                                            const Arguments& in, Arguments& out) = 0;
  virtual void setProperty(const ObjectPath& path, const std::string& name,
                           const NZELVOR20::TCIMValue& value) = 0;
  virtual NZELVOR20::TCIMValue getProperty(const ObjectPath& path, const std::string& name) = 0;

  /// The classes, for type and key questions.
  virtual const ClassRepository& classes() const = 0;

  /// The namespace handle that references made from object paths carry; may be empty.
  virtual boost::shared_ptr<NZELVOR20::ICIMNamespace> namespaceHandle() const = 0;
};

}  // namespace cmpinsp
