#pragma once

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "framework/TVORException.h"
#include "substitute/cmpi.nsp/broker/lifetime/Broker.h"
#include "substitute/cmpi.nsp/broker/lifetime/Scope.h"
#include "substitute/cmpi.nsp/broker/objects/ContextObject.h"
// After the broker, whose edition the macros take.
#include "cmpi/cmpimacs.h"

/// What the broker's tests share: a few declared classes, an object manager that answers from a
/// script, and a thread that is in a provider's call.
namespace cmpinsp::broker {

inline vorcore::PropertyDeclaration property(const char* name, NZELVOR20::ECIMType type,
                                             bool isKey = false, bool isArray = false) {
  vorcore::PropertyDeclaration declaration;
  declaration.name = name;
  declaration.type = type;
  declaration.isKey = isKey;
  declaration.isArray = isArray;
  return declaration;
}

/// ACME_Fan (a key, numbers, a time, an array, a method), below CIM_Device; CIM_Other (an embedded
/// instance, an array of times) beside it.
class TestClasses final : public ClassRepository {
 public:
  TestClasses() {
    using NZELVOR20::ECIMType;
    add("CIM_Device", "", {property("Name", ECIMType::eString, true)});
    add("CIM_Other", "",
        {property("Name", ECIMType::eString, true), property("Part", ECIMType::eInstance),
         property("Times", ECIMType::eDateTime, false, true)});
    add("ACME_Fan", "CIM_Device",
        {property("Name", ECIMType::eString, true), property("Speed", ECIMType::eUint16),
         property("Started", ECIMType::eDateTime), property("Tags", ECIMType::eString, false, true),
         property("Child", ECIMType::eString), property("On", ECIMType::eBoolean)});
  }

  vorcore::ClassDeclarationPtr find(const std::string& className) const override {
    const auto found = m_classes.find(vorcore::nameKey(className));
    return found == m_classes.end() ? vorcore::ClassDeclarationPtr() : found->second;
  }
  bool knows(const std::string& className) const override { return find(className) != nullptr; }
  std::string superclassOf(const std::string& className) const override {
    const auto declaration = find(className);
    return declaration ? declaration->superclass : std::string();
  }
  bool isA(const std::string& className, const std::string& ancestor) const override {
    if (vorcore::equalNames(className, ancestor)) return true;
    const auto declaration = find(className);
    return declaration && !declaration->superclass.empty() &&
           isA(declaration->superclass, ancestor);
  }
  std::vector<std::string> subclasses(const std::string&, bool) const override { return {}; }
  std::vector<std::string> rootClasses() const override { return {}; }

 private:
  void add(const char* name, const char* superclass,
           vorcore::NamedList<vorcore::PropertyDeclaration> properties) {
    auto declaration = boost::make_shared<vorcore::ClassDeclaration>();
    declaration->name = name;
    declaration->superclass = superclass;
    declaration->properties = std::move(properties);
    declaration->properties.change(0).qualifiers = {{"Key", NZELVOR20::TCIMValue::Boolean(true)}};
    declaration->qualifiers = {{"Version", NZELVOR20::TCIMValue("1.2")}};
    vorcore::MethodDeclaration method;
    method.name = "Spin";
    method.returnType = NZELVOR20::ECIMType::eUint32;
    method.qualifiers = {{"Description", NZELVOR20::TCIMValue("Turns.")}};
    vorcore::ParameterDeclaration parameter;
    parameter.name = "Rounds";
    parameter.type = NZELVOR20::ECIMType::eUint16;
    parameter.qualifiers = {{"In", NZELVOR20::TCIMValue::Boolean(true)}};
    method.parameters = {parameter};
    declaration->methods = {method, runMethod()};
    m_classes[vorcore::nameKey(name)] = declaration;
  }

  /// Starts a job, which it names in its output.
  static vorcore::MethodDeclaration runMethod() {
    vorcore::ParameterDeclaration job;
    job.name = "Job";
    job.type = NZELVOR20::ECIMType::eReference;
    vorcore::ParameterDeclaration count;
    count.name = "Count";
    count.type = NZELVOR20::ECIMType::eUint16;
    vorcore::MethodDeclaration method;
    method.name = "Run";
    method.returnType = NZELVOR20::ECIMType::eUint32;
    method.parameters = {job, count};
    return method;
  }

  std::map<std::string, vorcore::ClassDeclarationPtr> m_classes;
};

/// Holds instances and writes down what it was asked. `failure`, where it is set, is thrown by
/// every operation.
class FakeUpcalls final : public IUpcalls {
 public:
  std::vector<InstanceDataPtr> instances;
  std::vector<std::string> asked;
  std::function<void()> failure;

  void addFan(const std::string& name) {
    auto data = boost::make_shared<InstanceData>();
    data->path = ObjectPath{"root/cimv2", "ACME_Fan", {{"Name", NZELVOR20::TCIMValue(name)}}};
    data->declaration = m_classes.find("ACME_Fan");
    for (const auto& declared : data->declaration->properties) {
      data->values.push_back(NZELVOR20::TCIMValue::Null(declared.type, declared.isArray));
    }
    data->values[0] = NZELVOR20::TCIMValue(name);
    data->values[1] = NZELVOR20::TCIMValue::Uint16(900);
    instances.push_back(data);
  }

  void enumerateInstances(const ObjectPath& classPath, PropertyNames,
                          const InstanceSink& sink) override {
    note("enumerateInstances " + classPath.toText());
    deliver(sink);
  }
  void enumerateInstanceNames(const ObjectPath& classPath, const PathSink& sink) override {
    note("enumerateInstanceNames " + classPath.toText());
    deliverPaths(sink);
  }
  InstanceDataPtr getInstance(const ObjectPath& path, PropertyNames names) override {
    note("getInstance " + path.toText() + (names != nullptr ? " " + joined(*names) : ""));
    for (const InstanceDataPtr& instance : instances) {
      if (instance->path == path) return instance;
    }
    throw NZELVOR20::TVORException(
        NZELVOR20::TVORStatusCode(NZELVOR20::eVORNotFound, path.toText()));
  }
  ObjectPath createInstance(const ObjectPath& path, const InstanceDataPtr& instance) override {
    note("createInstance " + path.toText());
    instances.push_back(instance);
    return instance->path;
  }
  void modifyInstance(const ObjectPath& path, const InstanceDataPtr&, PropertyNames) override {
    note("modifyInstance " + path.toText());
  }
  void deleteInstance(const ObjectPath& path) override { note("deleteInstance " + path.toText()); }
  void executeQuery(const ObjectPath&, const std::string& query, const std::string& language,
                    const InstanceSink& sink) override {
    note("executeQuery " + query + " " + language);
    deliver(sink);
  }
  void associators(const ObjectPath& path, const AssociationFilter& filter, PropertyNames,
                   const InstanceSink& sink) override {
    note("associators " + path.toText() + " " + text(filter));
    deliver(sink);
  }
  void associatorNames(const ObjectPath& path, const AssociationFilter& filter,
                       const PathSink& sink) override {
    note("associatorNames " + path.toText() + " " + text(filter));
    deliverPaths(sink);
  }
  void references(const ObjectPath& path, const AssociationFilter& filter, PropertyNames,
                  const InstanceSink& sink) override {
    note("references " + path.toText() + " " + text(filter));
    deliver(sink);
  }
  void referenceNames(const ObjectPath& path, const AssociationFilter& filter,
                      const PathSink& sink) override {
    note("referenceNames " + path.toText() + " " + text(filter));
    deliverPaths(sink);
  }
  NZELVOR20::TCIMValue invokeMethod(const ObjectPath& path, const std::string& method,
                                    const Arguments& in, Arguments& out) override {
    note("invokeMethod " + path.toText() + " " + method);
    out = in;
    return NZELVOR20::TCIMValue("done");
  }
  void setProperty(const ObjectPath& path, const std::string& name,
                   const NZELVOR20::TCIMValue& value) override {
    note("setProperty " + path.toText() + " " + name + " " + value.ToString(10));
  }
  NZELVOR20::TCIMValue getProperty(const ObjectPath& path, const std::string& name) override {
    note("getProperty " + path.toText() + " " + name);
    return NZELVOR20::TCIMValue::Uint16(7);
  }
  const ClassRepository& classes() const override { return m_classes; }
  boost::shared_ptr<NZELVOR20::ICIMNamespace> namespaceHandle() const override { return {}; }

 private:
  void note(const std::string& call) {
    asked.push_back(call);
    if (failure) failure();
  }
  void deliver(const InstanceSink& sink) {
    for (const InstanceDataPtr& instance : instances) {
      if (!sink(instance)) return;
    }
  }
  void deliverPaths(const PathSink& sink) {
    for (const InstanceDataPtr& instance : instances) {
      if (!sink(instance->path)) return;
    }
  }
  static std::string text(const AssociationFilter& filter) {
    return filter.associationClass + "|" + filter.resultClass + "|" + filter.role + "|" +
           filter.resultRole;
  }
  static std::string joined(const std::vector<std::string>& names) {
    std::string result;
    for (const std::string& name : names) result += (result.empty() ? "" : ",") + name;
    return result;
  }

  TestClasses m_classes;
};

/// The test's thread, as if a provider's function were running on it.
class InCall : public testing::Test {
 protected:
  const CMPIBroker* broker() const { return own.handle(); }
  const char* text(const CMPIString* string) const {
    return string == nullptr ? "(null)" : CMGetCharPtr(string);
  }
  CMPIObjectPath* fanPath(const char* name = "left") {
    CMPIObjectPath* path = CMNewObjectPath(broker(), "root/cimv2", "ACME_Fan", nullptr);
    if (name != nullptr) CMAddKey(path, "Name", name, CMPI_chars);
    return path;
  }
  CMPIInstance* fan(const char* name = "left") {
    return CMNewInstance(broker(), fanPath(name), nullptr);
  }

  FakeUpcalls upcalls;
  Broker& own = Broker::make("TestProvider", "/providers/libtest.so", upcalls);
  Scope scope{Scope::Reason::kCall, &own};
  CMPIContext* context = makeObject(Ownership::kBorrowed, &own,
                                    std::make_unique<ContextBody>(std::string("root/cimv2")));
  CMPIStatus st{CMPI_RC_ERROR, nullptr};
};

/// An address that nothing of ours is at, and one within our own memory where no object starts.
inline void* foreignAddress() {
  static CMPIString foreign = {nullptr, nullptr};
  return &foreign;
}

}  // namespace cmpinsp::broker
