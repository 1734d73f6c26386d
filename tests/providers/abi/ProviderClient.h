#pragma once

#include <gtest/gtest.h>

#include <boost/shared_ptr.hpp>
#include <string>
#include <thread>
#include <vector>

#include "substitute/cmpi.nsp/manager/operations/ObjectManager.h"
#include "substitute/cmpi.nsp/model/PathReference.h"

namespace cmpinsp {

/// Providers behind the broker and the object manager, as a client of the CIM model uses them.
class ProviderClient : public ::testing::Test {
 protected:
  using TCIMValue = NZELVOR20::TCIMValue;

  static ObjectPath classPath(const std::string& className) {
    return {"root/cimv2", className, {}};
  }
  std::vector<InstanceDataPtr> instances(const std::string& className,
                                         PropertyNames properties = nullptr) {
    std::vector<InstanceDataPtr> found;
    manager->enumerateInstances(classPath(className), properties, [&](const InstanceDataPtr& one) {
      found.push_back(one);
      return true;
    });
    return found;
  }
  ObjectPath onlyPath(const std::string& className) {
    const auto found = instances(className);
    EXPECT_EQ(found.size(), 1U) << className;
    return found.empty() ? ObjectPath() : found.front()->path;
  }
  static TCIMValue reference(const ObjectPath& path) {
    return referenceTo(path, boost::shared_ptr<NZELVOR20::ICIMNamespace>());
  }
  static std::string text(const InstanceDataPtr& instance, const std::string& name) {
    const TCIMValue* value = instance->find(name);
    return value ? value->ToString(10) : "(none)";
  }

  /// Invokes a method: its return value as text; the output parameters go to `out`.
  std::string call(const ObjectPath& path, const std::string& method, const Arguments& in) {
    out.clear();
    return manager->invokeMethod(path, method, in, out).ToString(10);
  }
  std::string state(const ObjectPath& job) {
    return text(manager->getInstance(job, nullptr), "JobState");
  }
  /// Asks the job to end in good order, and waits until it has.
  void terminate(const ObjectPath& job) {
    EXPECT_EQ(call(job, "RequestStateChange", {{"RequestedState", TCIMValue::Uint16(4)}}), "4096");
    while (state(job) == "6") std::this_thread::yield();
  }

  boost::shared_ptr<ObjectManager> manager;
  Arguments out;
};

}  // namespace cmpinsp
