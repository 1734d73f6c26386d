#include "bench/ListedMachine.h"

#include <initializer_list>
#include <string>
#include <vector>

#include "framework/ICIMClass.h"
#include "framework/ICIMInstance.h"
#include "substitute/vorcore/values/ClassDeclaration.h"

namespace {

using NZELVOR20::ECIMType;
using NZELVOR20::ICIMInstance;
using NZELVOR20::TCIMValue;
using NZELVOR20::TInmemNamespace;

struct Property {
  const char* name;
  ECIMType type = ECIMType::eString;
  bool isKey = false;
  bool isArray = false;
};

void declare(TInmemNamespace& ns, const char* name, std::initializer_list<Property> properties) {
  vorcore::ClassDeclaration declaration;
  declaration.name = name;
  for (const Property& property : properties) {
    vorcore::PropertyDeclaration declared;
    declared.name = property.name;
    declared.type = property.type;
    declared.isKey = property.isKey;
    declared.isArray = property.isArray;
    declared.originClass = name;
    declaration.properties.push_back(declared);
  }
  ns.addClass(declaration);
}

boost::shared_ptr<ICIMInstance> store(
    TInmemNamespace& ns, const char* className,
    std::initializer_list<std::pair<const char*, TCIMValue>> values) {
  const auto instance = ns.GetClass(className, {})->AllocateInstance({});
  for (const auto& [name, value] : values) {
    instance->SetProperty(name, value, {});
  }
  return ns.storeInstance(*instance);
}

}  // namespace

boost::shared_ptr<TInmemNamespace> makeListedMachine(std::size_t associations) {
  auto ns = TInmemNamespace::make("root/cimv2");
  declare(*ns, "CIM_DiagnosticTest",
          {{"Name", ECIMType::eString, true},
           {"CreationClassName"},
           {"Characteristics", ECIMType::eUint16, false, true}});
  declare(*ns, "CIM_LogicalDevice", {{"DeviceID", ECIMType::eString, true}, {"ElementName"}});
  declare(*ns, "CIM_AvailableDiagnosticService",
          {{"ServiceProvided", ECIMType::eReference, true},
           {"UserOfService", ECIMType::eReference, true}});
  const TCIMValue characteristics =
      TCIMValue::Array(ECIMType::eUint16, {TCIMValue::Uint16(2), TCIMValue::Uint16(5)});
  std::vector<TCIMValue> services;
  for (std::size_t i = 0; i < kServices; ++i) {
    const std::string name = "Service" + std::to_string(i % 2) + "-" + std::to_string(i);
    services.emplace_back(store(*ns, "CIM_DiagnosticTest",
                                {{"Name", TCIMValue(name)},
                                 {"CreationClassName", TCIMValue("CIM_DiagnosticTest")},
                                 {"Characteristics", characteristics}})
                              ->GetObjectPath({}));
  }
  for (std::size_t i = 0; i < associations / kServices; ++i) {
    const std::string number = std::to_string(i);
    const TCIMValue element(store(*ns, "CIM_LogicalDevice",
                                  {{"DeviceID", TCIMValue("device" + number)},
                                   {"ElementName", TCIMValue("Network Adapter " + number)}})
                                ->GetObjectPath({}));
    for (const TCIMValue& service : services) {
      store(*ns, "CIM_AvailableDiagnosticService",
            {{"ServiceProvided", service}, {"UserOfService", element}});
    }
  }
  return ns;
}

boost::shared_ptr<TInmemNamespace> makeRecordStore(std::size_t records) {
  auto ns = TInmemNamespace::make("root/report");
  declare(*ns, "CIM_DiagnosticCompletionRecord",
          {{"InstanceID", ECIMType::eString, true},
           {"ServiceName"},
           {"ManagedElementName"},
           {"CompletionState"},
           {"RecordData"}});
  for (std::size_t i = 0; i < records; ++i) {
    const std::string job = i + 1 == records ? "last" : std::to_string(i);
    store(*ns, "CIM_DiagnosticCompletionRecord",
          {{"InstanceID", TCIMValue("JOB:" + job + ":0")},
           {"ServiceName", TCIMValue(kRecordService)},
           {"ManagedElementName", TCIMValue("System Memory")},
           {"CompletionState", TCIMValue("OK")},
           {"RecordData", TCIMValue("0 errors")}});
  }
  return ns;
}
